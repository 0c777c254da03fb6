// Reading and writing whole files.
#include "velmorn/atomic_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

#if !defined(_WIN32)
#include <unistd.h>
#endif

#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void throwNotWritten(const fs::path& path, const std::string& reason) {
  throw ToolError("cannot write " + path.string() + ": " + reason);
}

// The file that a write replaces, links followed.
fs::path targetOf(const std::string& path) {
  std::error_code error;
  fs::path target = path;
  if (fs::is_symlink(target, error)) {
    target = fs::weakly_canonical(target, error);
    if (error) throwNotWritten(path, error.message());
  }
  if (fs::exists(target, error) && !fs::is_regular_file(target, error)) {
    throwNotWritten(path, "it exists and is not a regular file");
  }
  return target;
}

fs::path neighbourOf(const fs::path& target) {
  std::random_device random;
  fs::path neighbour = target.parent_path();
  neighbour /= ".velmorn-" + std::to_string(random()) + std::to_string(random()) + ".tmp";
  return neighbour;
}

} // namespace

std::string readWholeFile(const std::string& path) {
  std::error_code error;
  if (!fs::exists(path, error)) throw ToolError("no such file: " + path);
  if (!fs::is_regular_file(path, error)) throw ToolError("not a regular file: " + path);
  std::ifstream file(path, std::ios::binary);
  std::string content((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  if (!file) throw ToolError("cannot read " + path);
  return content;
}

// A new file that is gone at the end of its scope unless it took its final name.
class FileInParts::NewFile {
 public:
  explicit NewFile(fs::path path) : path_(std::move(path)) {
    file_ = std::fopen(path_.string().c_str(), "wbx");
  }
  ~NewFile() {
    if (file_ == nullptr) return;
    close();
    std::error_code ignored;
    if (!renamed_) fs::remove(path_, ignored);
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  bool isOpen() const { return file_ != nullptr; }

  bool write(const std::string& content) {
    return std::fwrite(content.data(), 1, content.size(), file_) == content.size();
  }

  bool rewind() { return std::fseek(file_, 0, SEEK_SET) == 0; }
  bool toEnd() { return std::fseek(file_, 0, SEEK_END) == 0; }

  bool finish() { return std::fflush(file_) == 0 && toDisk() && close(); }

  bool renameTo(const fs::path& target) {
    std::error_code error;
    fs::rename(path_, target, error);
    if (error) errno = error.value();
    renamed_ = !error;
    return renamed_;
  }

 private:
  bool toDisk() {
#if defined(_WIN32)
    return true;
#else
    return fsync(fileno(file_)) == 0;
#endif
  }

  bool close() {
    const bool wasOpen = !closed_;
    closed_ = true;
    return !wasOpen || std::fclose(file_) == 0;
  }

  fs::path path_;
  std::FILE* file_ = nullptr;
  bool closed_ = false;
  bool renamed_ = false;
};

FileInParts::FileInParts(const std::string& path)
    : path_(path),
      target_(targetOf(path).string()),
      file_(std::make_unique<NewFile>(neighbourOf(target_))) {
  if (!file_->isOpen()) throwNotWritten(path_, std::strerror(errno));
}

FileInParts::~FileInParts() = default;

void FileInParts::append(const std::string& part) {
  if (!file_->write(part)) throwNotWritten(path_, std::strerror(errno));
}

void FileInParts::replaceStart(const std::string& start) {
  if (!file_->rewind() || !file_->write(start) || !file_->toEnd())
    throwNotWritten(path_, std::strerror(errno));
}

void FileInParts::commit() {
  if (!file_->finish() || !file_->renameTo(target_)) throwNotWritten(path_, std::strerror(errno));
}

void writeFileAtomically(const std::string& path, const std::string& content) {
  FileInParts file(path);
  file.append(content);
  file.commit();
}

void requireWritable(const std::string& path) { const FileInParts probe(path); }

} // namespace velmorn::tool
