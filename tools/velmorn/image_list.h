// Image files from names and patterns.
#ifndef VELMORN64_TOOLS_IMAGE_LIST_H
#define VELMORN64_TOOLS_IMAGE_LIST_H

#include <filesystem>
#include <string>
#include <vector>

namespace velmorn::tool {

// True when the pattern stands for the name: '*' for any text, '?' for one byte, nothing else.
bool matchesPattern(const std::string& name, const std::string& pattern);

// The path of a name that is relative to `folder`; an absolute name stays as it is.
std::string pathIn(const std::filesystem::path& folder, const std::string& name);

// The files that the entries stand for, in the entries' order.
//
// entries  file names, or patterns with '*' and '?' in the last part of the path; the files of one
//          pattern come in byte order of their names
// folder   what relative names are relative to; may be empty
//
// An entry that names an existing file is that file, whatever characters it has. Throws ToolError
// for an entry that stands for no file.
std::vector<std::string> expandImages(const std::vector<std::string>& entries,
                                      const std::filesystem::path& folder);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_IMAGE_LIST_H
