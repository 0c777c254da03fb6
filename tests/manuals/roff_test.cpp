#include "manuals/roff.h"

#include <gtest/gtest.h>

namespace velmorn::manuals {
namespace {

TEST(RoffText, PlainTextStays) {
  EXPECT_EQ(roffText("Side of a square, 5 mm"), "Side of a square, 5 mm");
}

TEST(RoffText, CharactersThatRoffReadsOtherwise) {
  EXPECT_EQ(roffText("C:\\dir"), "C:\\edir");
  EXPECT_EQ(roffText("--board"), "\\-\\-board");
  EXPECT_EQ(roffText("board's"), "board\\(aqs");
  EXPECT_EQ(roffText("\"a\""), "\\(dqa\\(dq");
  EXPECT_EQ(roffText("`~^"), "\\(ga\\(ti\\(ha");
}

TEST(RoffText, LinesAreNoRequests) {
  EXPECT_EQ(roffText(".png files"), "\\&.png files");
  EXPECT_EQ(roffText("'so'"), "\\(aqso\\(aq");
  EXPECT_EQ(roffText("a\n.so b"), "a\n\\&.so b");
  EXPECT_EQ(roffText("a .png"), "a .png");
}

TEST(RoffText, Fonts) {
  EXPECT_EQ(bold("-o"), "\\fB\\-o\\fR");
  EXPECT_EQ(italic(".x"), "\\fI\\&.x\\fR");
}

TEST(RoffParagraphs, LinesAreFilledAndBlankLinesPart) {
  EXPECT_EQ(roffParagraphs("a\nb\n\nc"), "a\nb\n.PP\nc\n");
  EXPECT_EQ(roffParagraphs("\n\na\n"), "a\n");
  EXPECT_EQ(roffParagraphs(""), "");
}

TEST(RoffParagraphs, IndentedLinesStayAsTheyAre) {
  EXPECT_EQ(roffParagraphs("  a\n    b\n\n  c"), ".RS 4\n.EX\na\n  b\n\nc\n.EE\n.RE\n");
}

TEST(RoffParagraphs, BothKindsInTurn) {
  EXPECT_EQ(roffParagraphs("  a\nwith\n  b\n\nc"),
            ".RS 4\n.EX\na\n.EE\n.RE\n.PP\nwith\n.PP\n.RS 4\n.EX\nb\n.EE\n.RE\n.PP\nc\n");
}

} // namespace
} // namespace velmorn::manuals
