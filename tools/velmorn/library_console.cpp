// What the library says on the console while a command works.
#include "velmorn/library_console.h"

#include <cstdio>
#include <iostream>

namespace velmorn::tool {
namespace {

// What was printed before still goes where it belongs.
int flushedStandardOutput() {
  std::fflush(stdout);
  return kStandardOutput;
}

} // namespace

LibraryConsole::LibraryConsole()
    : redirection_(std::cout, *taken_.rdbuf()), printed_(flushedStandardOutput()) {}

LibraryConsole::~LibraryConsole() { std::fflush(stdout); }

} // namespace velmorn::tool
