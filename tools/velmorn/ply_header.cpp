// What the header of a PLY file announces, checked against the file before it is believed.
#include "velmorn/ply_header.h"

#include <limits>
#include <map>

#include "velmorn/file_header.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

using Words = std::vector<std::string>;

constexpr std::uint64_t kMostEntries = std::numeric_limits<std::int32_t>::max();
constexpr std::uint64_t kTextValue = 2; // bytes: a digit and a separator

// A part of the body: so many entries of at least so many bytes.
struct Element {
  std::uint64_t entries = 0;
  std::uint64_t leastBytes = 0;
};

std::uint64_t sizeOfType(const std::string& type) {
  static const std::map<std::string, std::uint64_t> kSizes = {
      {"char", 1},   {"int8", 1},    {"uchar", 1},  {"uint8", 1},  {"short", 2}, {"int16", 2},
      {"ushort", 2}, {"uint16", 2},  {"int", 4},    {"int32", 4},  {"uint", 4},  {"uint32", 4},
      {"float", 4},  {"float32", 4}, {"double", 8}, {"float64", 8}};
  const auto found = kSizes.find(type);
  if (found == kSizes.end()) {
    throw ToolError("the header has a property of type " + inQuotes(type.substr(0, 40)));
  }
  return found->second;
}

// Of a list only the count is sure to be there.
std::uint64_t propertySize(const Words& line) {
  const bool isList = line.size() == 5 && line[1] == "list";
  if (!isList && line.size() != 3) throw ToolError("the header has a malformed property");
  if (isList) sizeOfType(line[3]);
  return sizeOfType(isList ? line[2] : line[1]);
}

bool isTextForm(const Words& line) {
  const bool known =
      line.size() == 3 && line[0] == "format" && line[2] == "1.0" &&
      (line[1] == "ascii" || line[1] == "binary_little_endian" || line[1] == "binary_big_endian");
  if (!known) throw ToolError("the header's second line is no format of PLY 1.0");
  return line[1] == "ascii";
}

Element elementFrom(const Words& line) {
  if (line.size() != 3) throw ToolError("the header has a malformed element");
  const std::uint64_t entries = headerNumber(line[2]);
  if (entries > kMostEntries) {
    throw ToolError("the header announces too many of " + inQuotes(line[1].substr(0, 40)));
  }
  return {entries, 0};
}

// Organised files number their grid in "obj_info" lines and leave points out.
[[noreturn]] void refuseGrid() {
  throw ToolError("organised PLY files (with a range_grid) are not supported, save it as PCD");
}

// Which part of a point's colour an 8-bit property is; 0 when it is none.
int colourPart(const Words& line) {
  static const std::map<std::string, int> kParts = {
      {"red", 1},           {"green", 2},        {"blue", 3}, {"diffuse_red", 1},
      {"diffuse_green", 2}, {"diffuse_blue", 3}, {"alpha", 4}};
  const bool isByte = line.size() == 3 && (line[1] == "uchar" || line[1] == "uint8");
  const auto found = isByte ? kParts.find(line[2]) : kParts.end();
  return found == kParts.end() ? 0 : found->second;
}

// The reader makes one field of the parts and counts on their order: with another it writes beside
// the points, or ends the program.
void requireColoursInOrder(const FileHeader& header) {
  int before = 0;
  bool isVertex = false;
  for (const Words& line : header.lines) {
    const bool isProperty = line[0] == "property";
    const int part = isProperty && isVertex ? colourPart(line) : 0;
    const bool isIncomplete = (before == 1 || before == 2) && part != before + 1;
    if (isIncomplete || (part > 1 && part != before + 1)) {
      throw ToolError("colours of the points have to be red, green, blue in this order");
    }
    before = part;
    if (line[0] == "element") isVertex = line.size() == 3 && line[1] == "vertex";
  }
}

std::vector<Element> elementsOf(const FileHeader& header, bool isText) {
  std::vector<Element> elements;
  for (std::size_t i = 2; i + 1 < header.lines.size(); ++i) {
    const Words& line = header.lines[i];
    if (line[0] == "comment" || line[0] == "obj_info") continue;
    if (line[0] == "element") {
      elements.push_back(elementFrom(line));
      if (line[1] == "range_grid") refuseGrid();
    } else if (line[0] == "property" && !elements.empty()) {
      const std::uint64_t size = propertySize(line);
      elements.back().leastBytes += isText ? kTextValue : size;
    } else {
      throw ToolError("the header has a line " + inQuotes(line[0].substr(0, 40)));
    }
  }
  return elements;
}

} // namespace

void requireSoundPlyHeader(const std::string& path) {
  const FileHeader header = readFileHeader(path, "end_header");
  if (header.lines.size() < 3 || header.lines[0] != Words{"ply"}) throw ToolError("not a PLY file");
  const bool isText = isTextForm(header.lines[1]);
  // A text may end without a line end.
  std::uint64_t room = header.bodySize + (isText ? 1 : 0);
  for (const Element& element : elementsOf(header, isText)) {
    const std::uint64_t least =
        productOrMost(element.entries, element.leastBytes == 0 ? 1 : element.leastBytes);
    if (least > room) throw ToolError("cut off: the header announces more than the file holds");
    room -= least;
  }
  requireColoursInOrder(header);
}

} // namespace velmorn::tool
