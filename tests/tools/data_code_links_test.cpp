// Links of cameras before a data-code board: the tree, the places, the residual.
#include "velmorn/data_code_links.h"

#include <gmock/gmock.h>

#include "tools/expect_tool_error.h"
#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;
using testing::Optional;

constexpr ImageOutcome kWith = ImageOutcome::kBoardFound;
constexpr ImageOutcome kWithout = ImageOutcome::kNoBoard;

class DataCodeLinks : public testing::Test {
 protected:
  DataCodeLinks() {
    rig_.hasDataCodes = true;
    rig_.minImages = 1;
    for (const char* id : {"a", "b", "c"}) {
      RigCamera camera;
      camera.id = id;
      rig_.cameras.push_back(camera);
    }
  }

  std::vector<std::string> idsWithoutLink() {
    std::vector<std::string> ids;
    for (const RigCamera* camera : camerasWithoutLink(rig_, outcomes_)) ids.push_back(camera->id);
    return ids;
  }

  Rig rig_;
  OutcomeMap outcomes_ = {
      {"a", {kWith, kWithout}}, {"b", {kWith, kWith}}, {"c", {kWithout, kWith}}};
};

cv::Matx44d shifted(double x, double y, double z) {
  cv::Matx44d pose = cv::Matx44d::eye();
  pose(0, 3) = x;
  pose(1, 3) = y;
  pose(2, 3) = z;
  return pose;
}

DataCodeShot shotAt(const cv::Matx44d& camFromBoard) {
  DataCodeShot shot;
  shot.outcome = ImageOutcome::kBoardFound;
  shot.corners = {{0, 0, 0}, {20, 0, 0}, {0, 20, 0}};
  shot.camFromBoard = camFromBoard;
  return shot;
}

TEST_F(DataCodeLinks, TheTreeFollowsCommonPositions) {
  const PlaceMap places = growDataCodeTree(rig_, outcomes_, "a");
  ASSERT_EQ(places.size(), 3U);
  EXPECT_EQ(places.at("b").parent, "a");
  EXPECT_EQ(places.at("c").parent, "b");
  EXPECT_EQ(places.at("c").depth, 2);
}

TEST_F(DataCodeLinks, EntriesAreBaseFromCam) {
  OzKStitchResult result{};
  result.baseCamIdx = 0;
  const cv::Matx44d baseFromC(0, -1, 0, 3, 1, 0, 0, 4, 0, 0, 1, 12, 0, 0, 0, 1);
  for (int i = 0; i < 16; ++i) {
    result.camExtrinsic[1].data[i] = shifted(5, 0, 0).val[i];
    result.camExtrinsic[2].data[i] = baseFromC.val[i];
  }
  const PlaceMap places = findDataCodePlaces(rig_, result, outcomes_);
  EXPECT_EQ(places.at("c").baseFromCam, baseFromC);
  EXPECT_EQ(places.at("c").camFromBase, inversePose(baseFromC));
  EXPECT_EQ(places.at("a").baseFromCam, cv::Matx44d::eye());

  outcomes_["c"] = {kWithout, kWithout};
  EXPECT_THAT(toolError([&] { findDataCodePlaces(rig_, result, outcomes_); }),
              HasSubstr("camera \"c\" was linked by other images"));
}

TEST_F(DataCodeLinks, NamesTheCamerasWithoutLink) {
  EXPECT_TRUE(idsWithoutLink().empty());
  outcomes_["a"] = {kWithout, kWithout};
  EXPECT_THAT(idsWithoutLink(), testing::ElementsAre("a"));
  rig_.base = 0;
  EXPECT_THAT(idsWithoutLink(), testing::ElementsAre("b", "c"));
}

TEST_F(DataCodeLinks, ResidualIsTheDistanceInTheOtherPositions) {
  const std::vector<DataCodeShot> parent = {DataCodeShot(), shotAt(shifted(0, 0, 300)),
                                            shotAt(shifted(0, 0, 300)), shotAt(shifted(0, 0, 300))};
  const std::vector<DataCodeShot> cam = {shotAt(shifted(0, 0, 100)), shotAt(shifted(-50, 0, 300)),
                                         shotAt(shifted(-50, 3, 304)),
                                         shotAt(shifted(-49, 0, 300))};
  // The link comes from the second position; the others are 5 and 1 off.
  EXPECT_THAT(linkResidual(parent, cam, shifted(50, 0, 0)), Optional(testing::FloatEq(3.0F)));
}

TEST_F(DataCodeLinks, NoResidualFromOnePosition) {
  const std::vector<DataCodeShot> one = {shotAt(shifted(0, 0, 300)), DataCodeShot()};
  EXPECT_EQ(linkResidual(one, one, shifted(0, 0, 0)), std::nullopt);
  EXPECT_EQ(linkResidual({}, {}, shifted(0, 0, 0)), std::nullopt);
}

} // namespace
} // namespace velmorn::tool
