// The text of a board's code.
#include "quillet64/code_text.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace velmorn::quillet {
namespace {

// Reads a whole number from 1 and the comma behind it; where the rest begins, null if it is not so.
const char* pastIndex(const char* from, const char* end) {
  std::int32_t index = 0;
  const auto read = std::from_chars(from, end, index);
  const bool isIndex = read.ec == std::errc() && index >= 1;
  return isIndex && read.ptr != end && *read.ptr == ',' ? read.ptr + 1 : nullptr;
}

// Single precision, as the codes' users read it.
bool isLength(const char* from, const char* end) {
  float length = 0;
  const auto read = std::from_chars(from, end, length);
  return read.ec == std::errc() && read.ptr == end && std::isfinite(length) && length > 0;
}

} // namespace

bool isBoardCodeText(const std::string& text) {
  const char* const end = text.data() + text.size();
  const char* rest = pastIndex(text.data(), end);
  if (rest != nullptr) rest = pastIndex(rest, end);
  return rest != nullptr && isLength(rest, end);
}

} // namespace velmorn::quillet
