// How the tool writes JSON.
#include "velmorn/json_text.h"

#include <gtest/gtest.h>

namespace velmorn::tool {
namespace {

TEST(JsonText, PutsPlainListsOnOneLine) {
  nlohmann::ordered_json json;
  json["name"] = "a";
  json["rows"] = {{1, 2.5}, {-3, 4}};
  EXPECT_EQ(fileText(json),
            "{\n  \"name\": \"a\",\n  \"rows\": [\n    [1, 2.5],\n    [-3, 4]\n  ]\n}\n");
}

TEST(JsonText, ReplacesWhatIsNotUtf8) {
  nlohmann::ordered_json json;
  json["name"] = "\xff";
  EXPECT_EQ(fileText(json), "{\n  \"name\": \"\xEF\xBF\xBD\"\n}\n");
}

TEST(JsonText, GivesRowsWithoutNegativeZeros) {
  const cv::Matx44d pose(-0.0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 0, 0, 0, 1);
  EXPECT_EQ(rowsOf(pose).dump(),
            "[[0.0,1.0,2.0,3.0],[4.0,5.0,6.0,7.0],[8.0,9.0,10.0,11.0],[0.0,0.0,0.0,1.0]]");
}

} // namespace
} // namespace velmorn::tool
