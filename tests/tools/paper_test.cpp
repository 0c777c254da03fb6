// Lengths with units and sheets of paper.
#include "velmorn/paper.h"

#include <gmock/gmock.h>

namespace velmorn::tool {
namespace {

using testing::Optional;

TEST(Millimetres, TakeEveryUnit) {
  EXPECT_THAT(parseMillimetres("20"), Optional(20.0));
  EXPECT_THAT(parseMillimetres("20mm"), Optional(20.0));
  EXPECT_THAT(parseMillimetres("2.5 cm"), Optional(25.0));
  EXPECT_THAT(parseMillimetres("0.02m"), Optional(20.0));
  EXPECT_THAT(parseMillimetres("1in"), Optional(25.4));
  EXPECT_THAT(parseMillimetres("12.5MM"), Optional(12.5));
}

TEST(Millimetres, RefuseWhatIsNoLength) {
  for (const char* text : {"", "mm", "0", "-1mm", "nan", "inf", "1e400", "1e3", "20mm2", "20 m m",
                           "20ft", "20,5", " 20", "0x10"})
    EXPECT_EQ(parseMillimetres(text), std::nullopt) << text;
}

TEST(ShortText, HasNoExponentAndNoZeros) {
  EXPECT_EQ(shortText(20), "20");
  EXPECT_EQ(shortText(12.5), "12.5");
  EXPECT_EQ(shortText(0.1 + 0.2), "0.3");
  EXPECT_EQ(shortText(1e15), "1000000000000000");
  EXPECT_EQ(sizeInMillimetres({297, 209.96}), "297x210 mm");
}

TEST(PaperName, TakesNamesAndSizes) {
  EXPECT_EQ(parsePaper("a4")->size, cv::Size2d(210, 297));
  EXPECT_EQ(parsePaper("A0")->size, cv::Size2d(841, 1189));
  EXPECT_EQ(parsePaper("letter")->size, cv::Size2d(215.9, 279.4));
  EXPECT_EQ(parsePaper("300x200")->size, cv::Size2d(300, 200));
  EXPECT_EQ(parsePaper("30x20cm")->size, cv::Size2d(300, 200));
  EXPECT_EQ(parsePaper("30cm x 200mm"), std::nullopt);
  EXPECT_EQ(parsePaper("30cmx200mm")->size, cv::Size2d(300, 200));
  EXPECT_TRUE(parsePaper("fit")->isMadeToFit());
  EXPECT_FALSE(parsePaper("a4")->isMadeToFit());
}

TEST(PaperName, RefusesOthers) {
  for (const char* text :
       {"", "a5", "a", "x", "300x", "x200", "300x200x1", "0x200", "-1x5", "nanxnan", "300*200"})
    EXPECT_FALSE(parsePaper(text)) << text;
}

} // namespace
} // namespace velmorn::tool
