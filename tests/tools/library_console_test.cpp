// What the library says on the console: taken or dropped, and only while it is wanted.
#include "velmorn/library_console.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <iostream>

namespace velmorn::tool {
namespace {

TEST(LibraryConsole, TakesTheStreamAndDropsThePrintedText) {
  testing::internal::CaptureStdout();
  std::string taken;
  std::printf("before ");
  {
    const LibraryConsole console;
    std::cout << "by stream";
    std::printf("by printf");
    taken = console.text();
  }
  std::printf("after");
  std::fflush(stdout);
  EXPECT_EQ(taken, "by stream");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "before after");
}

TEST(LibraryConsole, EndsWithAThrow) {
  testing::internal::CaptureStdout();
  try {
    const LibraryConsole console;
    throw 1;
  } catch (int) {
    std::cout << "heard";
  }
  std::cout.flush();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "heard");
}

} // namespace
} // namespace velmorn::tool
