// The two ways a message leaves the library: the log file and the console.
#ifndef VELMORN64_FOUNDATION_LOG_H
#define VELMORN64_FOUNDATION_LOG_H

#include <string>

#include "foundation/platform.h"

namespace velmorn {

// Log file of every caller, in the host's working directory.
constexpr const char* kLogPath = "velmorn.log";

// A log file larger than this (10 MiB) is started afresh by the next entry.
constexpr int kMaxLogBytes = 10485760;

// Appends "<local time> <message>" to the file; the message brings its own line end.
//
// path    file to write, NUL-terminated
// format  as for printf, never a text that came from outside
//
// The file is opened and closed by every call, without a lock. A file that cannot be written drops
// the entry silently: the log never changes a result.
void writeLog(const char* path, const char* format, ...) VELMORN_PRINTF_FORMAT(2, 3);

// Writes the text to std::cout as it is and flushes.
void printConsole(const std::string& text);

} // namespace velmorn

#endif // VELMORN64_FOUNDATION_LOG_H
