// Round numbers for axes and scale bars.
#include "velmorn/round_numbers.h"

#include <gmock/gmock.h>

namespace velmorn::tool {
namespace {

using testing::DoubleEq;
using testing::ElementsAre;

TEST(RoundNumbers, GoesUp) {
  const std::vector<std::pair<double, double>> cases = {{1, 1}, {1.1, 2},  {2, 2},     {2.1, 5},
                                                        {5, 5}, {5.1, 10}, {0.3, 0.5}, {700, 1000}};
  for (const auto& [least, round] : cases) EXPECT_DOUBLE_EQ(roundNumberAtLeast(least), round);
  EXPECT_DOUBLE_EQ(roundNumberAtLeast(3e-7), 5e-7);
}

TEST(RoundNumbers, GoesDown) {
  const std::vector<std::pair<double, double>> cases = {{1, 1}, {1.9, 1}, {2, 2},     {4.9, 2},
                                                        {5, 5}, {9.9, 5}, {0.3, 0.2}, {700, 500}};
  for (const auto& [most, round] : cases) EXPECT_DOUBLE_EQ(roundNumberAtMost(most), round);
}

// 3 * 0.1 is above 0.3 in double precision, and counts as 0.3.
TEST(RoundNumbers, CountsMultiplesByTheirMeaning) {
  EXPECT_THAT(multiplesWithin(-1.5, 3, 1), ElementsAre(-1, 0, 1, 2, 3));
  EXPECT_THAT(multiplesWithin(0.1, 0.3, 0.1),
              ElementsAre(DoubleEq(0.1), DoubleEq(0.2), DoubleEq(3 * 0.1)));
  EXPECT_THAT(multiplesWithin(1.1, 1.9, 1), ElementsAre());
}

TEST(RoundNumbers, ShowsTheDecimalsOfTheStep) {
  EXPECT_EQ(numberText(-400, 200), "-400");
  EXPECT_EQ(numberText(0.30000000000000004, 0.1), "0.3");
  EXPECT_EQ(numberText(1, 0.05), "1.00");
  EXPECT_EQ(numberText(-1e-15, 0.1), "0");
  EXPECT_EQ(numberText(2e12, 1e12), "2e+12");
  EXPECT_EQ(numberText(3e-12, 1e-12), "3e-12");
}

TEST(RoundNumbers, ShowsShortNumbers) {
  EXPECT_EQ(shortNumberText(3 * 0.1), "0.3");
  EXPECT_EQ(shortNumberText(6553.5), "6553.5");
  EXPECT_EQ(shortNumberText(-0.0), "0");
}

TEST(RoundNumbers, ShowsRoughNumbers) {
  EXPECT_EQ(roughNumberText(0.287912), "0.288");
  EXPECT_EQ(roughNumberText(12.34), "12.3");
  EXPECT_EQ(roughNumberText(1234.56), "1235");
  EXPECT_EQ(roughNumberText(0), "0");
}

} // namespace
} // namespace velmorn::tool
