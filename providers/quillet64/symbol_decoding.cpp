// Modules of a symbol to its text, by zxing.
#include "quillet64/symbol_decoding.h"

#ifndef ZX_USE_UTF8
#define ZX_USE_UTF8
#endif
#include <ZXing/ReadBarcode.h>

#include "quillet64/code_text.h"

namespace velmorn::quillet {
namespace {

constexpr int kPixelsPerModule = 2;
constexpr int kMargin = 2; // modules

cv::Mat drawn(const cv::Mat_<uchar>& dark) {
  const int size = (dark.rows + 2 * kMargin) * kPixelsPerModule;
  cv::Mat picture(size, size, CV_8UC1, cv::Scalar(255));
  for (int row = 0; row < dark.rows; ++row)
    for (int column = 0; column < dark.cols; ++column)
      if (dark(row, column) != 0)
        picture({(column + kMargin) * kPixelsPerModule, (row + kMargin) * kPixelsPerModule,
                 kPixelsPerModule, kPixelsPerModule})
            .setTo(0);
  return picture;
}

} // namespace

bool isFinder(int modules, int row, int column) {
  return row == 0 || column == 0 || row == modules - 1 || column == modules - 1;
}

bool isFinderDark(int modules, int row, int column) {
  if (column == 0 || row == modules - 1) return true;
  return row == 0 ? column % 2 == 0 : row % 2 == 1;
}

void forceFinder(cv::Mat_<uchar>& dark) {
  for (int row = 0; row < dark.rows; ++row)
    for (int column = 0; column < dark.cols; ++column)
      if (isFinder(dark.rows, row, column))
        dark(row, column) = isFinderDark(dark.rows, row, column) ? 1 : 0;
}

std::optional<std::string> decodeSymbol(const cv::Mat_<uchar>& dark) {
  const cv::Mat picture = drawn(dark);
  ZXing::DecodeHints hints;
  hints.setFormats(ZXing::BarcodeFormat::DataMatrix)
      .setIsPure(true)
      .setBinarizer(ZXing::Binarizer::BoolCast);
  const ZXing::ImageView view(picture.data, picture.cols, picture.rows, ZXing::ImageFormat::Lum);
  const ZXing::Result read = ZXing::ReadBarcode(view, hints);
  if (!read.isValid() || read.isMirrored()) return std::nullopt;
  std::string text = read.text();
  if (!isBoardCodeText(text)) return std::nullopt;
  return text;
}

} // namespace velmorn::quillet
