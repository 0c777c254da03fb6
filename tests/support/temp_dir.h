// A working directory of the test's own, what the library leaves there, and its console output.
#ifndef VELMORN64_TESTS_SUPPORT_TEMP_DIR_H
#define VELMORN64_TESTS_SUPPORT_TEMP_DIR_H

#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace velmorn {

// An empty directory, removed with everything in it.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// Runs the test inside an empty directory and comes back afterwards.
class TempDirTest : public testing::Test {
 protected:
  TempDirTest();
  ~TempDirTest() override;

  const std::filesystem::path& dir() const { return dir_.path(); }

 private:
  TempDir dir_;
  std::filesystem::path previous_;
};

// Takes what is written to std::cout while it lives.
class ConsoleCapture {
 public:
  ConsoleCapture() : previous_(std::cout.rdbuf(taken_.rdbuf())) {}
  ~ConsoleCapture() { std::cout.rdbuf(previous_); }
  ConsoleCapture(const ConsoleCapture&) = delete;
  ConsoleCapture& operator=(const ConsoleCapture&) = delete;

  std::string text() const { return taken_.str(); }

 private:
  std::ostringstream taken_;
  std::streambuf* previous_;
};

// Whole files, byte for byte. Reading a file that is not there throws.
std::string readFile(const std::filesystem::path& path);
void writeFile(const std::filesystem::path& path, const std::string& content);

// The messages of the log, one per line, time stamps removed. A line without a time stamp throws;
// a log that does not exist has no messages.
std::vector<std::string> logLines(const std::filesystem::path& path = "velmorn.log");

} // namespace velmorn

#endif // VELMORN64_TESTS_SUPPORT_TEMP_DIR_H
