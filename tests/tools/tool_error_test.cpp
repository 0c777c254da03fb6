// How the tool's messages are put into words.
#include "velmorn/tool_error.h"

#include <gtest/gtest.h>

namespace velmorn::tool {
namespace {

TEST(ToolText, CountsInWords) {
  EXPECT_EQ(counted(0, "image"), "0 images");
  EXPECT_EQ(counted(1, "image"), "1 image");
  EXPECT_EQ(counted(2, "image"), "2 images");
}

TEST(ToolText, PutsAnythingOnOneLine) {
  EXPECT_EQ(oneLine("plain  text"), "plain  text");
  EXPECT_EQ(oneLine("a\nb\r\n\tc\n"), "a b c");
  EXPECT_EQ(oneLine("a \n b"), "a  b");
  EXPECT_EQ(oneLine(std::string("a\0b\x7f", 4)), "a b");
  EXPECT_EQ(oneLine("\xc3\xbc"), "\xc3\xbc");
}

TEST(ToolText, TakesTheLastPartOfAPath) {
  EXPECT_EQ(fileName("a/b/c.png"), "c.png");
  EXPECT_EQ(fileName("c.png"), "c.png");
}

TEST(ToolText, Quotes) {
  std::string text = "left";
  EXPECT_EQ(inQuotes(text), "\"left\"");
}

} // namespace
} // namespace velmorn::tool
