// Writing clouds with colours and camera indices as PLY.
#include "velmorn/ply_writer.h"

#include <cstring>
#include <limits>
#include <utility>

namespace velmorn::tool {
namespace {

constexpr std::size_t kPartSize = 1U << 20;
constexpr std::size_t kMostDigits = std::numeric_limits<std::uint64_t>::digits10 + 1;

void appendFloat(std::string& bytes, float value) {
  std::uint32_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(bits >> shift & 0xFF);
}

} // namespace

PlyWriter::PlyWriter(const std::string& path, std::vector<std::string> comments)
    : comments_(std::move(comments)), file_(path) {
  part_.reserve(kPartSize + sizeof(CloudPoint));
  part_ = header();
}

void PlyWriter::add(const CloudPoint& point) {
  for (const float coordinate : point.position.val) appendFloat(part_, coordinate);
  for (const int channel : {2, 1, 0}) part_ += static_cast<char>(point.colour[channel]);
  part_ += static_cast<char>(point.camera);
  ++size_;
  if (part_.size() >= kPartSize) flush();
}

void PlyWriter::commit() {
  flush();
  file_.replaceStart(header());
  file_.commit();
}

// The number of points is known at the end only; a comment of blanks keeps the header's length.
std::string PlyWriter::header() const {
  const std::string number = std::to_string(size_);
  std::string text = "ply\nformat binary_little_endian 1.0\n";
  for (const std::string& comment : comments_) text += "comment " + comment + '\n';
  text += "comment " + std::string(kMostDigits - number.size(), ' ') + '\n';
  text += "element vertex " + number + '\n';
  for (const char* name : {"x", "y", "z"}) text += std::string("property float ") + name + '\n';
  for (const char* name : {"red", "green", "blue", "camera"}) {
    text += std::string("property uchar ") + name + '\n';
  }
  return text + "end_header\n";
}

void PlyWriter::flush() {
  file_.append(part_);
  part_.clear();
}

} // namespace velmorn::tool
