// Headers of PLY files: what they may announce.
#include "velmorn/ply_header.h"

#include <gmock/gmock.h>

#include "support/temp_dir.h"
#include "tools/cloud_files.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

class PlyHeader : public TempDirTest {
 protected:
  std::string check(const std::string& text) {
    writeFile("cloud.ply", text);
    return toolError([] { requireSoundPlyHeader("cloud.ply"); });
  }

  std::string text = plyText(gridOnPlane(), PlyForm::kText);
  std::string binary = plyText(gridOnPlane(), PlyForm::kLittleEndian);
  const std::string cutOff = "cut off: the header announces more than the file holds";
};

TEST_F(PlyHeader, TakesWholeFiles) {
  EXPECT_EQ(check(text), "no error");
  EXPECT_EQ(check(binary), "no error");
  EXPECT_EQ(check(plyText(gridOnPlane(), PlyForm::kBigEndian)), "no error");
  EXPECT_EQ(check("ply\nformat ascii 1.0\nelement vertex 0\nend_header\n"), "no error");
}

TEST_F(PlyHeader, RefusesMoreThanTheFileHolds) {
  EXPECT_EQ(check(text.substr(0, text.size() / 4)), cutOff);
  EXPECT_EQ(check(binary.substr(0, binary.size() - 20)), cutOff);
  EXPECT_EQ(check(with(text, "vertex 300", "vertex 2000000000")), cutOff);
  EXPECT_EQ(check(with(text, "face 1", "face 2000000000")), cutOff);
  // Entries without properties take no room, but time.
  EXPECT_EQ(check(with(text, "element face 1\n", "element edge 2000000000\nelement face 1\n")),
            cutOff);
}

TEST_F(PlyHeader, RefusesWhatIsMalformed) {
  EXPECT_EQ(check(""), "the header has no line \"end_header\"");
  EXPECT_EQ(check("end_header\n"), "not a PLY file");
  EXPECT_EQ(check(with(text, "ascii 1.0", "ascii 2.0")),
            "the header's second line is no format of PLY 1.0");
  EXPECT_EQ(check(with(text, "vertex 300", "vertex -1")),
            "the header has \"-1\" where a count is wanted");
  EXPECT_EQ(check(with(text, "vertex 300", "vertex 3000000000")),
            "the header announces too many of \"vertex\"");
  EXPECT_EQ(check(with(text, "element vertex 300", "element vertex")),
            "the header has a malformed element");
  EXPECT_EQ(check(with(text, "float x", "half x")), "the header has a property of type \"half\"");
  EXPECT_EQ(check(with(text, "float x", "float")), "the header has a malformed property");
  EXPECT_EQ(check(with(text, "element vertex 300\n", "")), "the header has a line \"property\"");
}

// PCL ends the program for most of these.
TEST_F(PlyHeader, RefusesColoursInAnotherOrder) {
  const std::string refusal = "colours of the points have to be red, green, blue in this order";
  const std::string red = "property uchar red\n";
  const std::string green = "property uchar green\n";
  const std::string blue = "property uchar blue\n";
  const std::string alpha = "property uint8 alpha\n";
  const auto checkColours = [&](const std::string& colours) {
    return check(with(text, red + green + blue, colours));
  };
  for (const std::string& colours :
       {red, green, blue, alpha, red + green, green + blue, blue + green + red, red + blue + green,
        red + green + alpha, red + red + green + blue, red + green + blue + blue,
        red + "property float w\n" + green + blue,
        with(red + green + blue, "uchar red", "float red")})
    EXPECT_EQ(checkColours(colours), refusal) << colours;
  EXPECT_EQ(checkColours(with(red + green + blue, "uchar green", "list uchar uchar green")),
            refusal);
  for (const std::string& colours :
       {std::string(), red + green + blue, red + green + blue + alpha,
        std::string("property float red\n"),
        std::string("property uchar diffuse_red\nproperty uchar diffuse_green\n"
                    "property uchar diffuse_blue\n")})
    EXPECT_NE(checkColours(colours), refusal) << colours;
  EXPECT_EQ(check(with(text, "element face 1\n", "element face 1\n" + blue)), "no error");
}

// PCL ends the program for grids whose numbers disagree.
TEST_F(PlyHeader, RefusesGrids) {
  EXPECT_EQ(check(with(text, "element face 1", "element range_grid 1")),
            "organised PLY files (with a range_grid) are not supported, save it as PCD");
}

} // namespace
} // namespace velmorn::tool
