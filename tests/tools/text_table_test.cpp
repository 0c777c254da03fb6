// Tables of plain text.
#include "velmorn/text_table.h"

#include <gtest/gtest.h>

namespace velmorn::tool {
namespace {

TEST(TextTable, TextToTheLeftNumbersToTheRight) {
  EXPECT_EQ(tableText({{"id", "n"}, {"left", "5"}, {"b", "12345"}}, 1),
            "id        n\n"
            "left      5\n"
            "b     12345\n");
  EXPECT_EQ(tableText({}, 1), "");
}

TEST(TextTable, CountsCharactersNotBytes) {
  EXPECT_EQ(tableText({{"\xC3\xA4", "1"}, {"ab", "2"}}, 1), "\xC3\xA4   1\nab  2\n");
}

TEST(TextTable, CutsLongIds) {
  EXPECT_EQ(shortened(std::string(24, 'x')), std::string(24, 'x'));
  EXPECT_EQ(shortened(std::string(25, 'x')), std::string(21, 'x') + "...");
}

TEST(TextTable, FixedDecimals) { EXPECT_EQ(fixedText(2.0 / 3, 3), "0.667"); }

} // namespace
} // namespace velmorn::tool
