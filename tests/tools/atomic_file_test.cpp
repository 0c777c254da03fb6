// Reading and writing whole files.
#include "velmorn/atomic_file.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <iterator>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class AtomicFile : public TempDirTest {
 protected:
  // Files in the directory, so that a leftover shows.
  std::size_t fileCount() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(dir()), fs::directory_iterator()));
  }
};

TEST_F(AtomicFile, WritesANewFile) {
  writeFileAtomically("new.txt", "text\n");
  EXPECT_EQ(readFile("new.txt"), "text\n");
  EXPECT_EQ(fileCount(), 1U);
}

TEST_F(AtomicFile, ReplacesAnOldFile) {
  writeFile("old.txt", "a much longer text than the new one");
  writeFileAtomically("old.txt", "new");
  EXPECT_EQ(readFile("old.txt"), "new");
  EXPECT_EQ(fileCount(), 1U);
}

TEST_F(AtomicFile, GivesTheUsualPermissions) {
  writeFile("usual.txt", "");
  writeFileAtomically("new.txt", "");
  EXPECT_EQ(fs::status("new.txt").permissions(), fs::status("usual.txt").permissions());
}

TEST_F(AtomicFile, WritesThroughASymbolicLink) {
  writeFile("target.txt", "old");
  fs::create_symlink("target.txt", "link.txt");
  writeFileAtomically("link.txt", "new");
  EXPECT_TRUE(fs::is_symlink("link.txt"));
  EXPECT_EQ(readFile("target.txt"), "new");
}

TEST_F(AtomicFile, NeverReplacesWhatIsNoRegularFile) {
  fs::create_directory("folder");
  EXPECT_THAT(toolError([] { writeFileAtomically("folder", "x"); }),
              HasSubstr("cannot write folder: it exists and is not a regular file"));
  EXPECT_THAT(toolError([] { writeFileAtomically("/dev/null", "x"); }), HasSubstr("/dev/null"));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(AtomicFile, SaysWhyItCannotWrite) {
  EXPECT_THAT(toolError([] { writeFileAtomically("missing/x.txt", "x"); }),
              HasSubstr("cannot write missing/x.txt: No such file or directory"));
  EXPECT_EQ(fileCount(), 0U);
}

TEST_F(AtomicFile, ProbesWithoutATrace) {
  writeFile("old.txt", "old");
  requireWritable("old.txt");
  requireWritable("new.txt");
  EXPECT_EQ(readFile("old.txt"), "old");
  EXPECT_EQ(fileCount(), 1U);
  EXPECT_THAT(toolError([] { requireWritable("missing/x.txt"); }), HasSubstr("missing/x.txt"));
}

TEST_F(AtomicFile, WritesInParts) {
  writeFile("old.txt", "old");
  FileInParts file("old.txt");
  file.append("number 0;");
  file.append(" and");
  EXPECT_EQ(readFile("old.txt"), "old");
  file.replaceStart("number 7");
  file.append(" more");
  file.commit();
  EXPECT_EQ(readFile("old.txt"), "number 7; and more");
  EXPECT_EQ(fileCount(), 1U);
}

TEST_F(AtomicFile, PartsWithoutACommitLeaveNoTrace) {
  writeFile("old.txt", "old");
  {
    FileInParts file("old.txt");
    file.append("new");
    EXPECT_EQ(fileCount(), 2U);
  }
  EXPECT_EQ(readFile("old.txt"), "old");
  EXPECT_EQ(fileCount(), 1U);
  EXPECT_THAT(toolError([] { FileInParts("missing/x.txt"); }),
              HasSubstr("cannot write missing/x.txt: No such file or directory"));
}

TEST_F(AtomicFile, ReadsRegularFilesOnly) {
  writeFile("bytes", std::string("a\0b\r\n", 5));
  EXPECT_EQ(readWholeFile("bytes"), std::string("a\0b\r\n", 5));
  writeFile("empty", "");
  EXPECT_EQ(readWholeFile("empty"), "");
  EXPECT_EQ(toolError([] { readWholeFile("missing"); }), "no such file: missing");
  EXPECT_EQ(toolError([] { readWholeFile("/dev/zero"); }), "not a regular file: /dev/zero");
}

} // namespace
} // namespace velmorn::tool
