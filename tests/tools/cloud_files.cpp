// Point cloud files for tests, byte by byte.
#include "tools/cloud_files.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace velmorn::tool {
namespace {

template <typename Value>
std::string bytesOf(Value value, bool bigEndian = false) {
  std::string bytes(sizeof(value), '\0');
  std::memcpy(bytes.data(), &value, sizeof(value));
  if (bigEndian) std::reverse(bytes.begin(), bytes.end());
  return bytes;
}

std::ostringstream exactStream() {
  std::ostringstream stream;
  stream.precision(std::numeric_limits<double>::max_digits10);
  return stream;
}

std::string plyHead(const Points& points, const std::string& form, const std::string& type) {
  std::string head = "ply\nformat " + form + " 1.0\ncomment by a test\nelement vertex " +
                     std::to_string(points.size()) + "\n";
  for (const char* name : {"x", "y", "z"}) head += "property " + type + " " + name + "\n";
  return head;
}

// What LZF makes of bytes that do not repeat: runs of at most 32 with their length in front.
std::string literalLzf(const std::string& bytes) {
  std::string packed;
  for (std::size_t i = 0; i < bytes.size(); i += 32) {
    const std::string run = bytes.substr(i, 32);
    packed += static_cast<char>(run.size() - 1);
    packed += run;
  }
  return packed;
}

} // namespace

Points gridOnPlane(int outliers) {
  Points points;
  const float length = std::sqrt(0.1F * 0.1F + 0.2F * 0.2F + 1);
  for (int i = 0; i < 300; ++i) {
    const auto x = static_cast<float>(10 * (i % 20) - 95);
    const auto y = static_cast<float>(10 * (i / 20) - 70);
    points.push_back({x, y, 500 * length - 0.1F * x - 0.2F * y});
  }
  for (int i = 0; i < outliers; ++i) {
    tagOzKPoint3Df32 point = points[static_cast<std::size_t>(7 * i)];
    point.z -= 50;
    points.push_back(point);
  }
  return points;
}

std::string xyzText(const Points& points) {
  std::ostringstream text = exactStream();
  for (const tagOzKPoint3Df32& p : points) text << p.x << ' ' << p.y << ' ' << p.z << '\n';
  return text.str();
}

std::string plyText(const Points& points, PlyForm form) {
  const char* const names[] = {"ascii", "binary_little_endian", "binary_big_endian"};
  std::ostringstream text = exactStream();
  text << plyHead(points, names[static_cast<int>(form)], "float")
       << "property uchar red\nproperty uchar green\nproperty uchar blue\nelement face 1\n"
       << "property list uchar int vertex_indices\nend_header\n";
  const bool big = form == PlyForm::kBigEndian;
  for (const tagOzKPoint3Df32& p : points) {
    if (form == PlyForm::kText) text << p.x << ' ' << p.y << ' ' << p.z << " 200 100 50\n";
    if (form != PlyForm::kText) text << bytesOf(p.x, big) << bytesOf(p.y, big) << bytesOf(p.z, big);
    if (form != PlyForm::kText) text << "\xC8\x64\x32";
  }
  if (form == PlyForm::kText) text << "3 0 1 2\n";
  if (form == PlyForm::kText) return text.str();
  text << '\3';
  for (const std::int32_t index : {0, 1, 2}) text << bytesOf(index, big);
  return text.str();
}

std::string plyTextInDoubles(const Points& points) {
  return plyHead(points, "ascii", "double") + "end_header\n" + xyzText(points);
}

std::string pcdText(const Points& points, PcdForm form) {
  const char* const names[] = {"ascii", "binary", "binary_compressed"};
  const std::string number = std::to_string(points.size());
  std::ostringstream text = exactStream();
  text << "# .PCD v0.7 - Point Cloud Data file format\nVERSION 0.7\nFIELDS x y z intensity\n"
       << "SIZE 4 4 4 4\nTYPE F F F F\nCOUNT 1 1 1 1\nWIDTH " << number
       << "\nHEIGHT 1\nVIEWPOINT 0 0 0 1 0 0 0\nPOINTS " << number << "\nDATA "
       << names[static_cast<int>(form)] << '\n';
  if (form == PcdForm::kText) {
    for (const tagOzKPoint3Df32& p : points) text << p.x << ' ' << p.y << ' ' << p.z << " 7\n";
    return text.str();
  }
  std::string mixed, columns[4];
  for (const tagOzKPoint3Df32& p : points) {
    const std::string values[4] = {bytesOf(p.x), bytesOf(p.y), bytesOf(p.z), bytesOf(7.0F)};
    for (int i = 0; i < 4; ++i) columns[i] += values[i];
    for (const std::string& value : values) mixed += value;
  }
  if (form == PcdForm::kBinary) return text.str() + mixed;
  const std::string packed = literalLzf(columns[0] + columns[1] + columns[2] + columns[3]);
  return text.str() + bytesOf(static_cast<std::uint32_t>(packed.size())) +
         bytesOf(static_cast<std::uint32_t>(mixed.size())) + packed;
}

std::string with(std::string text, const std::string& from, const std::string& to) {
  const std::size_t place = text.find(from);
  if (place == std::string::npos) throw std::runtime_error("no \"" + from + "\" in the text");
  return text.replace(place, from.size(), to);
}

} // namespace velmorn::tool
