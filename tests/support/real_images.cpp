// Where the real stereo images are.
#include "support/real_images.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace velmorn {
namespace {

constexpr const char* kFolderVariable = "VELMORN_STEREO_DATA";
constexpr const char* kPackageFolder = "/usr/share/doc/opencv-doc/examples/data";
constexpr int kLastNumber = 14;
constexpr int kMissingNumber = 10; // the set has never had it

std::string imagePath(const std::filesystem::path& folder, const char* side, int number) {
  char name[32];
  std::snprintf(name, sizeof name, "%s%02d.jpg", side, number);
  const std::filesystem::path path = folder / name;
  if (!std::filesystem::exists(path))
    throw std::runtime_error("missing test image " + path.string() +
                             ": install Debian's package opencv-doc, or let " + kFolderVariable +
                             " name the folder with left01.jpg .. right14.jpg");
  return path.string();
}

} // namespace

StereoSet stereoSet() {
  const char* variable = std::getenv(kFolderVariable);
  const std::filesystem::path folder = variable != nullptr ? variable : kPackageFolder;
  StereoSet set;
  for (int number = 1; number <= kLastNumber; ++number) {
    if (number == kMissingNumber) continue;
    set.left.push_back(imagePath(folder, "left", number));
    set.right.push_back(imagePath(folder, "right", number));
  }
  return set;
}

} // namespace velmorn
