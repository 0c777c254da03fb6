// Tables of plain text.
#include "velmorn/text_table.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace velmorn::tool {
namespace {

constexpr std::size_t kMostIdCharacters = 24; // longer ids are cut in the table

bool startsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }

// Characters of a UTF-8 text.
std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), startsCharacter));
}

std::string padded(const std::string& text, std::size_t width, bool toTheRight) {
  const std::string blanks(width - std::min(width, widthOf(text)), ' ');
  return toTheRight ? blanks + text : text + blanks;
}

std::vector<std::size_t> columnWidths(const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths(rows.empty() ? 0 : rows.front().size());
  for (const std::vector<std::string>& row : rows) {
    for (std::size_t c = 0; c < row.size(); ++c) widths[c] = std::max(widths[c], widthOf(row[c]));
  }
  return widths;
}

} // namespace

std::string tableText(const std::vector<std::vector<std::string>>& rows, std::size_t textColumns) {
  const std::vector<std::size_t> widths = columnWidths(rows);
  std::string table;
  for (const std::vector<std::string>& row : rows) {
    for (std::size_t c = 0; c < row.size(); ++c) {
      table += (c == 0 ? "" : "  ") + padded(row[c], widths[c], c >= textColumns);
    }
    table += '\n';
  }
  return table;
}

std::string shortened(const std::string& id) {
  if (widthOf(id) <= kMostIdCharacters) return id;
  std::string head;
  std::size_t characters = 0;
  for (const char c : id) {
    if (startsCharacter(c) && ++characters > kMostIdCharacters - 3) break;
    head += c;
  }
  return head + "...";
}

std::string fixedText(double value, int decimals) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(decimals) << value;
  return text.str();
}

} // namespace velmorn::tool
