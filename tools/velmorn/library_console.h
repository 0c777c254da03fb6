// What the library says on the console while a command works.
#ifndef VELMORN64_TOOLS_LIBRARY_CONSOLE_H
#define VELMORN64_TOOLS_LIBRARY_CONSOLE_H

#include <sstream>
#include <string>

#include "velmorn/silenced_descriptor.h"
#include "velmorn/stream_redirection.h"

namespace velmorn::tool {

// Keeps the library's console messages away from the standard output for as long as it lives:
// std::cout is taken into a text, what goes through C's stdout is dropped.
class LibraryConsole {
 public:
  LibraryConsole();
  ~LibraryConsole();
  LibraryConsole(const LibraryConsole&) = delete;
  LibraryConsole& operator=(const LibraryConsole&) = delete;

  // What came through std::cout.
  std::string text() const { return taken_.str(); }

 private:
  std::ostringstream taken_;
  StreamRedirection redirection_;
  SilencedDescriptor printed_;
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_LIBRARY_CONSOLE_H
