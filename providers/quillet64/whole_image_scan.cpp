// Codes without their board's squares, by zxing.
#include "quillet64/whole_image_scan.h"

#ifndef ZX_USE_UTF8
#define ZX_USE_UTF8
#endif
#include <ZXing/ReadBarcode.h>

#include "quillet64/code_text.h"
#include "quillet64/square_look.h"

namespace velmorn::quillet {
namespace {

Quad squareAround(const ZXing::Position& position) {
  Quad code;
  for (std::size_t k = 0; k < 4; ++k)
    code[k] = cv::Point2f(static_cast<float>(position[k].x), static_cast<float>(position[k].y));
  const cv::Matx33d imageFromCode = imageFromSquare(code);
  constexpr double kMargin = kCodeMargin / kCodeShare; // of the code's side
  const auto place = [&](double u, double v) {
    return cv::Point2f(mapPoint(imageFromCode, {u, v}));
  };
  return {place(-kMargin, -kMargin), place(1 + kMargin, -kMargin), place(1 + kMargin, 1 + kMargin),
          place(-kMargin, 1 + kMargin)};
}

} // namespace

std::optional<Quad> scanForSquare(const cv::Mat& grey) {
  ZXing::DecodeHints hints;
  hints.setFormats(ZXing::BarcodeFormat::DataMatrix).setTryHarder(true).setTryRotate(false);
  const ZXing::ImageView view(grey.data, grey.cols, grey.rows, ZXing::ImageFormat::Lum,
                              static_cast<int>(grey.step));
  const ZXing::Result read = ZXing::ReadBarcode(view, hints);
  if (!read.isValid() || read.isMirrored()) return std::nullopt;
  if (!isBoardCodeText(read.text())) return std::nullopt;
  return squareAround(read.position());
}

} // namespace velmorn::quillet
