// Drops what is written to a standard stream, whoever writes it.
#include "velmorn/silenced_descriptor.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace velmorn::tool {
namespace {

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

} // namespace

// A program that was started without the stream has nothing to drop.
SilencedDescriptor::SilencedDescriptor(int descriptor)
    : descriptor_(descriptor), previous_(duplicate(descriptor)) {
  if (previous_ < 0) return;
  const int nowhere = openNullDevice();
  if (nowhere < 0) return;
  replace(descriptor_, nowhere);
  closeDescriptor(nowhere);
}

SilencedDescriptor::~SilencedDescriptor() {
  if (previous_ < 0) return;
  replace(descriptor_, previous_);
  closeDescriptor(previous_);
}

} // namespace velmorn::tool
