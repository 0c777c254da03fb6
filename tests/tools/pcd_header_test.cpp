// Headers of PCD files: what they may announce.
#include "velmorn/pcd_header.h"

#include <gmock/gmock.h>

#include "support/temp_dir.h"
#include "tools/cloud_files.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

using testing::StartsWith;

class PcdHeader : public TempDirTest {
 protected:
  std::string check(const std::string& text) {
    writeFile("cloud.pcd", text);
    return toolError([] { requireSoundPcdHeader("cloud.pcd"); });
  }

  std::string text = pcdText(gridOnPlane(), PcdForm::kText);
  std::string binary = pcdText(gridOnPlane(), PcdForm::kBinary);
  std::string compressed = pcdText(gridOnPlane(), PcdForm::kCompressed);
};

TEST_F(PcdHeader, TakesWholeFiles) {
  EXPECT_EQ(check(text), "no error");
  EXPECT_EQ(check(binary), "no error");
  EXPECT_EQ(check(compressed), "no error");
  EXPECT_EQ(check(with(text, "COUNT 1 1 1 1\n", "")), "no error");
}

TEST_F(PcdHeader, RefusesMoreThanTheFileHolds) {
  for (const std::string& file : {text, binary, compressed}) {
    EXPECT_THAT(check(file.substr(0, file.size() / 8)), StartsWith("cut off: "));
  }
  EXPECT_EQ(check(binary.substr(0, binary.size() - 1)),
            "cut off: the header announces 300 points, more than the file holds");
  EXPECT_THAT(
      check(with(with(text, "WIDTH 300", "WIDTH 2000000000"), "POINTS 300", "POINTS 2000000000")),
      StartsWith("cut off: "));
}

TEST_F(PcdHeader, RefusesNumbersThatDisagree) {
  EXPECT_EQ(check(with(text, "WIDTH 300", "WIDTH 299")),
            "the header's POINTS are not WIDTH times HEIGHT");
  EXPECT_EQ(check(with(text, "HEIGHT 1", "HEIGHT 18446744073709551615")),
            "the header's POINTS are not WIDTH times HEIGHT");
  EXPECT_EQ(check(with(text, "SIZE 4 4 4 4", "SIZE 4 4 4")),
            "the header's SIZE has 3 entries, not 4");
  EXPECT_EQ(check(with(compressed, "300\nDATA", "100\nDATA")),
            "the header's POINTS are not WIDTH times HEIGHT");
  EXPECT_EQ(check(with(with(compressed, "WIDTH 300", "WIDTH 100"), "POINTS 300", "POINTS 100")),
            "the compressed data has another size than the header announces");
}

TEST_F(PcdHeader, RefusesAbsurdLayouts) {
  EXPECT_EQ(check(with(text, "COUNT 1", "COUNT 0")), "the header has a field without values");
  EXPECT_EQ(check(with(text, "COUNT 1", "COUNT 99999999999")),
            "the header announces too large points");
  EXPECT_EQ(check(with(text, "SIZE 4", "SIZE 3")), "the header has a field of type F and size 3");
  EXPECT_EQ(check(with(text, "TYPE F", "TYPE X")), "the header has a field of type X and size 4");
  EXPECT_EQ(check(with(text, "POINTS 300", "POINTS -1")),
            "the header has \"-1\" where a count is wanted");
  EXPECT_EQ(
      check(with(with(text, "WIDTH 300", "WIDTH 3000000000"), "POINTS 300", "POINTS 3000000000")),
      "the header announces too many points");
}

TEST_F(PcdHeader, RefusesWhatIsMissingOrUnknown) {
  EXPECT_EQ(check(""), "the header has no line \"DATA\"");
  EXPECT_EQ(check(with(text, "FIELDS x y z intensity\n", "")), "the header has no FIELDS");
  EXPECT_EQ(check(with(text, "POINTS 300\n", "")), "the header has no POINTS");
  EXPECT_EQ(check(with(text, "HEIGHT 1\n", "HEIGHT 1\nHEIGHT 1\n")), "the header has HEIGHT twice");
  EXPECT_EQ(check(with(text, "HEIGHT 1\n", "HEIGHT 1\n0 0 500\n")), "the header has a line \"0\"");
  EXPECT_EQ(check(with(text, "DATA ascii", "DATA text")),
            "the header's DATA is text, not ascii, binary or binary_compressed");
  EXPECT_EQ(check(with(text, "VERSION", "VER\1ION")), "the header holds a control character");
}

} // namespace
} // namespace velmorn::tool
