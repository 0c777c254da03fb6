// The outcome of a stitching run, for people.
#include "velmorn/result_table.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iomanip>
#include <sstream>
#include <vector>

#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

constexpr std::size_t kMostIdCharacters = 24; // longer ids are cut in the table
constexpr std::size_t kColumns = 8;
constexpr std::size_t kTextColumns = 2; // to the left; the others to the right

using Row = std::array<std::string, kColumns>;

bool startsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }

// Characters of a UTF-8 text.
std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), startsCharacter));
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

std::string fixed(double value, int decimals) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(decimals) << value;
  return text.str();
}

Row rowOf(const StitchedCamera& camera, bool isBase) {
  const cv::Vec3d position = translationOf(camera.place.baseFromCam);
  return {shortened(camera.id),
          isBase ? "(base)" : "to " + shortened(camera.place.parent),
          camera.residual ? fixed(static_cast<double>(*camera.residual), 4) : "-",
          fixed(rotationDegrees(camera.place.baseFromCam), 3),
          fixed(position[0], 3),
          fixed(position[1], 3),
          fixed(position[2], 3),
          fixed(cv::norm(position), 3)};
}

std::string padded(const std::string& text, std::size_t width, bool toTheRight) {
  const std::string blanks(width - std::min(width, widthOf(text)), ' ');
  return toTheRight ? blanks + text : text + blanks;
}

} // namespace

std::string resultTable(const StitchedRig& stitched) {
  std::vector<Row> rows = {
      {"camera", "linked", "residual", "rotation [deg]", "x", "y", "z", "distance"}};
  for (std::size_t i = 0; i < stitched.cameras.size(); ++i) {
    rows.push_back(rowOf(stitched.cameras[i], i == stitched.base));
  }
  std::array<std::size_t, kColumns> widths{};
  for (const Row& row : rows) {
    for (std::size_t c = 0; c < kColumns; ++c) widths[c] = std::max(widths[c], widthOf(row[c]));
  }
  std::string table;
  for (const Row& row : rows) {
    for (std::size_t c = 0; c < kColumns; ++c) {
      table += (c == 0 ? "" : "  ") + padded(row[c], widths[c], c >= kTextColumns);
    }
    table += '\n';
  }
  return table;
}

} // namespace velmorn::tool
