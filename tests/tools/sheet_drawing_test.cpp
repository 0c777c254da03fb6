// A board's sheet as PDF, SVG and PNG: the places in millimetres, and the codes as they are read.
#include "velmorn/sheet_drawing.h"

#include <ZXing/ReadBarcode.h>
#include <gmock/gmock.h>

#include <opencv2/imgcodecs.hpp>

#include "tools/drawn_boxes.h"
#include "tools/expect_tool_error.h"
#include "velmorn/print_resolution.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;
using testing::Not;

// The drawing library keeps places to 1/256 point and writes at least three decimals.
constexpr double kHalfStep = 25.4 / 72 * (0.5 / 256 + 0.0005) + 1e-6; // mm

const PrintedBoard kBoard = {{6, 4, 20}, false};

BoardSheet sheetOf(const PrintedBoard& board) { return layOut(board, *parsePaper("fit")); }

std::string readCode(const cv::Mat& picture) {
  const ZXing::ImageView view(picture.data, picture.cols, picture.rows, ZXing::ImageFormat::Lum,
                              static_cast<int>(picture.step));
  const ZXing::Result result =
      ZXing::ReadBarcode(view, ZXing::DecodeHints().setFormats(ZXing::BarcodeFormat::DataMatrix));
  const std::wstring text = result.isValid() ? result.text() : L"";
  return {text.begin(), text.end()};
}

// Reads the code of every white square of a picture of the whole page.
void expectCodes(const cv::Mat& picture, const BoardSheet& sheet, const CodeBoardSpec& spec,
                 double pixelsPerMillimetre) {
  for (int b = 1; b <= spec.rows; ++b)
    for (int a = 1; a <= spec.columns; ++a) {
      if (!isWhiteSquare(a, b)) continue;
      const auto pixel = [&](double origin, int line) {
        return cvRound((origin + line * spec.square) * pixelsPerMillimetre);
      };
      const cv::Rect square(cv::Point(pixel(sheet.origin.x, a - 1), pixel(sheet.origin.y, b - 1)),
                            cv::Point(pixel(sheet.origin.x, a), pixel(sheet.origin.y, b)));
      EXPECT_EQ(readCode(picture(square)), codeText(a, b, spec.square));
    }
}

void expectPlaces(const std::vector<InkBox>& drawn, const BoardSheet& sheet) {
  std::vector<InkBox> wanted = sheet.pattern;
  wanted.push_back(sheet.bar);
  ASSERT_EQ(drawn.size(), wanted.size());
  for (std::size_t i = 0; i < drawn.size(); ++i) {
    EXPECT_NEAR(drawn[i].left, wanted[i].left, kHalfStep) << i;
    EXPECT_NEAR(drawn[i].top, wanted[i].top, kHalfStep) << i;
    EXPECT_NEAR(drawn[i].right, wanted[i].right, kHalfStep) << i;
    EXPECT_NEAR(drawn[i].bottom, wanted[i].bottom, kHalfStep) << i;
  }
}

TEST(SheetDrawing, PdfHasEverythingInItsPlace) {
  const BoardSheet sheet = sheetOf(kBoard);
  const std::string file = sheetAsPdf(sheet);
  EXPECT_NEAR(pageOfPdf(file).width, sheet.page.width, 1e-3);
  EXPECT_NEAR(pageOfPdf(file).height, sheet.page.height, 1e-3);
  const std::vector<InkBox> drawn = boxesOfPdf(file);
  expectPlaces(drawn, sheet);
  expectCodes(pictureOf(drawn, sheet.page, 20), sheet, kBoard.spec, 20);
}

TEST(SheetDrawing, SvgHasEverythingInItsPlace) {
  const BoardSheet sheet = sheetOf(kBoard);
  const std::string file = sheetAsSvg(sheet);
  EXPECT_NEAR(pageOfSvg(file).width, sheet.page.width, 1e-3);
  EXPECT_NEAR(pageOfSvg(file).height, sheet.page.height, 1e-3);
  const std::vector<InkBox> drawn = boxesOfSvg(file);
  expectPlaces(drawn, sheet);
  expectCodes(pictureOf(drawn, sheet.page, 20), sheet, kBoard.spec, 20);
}

TEST(SheetDrawing, PdfAndSvgAreTheSameEveryTime) {
  const BoardSheet sheet = sheetOf(kBoard);
  EXPECT_EQ(sheetAsPdf(sheet), sheetAsPdf(sheet));
  EXPECT_EQ(sheetAsSvg(sheet), sheetAsSvg(sheet));
  EXPECT_THAT(sheetAsPdf(sheet), Not(HasSubstr("Date")));
}

class SheetPicture : public testing::Test {
 protected:
  explicit SheetPicture(const PrintedBoard& board = kBoard) : sheet_(sheetOf(board)) {
    resolution_ = resolutionNear(board, sheet_.modules, 300);
    file_ = sheetAsPng(sheet_, resolution_.pixelsPerMillimetre);
    picture_ = cv::imdecode(std::vector<char>(file_.begin(), file_.end()), cv::IMREAD_UNCHANGED);
  }

  // Number of a big-endian 32-bit field of the file.
  std::uint32_t number(std::size_t place) const {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<uchar>(file_[place + i]);
    return value;
  }

  BoardSheet sheet_;
  PrintResolution resolution_;
  std::string file_;
  cv::Mat picture_;
};

TEST_F(SheetPicture, SaysItsResolution) {
  const std::size_t block = file_.find("pHYs");
  ASSERT_NE(block, std::string::npos);
  const auto perMetre =
      static_cast<std::uint32_t>(std::lround(resolution_.pixelsPerMillimetre * 1000));
  EXPECT_EQ(number(block - 4), 9U);
  EXPECT_EQ(number(block + 4), perMetre);
  EXPECT_EQ(number(block + 8), perMetre);
  EXPECT_EQ(file_[block + 12], 1);
}

TEST_F(SheetPicture, HasOneChannelAndReadableCodes) {
  ASSERT_EQ(picture_.type(), CV_8UC1);
  EXPECT_EQ(picture_.cols, std::ceil(sheet_.page.width * resolution_.pixelsPerMillimetre));
  expectCodes(picture_, sheet_, kBoard.spec, resolution_.pixelsPerMillimetre);
}

TEST_F(SheetPicture, HasNoGreyWithinThePattern) {
  ASSERT_TRUE(resolution_.wholePixels);
  const double scale = resolution_.pixelsPerMillimetre;
  const double square = kBoard.spec.square;
  const cv::Point corner(cvRound(sheet_.origin.x * scale - square * scale / 2),
                         cvRound(sheet_.origin.y * scale - square * scale / 2));
  const cv::Size size(cvRound(7 * square * scale), cvRound(5 * square * scale));
  const cv::Mat pattern = picture_(cv::Rect(corner, size));
  EXPECT_EQ(cv::countNonZero((pattern != 0) & (pattern != 255)), 0);
  // Half of the rim and of the squares is dark, and some of every code.
  const double dark = 1 - cv::mean(pattern)[0] / 255;
  EXPECT_GT(dark, 0.5);
  EXPECT_LT(dark, 0.75);
}

TEST(SheetDrawing, RefusesAPictureThatIsTooLarge) {
  EXPECT_THAT(toolError([] { sheetAsPng(sheetOf(kBoard), 1000); }), HasSubstr("too large"));
}

} // namespace
} // namespace velmorn::tool
