// PNG files that say their resolution.
#include "velmorn/png_file.h"

#include <cmath>
#include <cstdint>
#include <vector>

#include <zlib.h>
#include <opencv2/imgcodecs.hpp>

#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

// The signature and the first block, behind which the resolution stands.
constexpr std::size_t kEndOfHeader = 8 + 25;

void appendNumber(std::string& text, std::uint32_t number) {
  for (const int shift : {24, 16, 8, 0}) text += static_cast<char>((number >> shift) & 0xFF);
}

// The block "pHYs": pixels per metre in both directions.
std::string resolutionBlock(double pixelsPerMillimetre) {
  constexpr char kPerMetre = 1;
  const auto perMetre = static_cast<std::uint32_t>(std::lround(pixelsPerMillimetre * 1000));
  std::string content = "pHYs";
  appendNumber(content, perMetre);
  appendNumber(content, perMetre);
  content += kPerMetre;
  std::string block;
  appendNumber(block, static_cast<std::uint32_t>(content.size() - 4));
  block += content;
  const auto* bytes = reinterpret_cast<const Bytef*>(content.data());
  appendNumber(block,
               static_cast<std::uint32_t>(crc32(0, bytes, static_cast<uInt>(content.size()))));
  return block;
}

} // namespace

std::string pngFile(const cv::Mat& picture, double pixelsPerMillimetre) {
  std::vector<uchar> bytes;
  if (!cv::imencode(".png", picture, bytes) || bytes.size() < kEndOfHeader)
    throw ToolError("the picture could not be written as PNG");
  std::string file(bytes.begin(), bytes.end());
  return file.insert(kEndOfHeader, resolutionBlock(pixelsPerMillimetre));
}

} // namespace velmorn::tool
