// Image files from names and patterns.
#include "velmorn/image_list.h"

#include <algorithm>
#include <system_error>

#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

namespace fs = std::filesystem;

bool hasWildcard(const std::string& text) { return text.find_first_of("*?") != std::string::npos; }

// The regular files of a folder whose names match, sorted. A folder that cannot be read is empty.
std::vector<std::string> filesMatching(const fs::path& folder, const std::string& pattern) {
  std::vector<std::string> files;
  std::error_code error;
  fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const fs::path name = entry->path().filename();
    std::error_code unreadable;
    if (matchesPattern(name.string(), pattern) && entry->is_regular_file(unreadable)) {
      files.push_back((folder / name).string());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::string> expandPattern(const fs::path& path) {
  if (hasWildcard(path.parent_path().string())) {
    throw ToolError("wildcards are for the file name only, not for the folder: " + path.string());
  }
  std::vector<std::string> files = filesMatching(path.parent_path(), path.filename().string());
  if (files.empty()) throw ToolError("no file matches " + path.string());
  return files;
}

std::vector<std::string> expandEntry(const std::string& entry, const fs::path& folder) {
  const fs::path path = pathIn(folder, entry);
  std::error_code error;
  if (fs::is_regular_file(path, error)) return {path.string()};
  if (fs::exists(path, error)) throw ToolError("not a regular file: " + path.string());
  if (hasWildcard(entry)) return expandPattern(path);
  throw ToolError("no such file: " + path.string());
}

} // namespace

bool matchesPattern(const std::string& name, const std::string& pattern) {
  std::size_t n = 0;
  std::size_t p = 0;
  std::size_t star = std::string::npos; // the last '*', and the name's part it stands for ends
  std::size_t starEnd = 0;              // before starEnd
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      starEnd = n;
    } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
      ++p;
      ++n;
    } else if (star != std::string::npos) {
      p = star + 1;
      n = ++starEnd;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == std::string::npos;
}

std::string pathIn(const fs::path& folder, const std::string& name) {
  return (folder / name).string();
}

std::vector<std::string> expandImages(const std::vector<std::string>& entries,
                                      const fs::path& folder) {
  std::vector<std::string> files;
  for (const std::string& entry : entries) {
    const std::vector<std::string> found = expandEntry(entry, folder);
    files.insert(files.end(), found.begin(), found.end());
  }
  return files;
}

} // namespace velmorn::tool
