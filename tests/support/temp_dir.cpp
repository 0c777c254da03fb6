// Temporary directories and the files in them.
#include "support/temp_dir.h"

#include <fstream>
#include <random>
#include <regex>
#include <stdexcept>

namespace velmorn {
namespace fs = std::filesystem;

TempDir::TempDir() {
  constexpr int kAttempts = 100;
  std::random_device random; // names only have to differ between processes that run side by side
  for (int i = 0; i < kAttempts; ++i) {
    path_ = fs::temp_directory_path() / ("velmorn-test-" + std::to_string(random()));
    if (fs::create_directory(path_)) return;
  }
  throw std::runtime_error("no temporary directory could be created");
}

TempDir::~TempDir() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

TempDirTest::TempDirTest() : previous_(fs::current_path()) { fs::current_path(dir()); }

TempDirTest::~TempDirTest() { fs::current_path(previous_); }

std::string readFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  std::ostringstream content;
  content << file.rdbuf();
  return content.str();
}

void writeFile(const fs::path& path, const std::string& content) {
  std::ofstream file(path, std::ios::binary);
  if (!file.write(content.data(), static_cast<std::streamsize>(content.size())))
    throw std::runtime_error("cannot write " + path.string());
}

std::vector<std::string> logLines(const fs::path& path) {
  static const std::regex kStamp(
      R"([A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-3][0-9] [0-2][0-9]:[0-5][0-9]:[0-6][0-9] [0-9]{4} )");
  constexpr std::size_t kStampLength = 25; // with the blank
  std::vector<std::string> lines;
  if (!fs::exists(path)) return lines;
  std::istringstream content(readFile(path));
  for (std::string line; std::getline(content, line);) {
    if (!std::regex_match(line.substr(0, kStampLength), kStamp))
      throw std::runtime_error("log line without time stamp: " + line);
    lines.push_back(line.substr(kStampLength));
  }
  return lines;
}

} // namespace velmorn
