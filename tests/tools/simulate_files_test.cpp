// What the files of a simulated rig's folder say.
#include "velmorn/simulate_files.h"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;
using testing::ElementsAre;

class SimulatedFiles : public testing::Test {
 protected:
  SimulatedFiles() {
    job_.height = 1200;
    job_.depth.step = 0.5;
    job_.cameras.resize(3);
    job_.plain.shots.shots = 2;
    job_.code.shots.shots = 1;
    rig_ = simulatedRig(job_);
    boards_ = simulatedBoards(job_, rig_);
  }

  json file(const std::string& name) {
    for (const SimulatedFile& file : textFilesOf(job_, rig_, boards_)) {
      if (file.name == name) return json::parse(file.text);
    }
    return nullptr;
  }

  SimulateJob job_;
  SimulatedRig rig_;
  SimulatedBoards boards_;
};

TEST_F(SimulatedFiles, ImageNamesAreInOrder) {
  const std::vector<std::string> names = imageNamesOf(rig_, boards_);
  ASSERT_EQ(names.size(), 21U); // 3 cameras, 4 plain, 1 with codes, depth and colour
  EXPECT_EQ(names[0], "cam1/board-01.png");
  EXPECT_EQ(names[3], "cam1/board-04.png");
  EXPECT_EQ(names[4], "cam1/code-01.png");
  EXPECT_EQ(names[5], "cam1/depth.png");
  EXPECT_EQ(names[6], "cam1/color.png");
  EXPECT_EQ(names[7], "cam2/board-01.png");
  boards_.plainShots.resize(100);
  EXPECT_EQ(plainImageName(boards_, 0, 6), "cam1/board-007.png");
}

TEST_F(SimulatedFiles, PlainRig) {
  const json rig = file("rig.json");
  EXPECT_EQ(rig["board"], "9x6");
  EXPECT_EQ(rig["square"], 45);
  EXPECT_EQ(rig["min_images"], 2);
  EXPECT_EQ(rig["base"], "cam2"); // in the middle
  ASSERT_EQ(rig["cameras"].size(), 3U);
  EXPECT_EQ(rig["cameras"][2]["id"], "cam3");
  EXPECT_EQ(rig["cameras"][2]["intrinsics"], "cam3/intrinsics.yml");
  EXPECT_THAT(rig["cameras"][2]["images"], ElementsAre("cam3/board-01.png", "cam3/board-02.png",
                                                       "cam3/board-03.png", "cam3/board-04.png"));
}

TEST_F(SimulatedFiles, DataCodeRig) {
  const json rig = file("rig-data-code.json");
  EXPECT_EQ(rig["board"], "data-code");
  EXPECT_FALSE(rig.contains("square"));
  EXPECT_EQ(rig["base"], "cam2");
  EXPECT_THAT(rig["cameras"][0]["images"], ElementsAre("cam1/code-01.png"));
}

TEST_F(SimulatedFiles, DepthJobs) {
  for (const char* name : {"merge.json", "aerial.json"}) {
    const json job = file(name);
    EXPECT_EQ(job["result"], "result.json");
    EXPECT_EQ(job["depth_unit"], 0.5);
    ASSERT_EQ(job["cameras"].size(), 3U);
    EXPECT_EQ(job["cameras"][1]["id"], "cam2");
    EXPECT_EQ(job["cameras"][1]["depth"], "cam2/depth.png");
    EXPECT_EQ(job["cameras"][1]["color"], "cam2/color.png");
    EXPECT_EQ(job["cameras"][1]["intrinsics"], "cam2/intrinsics.yml");
  }
}

// Three cameras 500 apart, of which each sees 1529 of the belt, tilted by up to 2 degrees; the belt
// is 1000 wide. The first camera looks at its first 500.
TEST_F(SimulatedFiles, AerialRegionIsTheSeenBelt) {
  const json job = file("aerial.json");
  EXPECT_EQ(job["resolution"], 2);
  const auto region = job["region"].get<std::vector<double>>();
  ASSERT_EQ(region.size(), 4U);
  EXPECT_NEAR(region[0], -764, 110);
  EXPECT_NEAR(region[2], 1000 + 764, 110);
  EXPECT_NEAR(region[1], -500, 80);
  EXPECT_NEAR(region[3], 500, 80);
}

TEST_F(SimulatedFiles, Truth) {
  const json truth = file("truth.json");
  EXPECT_EQ(truth["unit"], "mm");
  EXPECT_EQ(truth["base"], "cam2");
  ASSERT_EQ(truth["cameras"].size(), 3U);
  const auto poseOf = [](const json& rows) {
    cv::Matx44d pose;
    for (int row = 0; row < 4; ++row) {
      for (int column = 0; column < 4; ++column)
        pose(row, column) =
            rows.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column));
    }
    return pose;
  };
  const cv::Matx44d worldFromBase = poseOf(truth["cameras"][1]["worldFromCam"]);
  EXPECT_EQ(poseOf(truth["cameras"][1]["baseFromCam"]), cv::Matx44d::eye());
  for (std::size_t i = 0; i < 3; ++i) {
    const json& camera = truth["cameras"][i];
    const cv::Matx44d baseFromCam = poseOf(camera["baseFromCam"]);
    EXPECT_EQ(poseOf(camera["worldFromCam"]), rig_.cameras[i].worldFromCam);
    EXPECT_LT(cv::norm(worldFromBase * baseFromCam - rig_.cameras[i].worldFromCam), 1e-9);
    EXPECT_LT(cv::norm(baseFromCam * poseOf(camera["camFromBase"]) - cv::Matx44d::eye()), 1e-9);
  }
  EXPECT_EQ(truth["board"]["plain"], json({{"columns", 9}, {"rows", 6}, {"square", 45}}));
  EXPECT_EQ(truth["board"]["dataCode"]["square"], 65);
  ASSERT_EQ(truth["shots"]["plain"].size(), 4U);
  ASSERT_EQ(truth["shots"]["dataCode"].size(), 1U);
  EXPECT_EQ(poseOf(truth["shots"]["plain"][3]), boards_.plainShots[3].worldFromBoard);
}

} // namespace
} // namespace velmorn::tool
