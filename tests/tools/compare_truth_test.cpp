// The example that compares a result with the truth.
#include <gmock/gmock.h>

#include <cmath>
#include <nlohmann/json.hpp>

#include "support/temp_dir.h"
#include "tools/process.h"

namespace velmorn::tool {
namespace {

using nlohmann::json;
using testing::HasSubstr;

json pose(double x, double y, double sine = 0) {
  const double cosine = std::sqrt(1 - sine * sine);
  return {{cosine, -sine, 0, x}, {sine, cosine, 0, y}, {0, 0, 1, 0}, {0, 0, 0, 1}};
}

json camera(const std::string& id, const json& baseFromCam) {
  return {{"id", id}, {"baseFromCam", baseFromCam}};
}

class CompareTruth : public TempDirTest {
 protected:
  CompareTruth() { write("truth.json", {camera("a", pose(0, 0)), camera("b", pose(100, 0))}); }

  void write(const std::string& name, const std::vector<json>& cameras) {
    writeFile(dir() / name, json({{"base", "a"}, {"cameras", cameras}}).dump());
  }

  ProcessResult compare(const std::vector<std::string>& limits = {}) {
    std::vector<std::string> arguments = {"truth.json", "result.json"};
    arguments.insert(arguments.end(), limits.begin(), limits.end());
    return runProcess(VELMORN_COMPARE_TRUTH, arguments, dir());
  }
};

// The sine of 0.5 degrees is 0.008727; 3, 4 off are 5, and 5 % of 100.
TEST_F(CompareTruth, PrintsHowFarTheCamerasAreOff) {
  write("result.json", {camera("a", pose(0, 0)), camera("b", pose(103, 4, 0.0087265))});
  const ProcessResult result = compare();
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out,
            "camera      degrees       length    percent\n"
            "a             0.0000       0.0000     0.0000\n"
            "b             0.5000       5.0000     5.0000\n");
}

TEST_F(CompareTruth, FailsAboveALimit) {
  write("result.json", {camera("a", pose(0, 0)), camera("b", pose(103, 4, 0.0087265))});
  EXPECT_EQ(
      compare({"--max-degrees", "0.51", "--max-length", "5.1", "--max-percent", "5.1"}).status, 0);
  EXPECT_EQ(compare({"--max-degrees", "0.49"}).status, 1);
  EXPECT_EQ(compare({"--max-length", "4.9"}).status, 1);
  const ProcessResult off = compare({"--max-percent", "4.9"});
  EXPECT_EQ(off.status, 1);
  EXPECT_THAT(off.out, HasSubstr("5.0000  off\n"));
  EXPECT_EQ(off.err, "compare_truth: a camera is off by more than the limits\n");
}

// The same places relative to b, which stands at 100 along a's x axis and is not turned.
TEST_F(CompareTruth, TakesAResultWithAnotherBase) {
  write("result.json", {camera("a", pose(-100, 0)), camera("b", pose(0, 0))});
  EXPECT_EQ(compare({"--max-length", "1e-6"}).status, 0);
}

TEST_F(CompareTruth, SaysWhatIsMissing) {
  EXPECT_EQ(compare().err, "compare_truth: no such file: result.json\n");
  write("result.json", {camera("a", pose(0, 0))});
  EXPECT_EQ(compare().err, "compare_truth: camera \"b\" is not in result.json\n");
  writeFile(dir() / "truth.json", "{\"cameras\": []}");
  const ProcessResult result = compare();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "compare_truth: truth.json: no \"base\"\n");
  EXPECT_EQ(compare({"--max-degrees", "-1"}).status, 2);
}

} // namespace
} // namespace velmorn::tool
