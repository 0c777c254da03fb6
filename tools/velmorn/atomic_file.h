// Reading and writing whole files.
#ifndef VELMORN64_TOOLS_ATOMIC_FILE_H
#define VELMORN64_TOOLS_ATOMIC_FILE_H

#include <string>

namespace velmorn::tool {

// The content of a regular file. Throws ToolError.
std::string readWholeFile(const std::string& path);

// Writes the file as a whole or not at all: into a neighbour first, which then takes the name.
// A symbolic link keeps pointing where it does. Throws ToolError, with the old file as it was and
// no neighbour left; what is there and is no regular file is never replaced.
void writeFileAtomically(const std::string& path, const std::string& content);

// Throws the ToolError that writeFileAtomically would, for use before a long computation.
void requireWritable(const std::string& path);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_ATOMIC_FILE_H
