// Image files from names and patterns.
#include "velmorn/image_list.h"

#include <gmock/gmock.h>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"

namespace velmorn::tool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ImageList : public TempDirTest {
 protected:
  void touch(const std::string& name) { writeFile(dir() / name, ""); }

  // The names that the entries stand for, without the folder.
  std::vector<std::string> expand(const std::vector<std::string>& entries) {
    std::vector<std::string> names;
    for (const std::string& path : expandImages(entries, dir())) {
      names.push_back(std::filesystem::relative(path, dir()).string());
    }
    return names;
  }
};

TEST(MatchesPattern, KnowsStarAndQuestionMarkOnly) {
  EXPECT_TRUE(matchesPattern("left01.jpg", "left*.jpg"));
  EXPECT_TRUE(matchesPattern("left01.jpg", "left??.jpg"));
  EXPECT_TRUE(matchesPattern("left01.jpg", "*"));
  EXPECT_TRUE(matchesPattern("abcabd", "*abd"));
  EXPECT_TRUE(matchesPattern("a", "a**"));
  EXPECT_FALSE(matchesPattern("left01.jpg", "left?.jpg"));
  EXPECT_FALSE(matchesPattern("left01.jpg", "left*.png"));
  EXPECT_FALSE(matchesPattern("left01.jpg.txt", "left*.jpg"));
  EXPECT_FALSE(matchesPattern("b", "[abc]"));
  EXPECT_FALSE(matchesPattern("a", ""));
}

TEST(MatchesPattern, IsQuickOnManyStars) {
  EXPECT_FALSE(matchesPattern(std::string(250, 'a'), "*a*a*a*a*a*a*a*a*a*a*a*a*b"));
}

TEST_F(ImageList, SortsThePatternsFilesAndKeepsTheEntriesOrder) {
  for (const char* name : {"b2.png", "b10.png", "b1.png", "z.png", "a.txt"}) touch(name);
  EXPECT_THAT(expand({"z.png", "b*.png"}), ElementsAre("z.png", "b1.png", "b10.png", "b2.png"));
}

TEST_F(ImageList, KeepsRepeatedNames) {
  touch("a.png");
  EXPECT_THAT(expand({"a.png", "a.png"}), ElementsAre("a.png", "a.png"));
}

TEST_F(ImageList, TakesAnExistingNameLiterally) {
  touch("a*.png");
  touch("ab.png");
  touch("100% [x] ?.png");
  EXPECT_THAT(expand({"a*.png", "100% [x] ?.png"}), ElementsAre("a*.png", "100% [x] ?.png"));
}

TEST_F(ImageList, ReadsPatternsInSubfoldersAndSkipsFolders) {
  std::filesystem::create_directories(dir() / "sub" / "b.png");
  touch("sub/a.png");
  EXPECT_THAT(expand({"sub/*.png"}), ElementsAre("sub/a.png"));
}

TEST_F(ImageList, LeavesAbsoluteNamesAlone) {
  touch("a.png");
  const std::string absolute = (dir() / "a.png").string();
  EXPECT_THAT(expandImages({absolute}, "elsewhere"), ElementsAre(absolute));
}

TEST_F(ImageList, SaysWhatStandsForNoFile) {
  std::filesystem::create_directories(dir() / "folder.png");
  EXPECT_THAT(toolError([&] { expand({"a.png"}); }), HasSubstr("no such file: "));
  EXPECT_THAT(toolError([&] { expand({"a*.png"}); }), HasSubstr("no file matches "));
  EXPECT_THAT(toolError([&] { expand({"missing/a*.png"}); }), HasSubstr("no file matches "));
  EXPECT_THAT(toolError([&] { expand({"folder.png"}); }), HasSubstr("not a regular file"));
  EXPECT_THAT(toolError([&] { expand({"*/a.png"}); }), HasSubstr("not for the folder"));
}

} // namespace
} // namespace velmorn::tool
