// Files that hold one extrinsic: both forms, and what is refused.
#include "velmorn/extrinsic_file.h"

#include <gmock/gmock.h>

#include "support/temp_dir.h"
#include "tools/cloud_files.h"
#include "tools/expect_tool_error.h"
#include "velmorn/json_text.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;

const std::string kFlat = R"({"extrinsic": [-1,0,0,5, 0,1,0,6, 0,0,-1,700, 0,0,0,1]})";

class ExtrinsicFile : public TempDirTest {
 protected:
  NamedExtrinsic read(const std::string& text) {
    writeFile("e.json", text);
    return readExtrinsicFile("e.json");
  }
  std::string errorOf(const std::string& text) {
    return toolError([&] { read(text); });
  }
};

TEST_F(ExtrinsicFile, ReadsAFlatList) {
  const NamedExtrinsic named = read(kFlat);
  EXPECT_EQ(named.direction, "planeFromCam");
  EXPECT_EQ(named.extrinsic.data[0], -1);
  EXPECT_EQ(named.extrinsic.data[11], 700);
  EXPECT_EQ(named.extrinsic.data[15], 1);
}

TEST_F(ExtrinsicFile, ReadsWhatItWrites) {
  NamedExtrinsic named = read(kFlat);
  named.direction = "conveyorFromCam";
  named.extrinsic.data[3] = 0.1;
  const NamedExtrinsic again = read(fileText(extrinsicJson(named)));
  EXPECT_EQ(again.direction, named.direction);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(again.extrinsic.data[i], named.extrinsic.data[i]);
}

TEST_F(ExtrinsicFile, RefusesWhatIsNoTransform) {
  EXPECT_EQ(errorOf(with(kFlat, "700", "1e999")).substr(0, 24), "e.json: not valid JSON: ");
  EXPECT_EQ(errorOf(with(kFlat, "0,0,0,1", "0,0,0,2")),
            "e.json: the last row of \"extrinsic\" is not 0 0 0 1");
  EXPECT_EQ(errorOf(with(kFlat, "0,0,-1,700", "0,0,0,700")),
            "e.json: the rotation of \"extrinsic\" cannot be inverted");
}

TEST_F(ExtrinsicFile, RefusesOtherForms) {
  const std::string wanted = "e.json: \"extrinsic\" has to be 16 numbers, or 4 rows of 4";
  EXPECT_EQ(errorOf(with(kFlat, "700, ", "")), wanted);
  EXPECT_EQ(errorOf(with(kFlat, "700", "\"700\"")), wanted);
  EXPECT_EQ(errorOf(R"({"extrinsic": 1})"), wanted);
  EXPECT_EQ(errorOf(R"({"extrinsic": [[1,0,0,0],[0,1,0,0],[0,0,1,0],[0,0,0]]})"), wanted);
  EXPECT_EQ(errorOf("{}"), "e.json: key \"extrinsic\" is missing");
  EXPECT_EQ(errorOf("[1]"), "e.json: an object { } is wanted");
  EXPECT_THAT(errorOf("{"), HasSubstr("e.json: not valid JSON: parse error at line 1"));
  EXPECT_EQ(toolError([] { readExtrinsicFile("gone.json"); }), "no such file: gone.json");
}

TEST_F(ExtrinsicFile, RefusesTheOtherDirection) {
  for (const char* direction : {"\"camFromPlane\"", "\"FromCam\"", "7"}) {
    EXPECT_THAT(errorOf(with(kFlat, "{", std::string("{\"direction\": ") + direction + ", ")),
                HasSubstr("a name that ends in FromCam is wanted"));
  }
}

TEST_F(ExtrinsicFile, TellsRigidFromScaledAndReflected) {
  tagOzKCamExtrinsic extrinsic = read(kFlat).extrinsic;
  EXPECT_TRUE(isRigid(extrinsic));
  extrinsic.data[0] = 1; // a reflection
  EXPECT_FALSE(isRigid(extrinsic));
  extrinsic.data[0] = -0.99;
  EXPECT_FALSE(isRigid(extrinsic));
}

} // namespace
} // namespace velmorn::tool
