#include "foundation/platform.h"

#include <regex>

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace velmorn {
namespace {

TEST(Platform, LocalTimeIsTheRuntimesTextForm) {
  const std::regex form("[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9:]{8} [0-9]{4}\n");
  EXPECT_TRUE(std::regex_match(localTimeText(), form));
}

class PlatformFiles : public TempDirTest {};

TEST_F(PlatformFiles, MakesADirectoryOnce) {
  EXPECT_FALSE(pathExists("folder"));
  makeDirectory("folder");
  EXPECT_TRUE(pathExists("folder"));
  makeDirectory("folder"); // already there: no complaint
  EXPECT_TRUE(pathExists("folder"));
}

TEST_F(PlatformFiles, DirectoryThatCannotBeMadeIsNotReported) {
  makeDirectory("missing/folder");
  EXPECT_FALSE(pathExists("missing/folder"));
}

} // namespace
} // namespace velmorn
