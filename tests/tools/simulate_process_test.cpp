// `velmorn simulate`, run as a process, and what the other commands make of its files.
#include <gmock/gmock.h>

#include <map>
#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/process.h"

namespace velmorn::tool {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// Two cameras, four positions of a plain board and two of one with data codes.
json smallJob() {
  return {{"cameras", 2},
          {"image_size", {640, 480}},
          {"spacing", 250},
          {"plain", {{"shots", 4}}},
          {"data_code", {{"squares", "14x9"}, {"size", 120}, {"shots", 2}}}};
}

class SimulateProcess : public TempDirTest {
 protected:
  ProcessResult velmorn(const std::vector<std::string>& arguments) {
    return runProcess(VELMORN_TOOL, arguments, dir());
  }

  ProcessResult simulate(const json& job, const std::vector<std::string>& further = {}) {
    writeFile(dir() / "job.json", job.dump());
    std::vector<std::string> arguments = {"simulate", "job.json", "-o", "rig"};
    arguments.insert(arguments.end(), further.begin(), further.end());
    return velmorn(arguments);
  }

  // All files below a folder by name.
  std::map<std::string, std::string> filesIn(const std::string& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(dir() / folder)) {
      if (!entry.is_regular_file()) continue;
      files[fs::relative(entry.path(), dir() / folder).string()] = readFile(entry.path());
    }
    return files;
  }

  ProcessResult compare(const std::string& result) {
    return runProcess(VELMORN_COMPARE_TRUTH,
                      {"rig/truth.json", result, "--max-degrees", "0.05", "--max-percent", "0.2"},
                      dir());
  }
};

TEST_F(SimulateProcess, WritesARigThatStitchesToItsTruth) {
  const ProcessResult simulated = simulate(smallJob());
  ASSERT_EQ(simulated.status, 0) << simulated.err;
  EXPECT_THAT(simulated.err, StartsWith("[ 1/16] cam1 board-01.png: 640x480\n"));
  EXPECT_EQ(lastLine(simulated.err), "[16/16] cam2 color.png: 640x480");
  EXPECT_THAT(simulated.out, StartsWith("cameras     2 over a conveyor, base cam1\n"
                                        "board       9x6 inner corners, squares of "));
  EXPECT_THAT(simulated.out, HasSubstr("data codes  14x9 squares of 120 mm, 2 shots\n"
                                       "written to  rig\n"
                                       "next        velmorn stitch rig/rig.json -o "
                                       "rig/result.json\n"));
  EXPECT_EQ(filesIn("rig").size(), 16U + 2 + 5);

  for (const std::string name : {"rig", "rig-data-code"}) {
    const std::string result = "rig/" + name + "-result.json";
    const ProcessResult stitched = velmorn({"stitch", "rig/" + name + ".json", "-o", result});
    ASSERT_EQ(stitched.status, 0) << stitched.err;
    EXPECT_THAT(stitched.err, Not(HasSubstr("warning")));
    const ProcessResult compared = compare(result);
    EXPECT_EQ(compared.status, 0) << compared.out << compared.err;
  }
}

TEST_F(SimulateProcess, AerialViewNeedsNothingElse) {
  ASSERT_EQ(simulate(smallJob()).status, 0);
  ASSERT_EQ(velmorn({"stitch", "rig/rig.json", "-o", "rig/result.json"}).status, 0);
  const ProcessResult aerial = velmorn({"aerial", "rig/aerial.json", "-o", "view.png"});
  ASSERT_EQ(aerial.status, 0) << aerial.err;
  EXPECT_THAT(aerial.err, Not(HasSubstr("warning")));
  const cv::Mat view = cv::imread((dir() / "view.png").string());
  cv::Mat seen;
  cv::extractChannel(view, seen, 1);
  EXPECT_GT(cv::countNonZero(seen), 0.75 * static_cast<double>(seen.total()));
}

TEST_F(SimulateProcess, SameJobAndSeedGiveTheSameBytes) {
  json job = smallJob();
  job["kind"] = "platform";
  job["plain"]["shots"] = 1;
  ASSERT_EQ(simulate(job).status, 0);
  const auto first = filesIn("rig");
  ASSERT_EQ(simulate(job, {"--force"}).status, 0);
  EXPECT_EQ(filesIn("rig"), first);
  ASSERT_EQ(simulate(job, {"--force", "--seed", "2"}).status, 0);
  const auto other = filesIn("rig");
  ASSERT_EQ(other.size(), first.size());
  for (const auto& [name, content] : other) {
    const bool isImage = fs::path(name).extension() == ".png";
    if (isImage || name == "truth.json") {
      EXPECT_NE(content, first.at(name)) << name;
    }
  }
}

TEST_F(SimulateProcess, LeavesExistingFilesAlone) {
  fs::create_directories(dir() / "rig/cam2");
  writeFile(dir() / "rig/cam2/depth.png", "as it was");
  writeFile(dir() / "rig/notes.txt", "mine");
  const ProcessResult result = simulate(smallJob());
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "velmorn: rig/cam2/depth.png is there already; --force replaces it\n");
  EXPECT_EQ(filesIn("rig").size(), 2U);
  EXPECT_EQ(readFile(dir() / "rig/cam2/depth.png"), "as it was");
}

TEST_F(SimulateProcess, WritesNothingForAJobThatCannotBe) {
  json job = smallJob();
  job["plain"]["square"] = 500;
  const ProcessResult noPlace = simulate(job);
  EXPECT_EQ(noPlace.status, 1);
  EXPECT_THAT(noPlace.err, StartsWith("velmorn: job.json: no place for the plain board found "));
  job = smallJob();
  job["distortion"] = {-5, 0, 0, 0};
  EXPECT_THAT(simulate(job).err, StartsWith("velmorn: job.json: camera \"cam1\": \"distortion\" "));
  job["shots"] = 3;
  EXPECT_THAT(simulate(job).err, StartsWith("velmorn: job.json: unknown key \"shots\""));
  EXPECT_FALSE(fs::exists(dir() / "rig"));
}

TEST_F(SimulateProcess, SaysWhatIsNoFolder) {
  writeFile(dir() / "rig", "a file");
  EXPECT_EQ(simulate(smallJob(), {"--force"}).err, "velmorn: cannot make the folder rig/cam1\n");
  EXPECT_EQ(readFile(dir() / "rig"), "a file");
}

TEST_F(SimulateProcess, TellsWrongUsage) {
  EXPECT_EQ(velmorn({"simulate"}).status, 2);
  EXPECT_EQ(velmorn({"simulate", "gone.json", "-o", "rig"}).status, 2);
  EXPECT_EQ(velmorn({"simulate", "--cameras", "1", "-o", "rig"}).status, 2);
  EXPECT_EQ(velmorn({"simulate", "--cameras", "11", "-o", "rig"}).status, 2);
  EXPECT_EQ(velmorn({"simulate", "--seed", "-1", "-o", "rig"}).status, 2);
  const ProcessResult help = velmorn({"simulate", "--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_THAT(help.out, HasSubstr("Example:\n  velmorn simulate --cameras 4 -o rig\n"));
}

} // namespace
} // namespace velmorn::tool
