// How text from outside gets into an HTML page.
#include "velmorn/html_text.h"

#include <cmath>
#include <cstdint>
#include <cstdio>

#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kNoNumber = "–";
constexpr double kLargestPlain = 1e9; // beyond, digits alone would say nothing

std::string dumped(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string asUtf8(const std::string& text) { return Json::parse(dumped(text)).get<std::string>(); }

std::string escaped(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return std::string(1, c);
  }
}

bool startsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }

std::string printed(const char* format, int decimals, double value) {
  char text[64];
  std::snprintf(text, sizeof(text), format, decimals, value);
  return text;
}

bool isZero(const std::string& number) {
  return number.find_first_of("123456789") == std::string::npos;
}

// The next three bytes, or as many as there are, as four digits.
std::string base64Group(std::string_view bytes) {
  static constexpr char kDigits[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < 3; ++i)
    bits = bits << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
  std::string group = "====";
  for (std::size_t i = 0; i <= bytes.size() && i < 4; ++i)
    group[i] = kDigits[bits >> (18 - 6 * i) & 63U];
  return group;
}

} // namespace

std::string htmlText(const std::string& text) {
  std::string html;
  for (const char c : oneLine(asUtf8(text))) html += escaped(c);
  return html;
}

std::string jsonInScript(const Json& value) {
  std::string text;
  for (const char c : dumped(value)) text += c == '<' ? "\\u003c" : std::string(1, c);
  return text;
}

std::string htmlNumber(double value, int decimals) {
  if (!std::isfinite(value)) return kNoNumber;
  const bool isPlain = std::abs(value) < kLargestPlain;
  const std::string number = printed(isPlain ? "%.*f" : "%.*e", decimals, value);
  return number.front() == '-' && isZero(number) ? number.substr(1) : number;
}

std::string shortenedText(const std::string& text, std::size_t mostCharacters) {
  std::string head;
  std::size_t characters = 0;
  for (const char c : asUtf8(text)) {
    if (startsCharacter(c) && ++characters > mostCharacters) return head + "…";
    head += c;
  }
  return head;
}

std::string base64Text(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) text += base64Group(bytes.substr(i, 3));
  return text;
}

} // namespace velmorn::tool
