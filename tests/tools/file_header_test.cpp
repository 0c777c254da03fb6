// The lines that a point cloud file begins with.
#include "velmorn/file_header.h"

#include <gmock/gmock.h>

#include <limits>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

using testing::ElementsAre;

class HeaderFile : public TempDirTest {};

TEST_F(HeaderFile, IsSplitIntoWords) {
  writeFile("f", "ply\r\n\nelement  vertex\t3\nend extra\n0123456789");
  const FileHeader header = readFileHeader("f", "end");
  EXPECT_THAT(header.lines, ElementsAre(ElementsAre("ply"), ElementsAre("element", "vertex", "3"),
                                        ElementsAre("end", "extra")));
  EXPECT_EQ(header.bodySize, 10U);
  EXPECT_EQ(header.bodyStart, "01234567");
}

TEST_F(HeaderFile, HasAnEnd) {
  writeFile("f", "a\nend"); // without a line end
  EXPECT_EQ(toolError([] { readFileHeader("f", "end"); }), "the header has no line \"end\"");
  writeFile("f", std::string(3 << 20, '\n') + "end\n");
  EXPECT_EQ(toolError([] { readFileHeader("f", "end"); }), "the header has no line \"end\"");
  EXPECT_EQ(toolError([] { readFileHeader("gone", "end"); }), "not readable");
}

TEST(HeaderNumber, IsWholeAndWithoutSign) {
  EXPECT_EQ(headerNumber("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
  for (const char* word : {"", "-1", "+1", "1.0", "1e3", "x", "18446744073709551616"}) {
    EXPECT_NE(toolError([&] { headerNumber(word); }), "no error") << word;
  }
}

TEST(ProductOrMost, DoesNotWrapAround) {
  EXPECT_EQ(productOrMost(6, 7), 42U);
  EXPECT_EQ(productOrMost(0, 7), 0U);
  EXPECT_EQ(productOrMost(7, 0), 0U);
  EXPECT_EQ(productOrMost(1ULL << 33, 1ULL << 33), std::numeric_limits<std::uint64_t>::max());
}

} // namespace
} // namespace velmorn::tool
