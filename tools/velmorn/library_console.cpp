// What the library says on the console while a command works.
#include "velmorn/library_console.h"

#include <cstdio>
#include <iostream>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace velmorn::tool {
namespace {

constexpr int kStandardOutput = 1; // descriptor

#if defined(_WIN32)
int openNullDevice() { return _open("NUL", _O_WRONLY); }
int duplicate(int descriptor) { return _dup(descriptor); }
bool replace(int descriptor, int by) { return _dup2(by, descriptor) == 0; }
void closeDescriptor(int descriptor) { _close(descriptor); }
#else
int openNullDevice() { return open("/dev/null", O_WRONLY); }
int duplicate(int descriptor) { return dup(descriptor); }
bool replace(int descriptor, int by) { return dup2(by, descriptor) >= 0; }
void closeDescriptor(int descriptor) { close(descriptor); }
#endif

// Sends the standard output to nowhere. Returns a descriptor of where it went before, -1 when it
// stays where it is: a program that was started without one.
int silenceStandardOutput() {
  std::fflush(stdout);
  const int previous = duplicate(kStandardOutput);
  if (previous < 0) return -1;
  const int nowhere = openNullDevice();
  if (nowhere >= 0) {
    replace(kStandardOutput, nowhere);
    closeDescriptor(nowhere);
  }
  return previous;
}

} // namespace

LibraryConsole::LibraryConsole()
    : redirection_(std::cout, *taken_.rdbuf()), standardOutput_(silenceStandardOutput()) {}

LibraryConsole::~LibraryConsole() {
  std::fflush(stdout);
  if (standardOutput_ < 0) return;
  replace(kStandardOutput, standardOutput_);
  closeDescriptor(standardOutput_);
}

} // namespace velmorn::tool
