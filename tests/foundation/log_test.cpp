#include "foundation/log.h"

#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <regex>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace velmorn {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

constexpr std::uintmax_t kStampSize = 25; // 24 characters and the blank

class Log : public TempDirTest {};

// A log of exactly this many bytes, all NUL; takes no room on the disk.
void makeLog(std::uintmax_t bytes) {
  writeFile(kLogPath, "");
  fs::resize_file(kLogPath, bytes);
}

TEST_F(Log, FirstEntryCreatesTheFile) {
  writeLog(kLogPath, "first\n");
  EXPECT_THAT(logLines(), ElementsAre("first"));
}

TEST_F(Log, EntryIsTimeStampBlankAndMessage) {
  writeLog(kLogPath, "message\n");
  const std::regex form(
      "(Mon|Tue|Wed|Thu|Fri|Sat|Sun) "
      "(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) "
      "[ 1-3][0-9] [0-2][0-9]:[0-5][0-9]:[0-6][0-9] [0-9]{4} message\n");
  EXPECT_TRUE(std::regex_match(readFile(kLogPath), form)) << readFile(kLogPath);
}

TEST_F(Log, EntriesAreAppendedInOrder) {
  writeLog(kLogPath, "first\n");
  writeLog(kLogPath, "second\n");
  writeLog(kLogPath, "third\n");
  EXPECT_THAT(logLines(), ElementsAre("first", "second", "third"));
}

TEST_F(Log, NoLineEndIsAdded) {
  writeLog(kLogPath, "runs on");
  writeLog(kLogPath, "%s", "");
  const std::string content = readFile(kLogPath);
  EXPECT_EQ(content.size(), kStampSize + std::string("runs on").size() + kStampSize);
  EXPECT_EQ(content.substr(kStampSize, 7), "runs on");
  EXPECT_EQ(content.find('\n'), std::string::npos);
}

TEST_F(Log, ArgumentsAreFormatted) {
  writeLog(kLogPath, "%s has %d of %d at %.2f%%\n", "camera", -3, 10, 1.5);
  EXPECT_THAT(logLines(), ElementsAre("camera has -3 of 10 at 1.50%"));
}

TEST_F(Log, PercentSignsInArgumentsStayText) {
  writeLog(kLogPath, "load %s failed\n", "100%s%n%d.png");
  EXPECT_THAT(logLines(), ElementsAre("load 100%s%n%d.png failed"));
}

TEST_F(Log, LongMessageIsWrittenWhole) {
  const std::string text(100000, 'x');
  writeLog(kLogPath, "%s\n", text.c_str());
  EXPECT_THAT(logLines(), ElementsAre(text));
}

TEST_F(Log, OtherPathIsUsedAsGiven) {
  fs::create_directory("folder");
  writeLog("folder/other.log", "elsewhere\n");
  EXPECT_THAT(logLines("folder/other.log"), ElementsAre("elsewhere"));
  EXPECT_FALSE(fs::exists(kLogPath));
}

TEST_F(Log, FileOfTenMebibytesIsStillAppendedTo) {
  makeLog(10485760);
  writeLog(kLogPath, "appended\n");
  EXPECT_EQ(fs::file_size(kLogPath), 10485760 + kStampSize + 9);
}

TEST_F(Log, FileOneByteLargerIsReplacedByTheEntry) {
  makeLog(10485761);
  writeLog(kLogPath, "fresh\n");
  EXPECT_THAT(logLines(), ElementsAre("fresh"));
  EXPECT_EQ(fs::file_size(kLogPath), kStampSize + 6);
}

TEST_F(Log, EntryThatPassesTheLimitIsKeptUntilTheNext) {
  makeLog(10485760);
  writeLog(kLogPath, "passes\n");
  writeLog(kLogPath, "truncates\n");
  EXPECT_THAT(logLines(), ElementsAre("truncates"));
}

// The size is a signed 32-bit number: from 2 GiB on it is negative and so below the limit.
TEST_F(Log, FileOfTwoGibibytesIsAppendedTo) {
  constexpr std::uintmax_t kSize = (std::uintmax_t{1} << 31) + 5;
  makeLog(kSize);
  writeLog(kLogPath, "appended\n");
  EXPECT_EQ(fs::file_size(kLogPath), kSize + kStampSize + 9);
}

TEST_F(Log, LargestPositiveSizeIsTruncated) {
  makeLog((std::uintmax_t{1} << 31) - 1);
  writeLog(kLogPath, "fresh\n");
  EXPECT_THAT(logLines(), ElementsAre("fresh"));
}

TEST_F(Log, DirectoryInItsPlaceDropsTheEntry) {
  fs::create_directory(kLogPath);
  writeLog(kLogPath, "dropped %d\n", 1);
  EXPECT_TRUE(fs::is_directory(kLogPath));
  EXPECT_TRUE(fs::is_empty(kLogPath));
}

TEST_F(Log, MissingFolderDropsTheEntry) {
  writeLog("missing/velmorn.log", "dropped\n");
  EXPECT_FALSE(fs::exists("missing"));
}

TEST_F(Log, FileCanBeDeletedBetweenEntries) {
  writeLog(kLogPath, "first\n");
  fs::remove(kLogPath);
  writeLog(kLogPath, "second\n");
  EXPECT_THAT(logLines(), ElementsAre("second"));
}

TEST_F(Log, NothingGoesToTheConsole) {
  const ConsoleCapture console;
  writeLog(kLogPath, "log only\n");
  EXPECT_EQ(console.text(), "");
}

TEST(Console, TextIsWrittenAsItIs) {
  const ConsoleCapture console;
  printConsole("100%s%n\n");
  printConsole("no line end");
  EXPECT_EQ(console.text(), "100%s%n\nno line end");
}

TEST(Console, HostsStreamSettingsDoNotReachTheMessage) {
  const ConsoleCapture console;
  std::cout << std::setw(20) << std::setfill('*');
  printConsole("text");
  std::cout << std::setw(0) << std::setfill(' ');
  EXPECT_EQ(console.text(), "text");
}

} // namespace
} // namespace velmorn
