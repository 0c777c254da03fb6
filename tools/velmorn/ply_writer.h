// Writing clouds with colours and camera indices as PLY.
//
// PCL writes its own point types only; a cloud with a camera index would have to be held whole in a
// blob of them, several times over.
#ifndef VELMORN64_TOOLS_PLY_WRITER_H
#define VELMORN64_TOOLS_PLY_WRITER_H

#include <cstdint>
#include <string>
#include <vector>

#include "velmorn/atomic_file.h"
#include "velmorn/camera_cloud.h"

namespace velmorn::tool {

// A binary PLY file, little-endian, whose points come one by one: float x, y, z, uchar red, green,
// blue, camera. It takes its name with commit(); without one, an existing file stays as it was.
class PlyWriter {
 public:
  // `comments`: one line each, for the header.
  PlyWriter(const std::string& path, std::vector<std::string> comments);

  void add(const CloudPoint& point);
  void commit();

  std::uint64_t size() const { return size_; } // points added

 private:
  std::string header() const;
  void flush();

  std::vector<std::string> comments_;
  std::uint64_t size_ = 0;
  std::string part_; // bytes on their way into the file
  FileInParts file_;
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PLY_WRITER_H
