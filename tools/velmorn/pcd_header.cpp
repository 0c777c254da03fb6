// What the header of a PCD file announces, checked against the file before it is believed.
#include "velmorn/pcd_header.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <map>
#include <set>

#include "velmorn/file_header.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

using Words = std::vector<std::string>;

constexpr std::uint64_t kMostPointBytes = 1U << 16; // of one point, far above any real file
constexpr std::uint64_t kMostPoints = std::numeric_limits<std::int32_t>::max();
constexpr std::uint64_t kBestCompression = 100; // LZF makes at most 264 bytes out of 3
constexpr std::size_t kCompressedSizes = 8;     // bytes: two counts of 4 before the data

// The reader gives up at any other word and goes on with what it has.
bool isKeyword(const std::string& word) {
  static const std::set<std::string> kKeywords = {"VERSION", "FIELDS", "SIZE",   "TYPE",
                                                  "COUNT",   "WIDTH",  "HEIGHT", "VIEWPOINT",
                                                  "POINTS",  "DATA"};
  return kKeywords.count(word) != 0;
}

// The entries by keyword, without the keyword. Comments begin with '#'.
std::map<std::string, Words> entriesOf(const FileHeader& header) {
  std::map<std::string, Words> entries;
  for (const Words& line : header.lines) {
    if (line[0][0] == '#') continue;
    if (!isKeyword(line[0])) {
      throw ToolError("the header has a line " + inQuotes(line[0].substr(0, 40)));
    }
    const bool added = entries.emplace(line[0], Words(line.begin() + 1, line.end())).second;
    if (!added) throw ToolError("the header has " + line[0].substr(0, 40) + " twice");
  }
  return entries;
}

const Words& entryOf(const std::map<std::string, Words>& entries, const std::string& keyword,
                     std::size_t words) {
  const auto found = entries.find(keyword);
  if (found == entries.end()) throw ToolError("the header has no " + keyword);
  if (found->second.size() != words) {
    throw ToolError("the header's " + keyword + " has " + std::to_string(found->second.size()) +
                    " entries" + ", not " + std::to_string(words));
  }
  return found->second;
}

// What one point consists of.
struct PointLayout {
  std::uint64_t values = 0;
  std::uint64_t bytes = 0;
};

std::uint64_t valueSize(const std::string& type, const std::string& size) {
  const std::uint64_t bytes = headerNumber(size);
  const bool whole = (type == "I" || type == "U") && (bytes == 1 || bytes == 2 || bytes == 4);
  const bool real = type == "F" && (bytes == 4 || bytes == 8);
  const bool wide = (type == "I" || type == "U") && bytes == 8;
  if (!whole && !real && !wide) {
    throw ToolError("the header has a field of type " + type.substr(0, 8) + " and size " +
                    size.substr(0, 8));
  }
  return bytes;
}

PointLayout layoutOf(const std::map<std::string, Words>& entries) {
  const auto fields = entries.find("FIELDS");
  if (fields == entries.end()) throw ToolError("the header has no FIELDS");
  const std::size_t number = fields->second.size();
  const Words& types = entryOf(entries, "TYPE", number);
  const Words& sizes = entryOf(entries, "SIZE", number);
  const Words ones(number, "1");
  const Words& counts = entries.count("COUNT") != 0 ? entryOf(entries, "COUNT", number) : ones;
  PointLayout layout;
  for (std::size_t i = 0; i < number; ++i) {
    const std::uint64_t count = std::min(headerNumber(counts[i]), kMostPointBytes);
    if (count == 0) throw ToolError("the header has a field without values");
    layout.values += count;
    layout.bytes += count * valueSize(types[i], sizes[i]);
    if (layout.bytes > kMostPointBytes) throw ToolError("the header announces too large points");
  }
  return layout;
}

std::uint64_t pointCount(const std::map<std::string, Words>& entries) {
  const std::uint64_t points = headerNumber(entryOf(entries, "POINTS", 1)[0]);
  const std::uint64_t width = headerNumber(entryOf(entries, "WIDTH", 1)[0]);
  const std::uint64_t height = headerNumber(entryOf(entries, "HEIGHT", 1)[0]);
  if (productOrMost(width, height) != points) {
    throw ToolError("the header's POINTS are not WIDTH times HEIGHT");
  }
  if (points > kMostPoints) throw ToolError("the header announces too many points");
  return points;
}

// Fewest bytes that the points take in the file.
std::uint64_t leastBodySize(const FileHeader& header, const std::string& form, std::uint64_t points,
                            const PointLayout& layout) {
  if (form == "ascii") { // a digit and a separator for every value
    const std::uint64_t all = productOrMost(points, layout.values * 2);
    return all == 0 ? 0 : all - 1;
  }
  if (form == "binary") return productOrMost(points, layout.bytes);
  if (form != "binary_compressed") {
    throw ToolError("the header's DATA is " + form.substr(0, 40) +
                    ", not ascii, binary or binary_compressed");
  }
  if (header.bodyStart.size() < kCompressedSizes) return kCompressedSizes;
  std::uint32_t sizes[2]; // compressed, then not
  std::memcpy(sizes, header.bodyStart.data(), sizeof(sizes));
  if (sizes[1] != productOrMost(points, layout.bytes) || sizes[1] > sizes[0] * kBestCompression) {
    throw ToolError("the compressed data has another size than the header announces");
  }
  return kCompressedSizes + sizes[0];
}

} // namespace

void requireSoundPcdHeader(const std::string& path) {
  const FileHeader header = readFileHeader(path, "DATA");
  const std::map<std::string, Words> entries = entriesOf(header);
  const PointLayout layout = layoutOf(entries);
  const std::uint64_t points = pointCount(entries);
  const std::string form = entryOf(entries, "DATA", 1)[0];
  if (leastBodySize(header, form, points, layout) > header.bodySize) {
    throw ToolError("cut off: the header announces " + std::to_string(points) +
                    " points, more than the file holds");
  }
}

} // namespace velmorn::tool
