// Lines on the standard error while a command works.
#include "velmorn/progress.h"

#include <iomanip>
#include <iostream>

#include "velmorn/tool_error.h"

namespace velmorn::tool {

void printProgress(std::size_t number, std::size_t total, const std::string& subject,
                   const std::string& outcome) {
  const auto width = static_cast<int>(std::to_string(total).size());
  std::cerr << '[' << std::setw(width) << number << '/' << total << "] "
            << oneLine(subject + ": " + outcome) << '\n';
}

void printWarning(const std::string& text) {
  std::cerr << "velmorn: warning: " << oneLine(text) << '\n';
}

} // namespace velmorn::tool
