// Log file and console output.
#include "foundation/log.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <iostream>

namespace velmorn {
namespace {

// Size of the file, 0 when it cannot be read. The position is kept in 32 bits: a file of 2 GiB and
// more counts as negative, so it is appended to, not truncated.
std::int32_t logSize(const char* path) {
  std::FILE* file = std::fopen(path, "r");
  if (file == nullptr) return 0;
  std::fseek(file, 0, SEEK_END);
  const auto size = static_cast<std::int32_t>(std::ftell(file));
  std::fclose(file);
  return size;
}

} // namespace

void writeLog(const char* path, const char* format, ...) {
  const char* mode = logSize(path) > kMaxLogBytes ? "w" : "a";
  std::FILE* file = std::fopen(path, mode);
  if (file == nullptr) return;

  std::string time = localTimeText();
  if (!time.empty()) time.pop_back(); // the newline that the runtime's text form ends with
  std::fprintf(file, "%s ", time.c_str());

  std::va_list arguments;
  va_start(arguments, format);
  std::vfprintf(file, format, arguments);
  va_end(arguments);
  std::fclose(file);
}

void printConsole(const std::string& text) {
  // write() instead of <<: a width or fill the host left on the stream must not reach the message.
  std::cout.write(text.data(), static_cast<std::streamsize>(text.size()));
  std::cout.flush();
}

} // namespace velmorn
