// What a call fails with.
#ifndef VELMORN64_TESTS_TOOLS_EXPECT_TOOL_ERROR_H
#define VELMORN64_TESTS_TOOLS_EXPECT_TOOL_ERROR_H

#include <string>

#include "velmorn/tool_error.h"

namespace velmorn::tool {

// The message of the ToolError that the call throws; "no error" when it throws none.
template <typename Call>
std::string toolError(Call&& call) {
  try {
    call();
  } catch (const ToolError& error) {
    return error.what();
  }
  return "no error";
}

} // namespace velmorn::tool

#endif // VELMORN64_TESTS_TOOLS_EXPECT_TOOL_ERROR_H
