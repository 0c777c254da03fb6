// Symbols with and without damage.
#include "quillet64/symbol_decoding.h"

#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "velmorn/data_matrix.h"

namespace velmorn::quillet {
namespace {

using testing::Eq;
using testing::Optional;

TEST(SymbolDecoding, ReadsEverySizeOfBoard) {
  for (const auto& [text, modules] :
       {std::pair<std::string, int>("12,7,20", 12), std::pair<std::string, int>("60,40,12.5", 14),
        std::pair<std::string, int>("123,45,12.3456", 16)})
    EXPECT_THAT(decodeSymbol(tool::dataMatrix(text, modules)), Optional(Eq(text)));
}

TEST(SymbolDecoding, BordersAreThoseOfEverySymbol) {
  for (const int modules : {12, 14, 16}) {
    const cv::Mat_<uchar> symbol = tool::dataMatrix("3,4,5", modules);
    cv::Mat_<uchar> forced(symbol.size(), 0);
    forceFinder(forced);
    for (int row = 0; row < modules; ++row)
      for (int column = 0; column < modules; ++column) {
        if (!isFinder(modules, row, column)) continue;
        EXPECT_EQ(isFinderDark(modules, row, column), symbol(row, column) != 0);
        EXPECT_EQ(forced(row, column), symbol(row, column));
      }
  }
}

TEST(SymbolDecoding, ForcingLeavesTheDataAlone) {
  const cv::Mat_<uchar> symbol = tool::dataMatrix("12,7,20", 12);
  cv::Mat_<uchar> forced = symbol.clone();
  forceFinder(forced);
  EXPECT_EQ(cv::norm(forced, symbol, cv::NORM_INF), 0);
}

TEST(SymbolDecoding, CorrectsSomeModulesAndGivesUpOnMany) {
  cv::Mat_<uchar> symbol = tool::dataMatrix("12,7,20", 12);
  symbol(5, 5) ^= 1;
  symbol(8, 3) ^= 1;
  EXPECT_THAT(decodeSymbol(symbol), Optional(Eq("12,7,20")));
  symbol({1, 1, 10, 10}).setTo(0);
  EXPECT_EQ(decodeSymbol(symbol), std::nullopt);
}

TEST(SymbolDecoding, SkipsMirroredAndTurnedSymbolsAndForeignTexts) {
  const cv::Mat_<uchar> symbol = tool::dataMatrix("12,7,20", 12);
  cv::Mat_<uchar> flipped;
  cv::transpose(symbol, flipped);
  EXPECT_EQ(decodeSymbol(flipped), std::nullopt);
  cv::flip(symbol, flipped, 1);
  EXPECT_EQ(decodeSymbol(flipped), std::nullopt);
  EXPECT_EQ(decodeSymbol(tool::dataMatrix("HELLO", 12)), std::nullopt);
}

TEST(SymbolDecoding, NothingInRandomModules) {
  cv::RNG rng(7);
  for (int i = 0; i < 3000; ++i) {
    cv::Mat_<uchar> dark(12 + 2 * (i % 3), 12 + 2 * (i % 3));
    rng.fill(dark, cv::RNG::UNIFORM, 0, 2);
    forceFinder(dark);
    EXPECT_EQ(decodeSymbol(dark), std::nullopt);
  }
}

} // namespace
} // namespace velmorn::quillet
