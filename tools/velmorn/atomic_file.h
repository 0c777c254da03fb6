// Reading and writing whole files.
#ifndef VELMORN64_TOOLS_ATOMIC_FILE_H
#define VELMORN64_TOOLS_ATOMIC_FILE_H

#include <memory>
#include <string>

namespace velmorn::tool {

// The content of a regular file. Throws ToolError.
std::string readWholeFile(const std::string& path);

// Writes the file as a whole or not at all: into a neighbour first, which then takes the name.
// A symbolic link keeps pointing where it does. Throws ToolError, with the old file as it was and
// no neighbour left; what is there and is no regular file is never replaced.
void writeFileAtomically(const std::string& path, const std::string& content);

// The same for a file that is too large to be held in memory: written part by part into the
// neighbour. Everything throws ToolError; without a commit the old file stays as it was.
class FileInParts {
 public:
  explicit FileInParts(const std::string& path);
  ~FileInParts();
  FileInParts(const FileInParts&) = delete;
  FileInParts& operator=(const FileInParts&) = delete;

  void append(const std::string& part);

  // Puts another text in place of the first bytes, which have to be written.
  void replaceStart(const std::string& start);

  // The file takes its name. The last call.
  void commit();

 private:
  class NewFile;

  std::string path_;   // as asked for, for messages
  std::string target_; // what the commit replaces, links followed
  std::unique_ptr<NewFile> file_;
};

// Throws the ToolError that writeFileAtomically would, for use before a long computation.
void requireWritable(const std::string& path);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_ATOMIC_FILE_H
