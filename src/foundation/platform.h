// Everything that differs between operating systems and compilers.
#ifndef VELMORN64_FOUNDATION_PLATFORM_H
#define VELMORN64_FOUNDATION_PLATFORM_H

#include <string>

// Lets the compiler check a printf-style function's arguments.
#if defined(__GNUC__)
#define VELMORN_PRINTF_FORMAT(formatIndex, firstArgument) \
  __attribute__((format(printf, formatIndex, firstArgument)))
#else
#define VELMORN_PRINTF_FORMAT(formatIndex, firstArgument)
#endif

namespace velmorn {

// The current local time in the C runtime's fixed text form, such as
// "Mon Nov 16 05:37:48 2026\n"; empty when the clock cannot be read.
std::string localTimeText();

// True when the path names something that exists.
bool pathExists(const char* path);

// Creates one directory. A failure is not reported.
void makeDirectory(const char* path);

// What the processor can run, beyond what the library is compiled for.
enum class VectorLevel { kNone, kAvx2, kAvx512 };
VectorLevel supportedVectorLevel();

} // namespace velmorn

#endif // VELMORN64_FOUNDATION_PLATFORM_H
