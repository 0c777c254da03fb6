// Lines on the standard error while a command works.
#ifndef VELMORN64_TOOLS_PROGRESS_H
#define VELMORN64_TOOLS_PROGRESS_H

#include <cstddef>
#include <string>

namespace velmorn::tool {

// "[ 7/26] left07.jpg: board found"
void printProgress(std::size_t number, std::size_t total, const std::string& subject,
                   const std::string& outcome);

// "velmorn: warning: ..."
void printWarning(const std::string& text);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PROGRESS_H
