// What the library says on the console during a stitching run.
#include "velmorn/stitch_messages.h"

#include <gmock/gmock.h>

#include <iostream>

#include "velmorn/stream_redirection.h"

namespace velmorn::tool {
namespace {

using testing::ElementsAre;

// Two cameras, the later one in the alphabet given first.
const ImagePathMap kImages = {{"right", {"r0.png"}}, {"left", {"l0.png", "l1.png", "l2.png"}}};

class Messages : public testing::Test {
 protected:
  explicit Messages(const ImagePathMap& images = kImages)
      : messages_(images, [this](const ImageReport& report) { reports_.push_back(report); }),
        stream_(&messages_) {}

  StitchMessages messages_;
  std::ostream stream_;
  std::vector<ImageReport> reports_;
};

TEST_F(Messages, FollowsEveryOutcome) {
  stream_ << "find corner: l0.png\n"
          << "success\n"
          << "find corner: l1.png\nfailed\n"
          << "find corner: l2.png\nload l2.png failed\n"
          << "find corner: r0.png\nimage size is error\n"
          << "baseCamIdx=" << 1;
  EXPECT_TRUE(messages_.complete());
  EXPECT_EQ(messages_.rest(), "baseCamIdx=1");
  EXPECT_THAT(
      messages_.outcomes().at("left"),
      ElementsAre(ImageOutcome::kBoardFound, ImageOutcome::kNoBoard, ImageOutcome::kNotLoaded));
  EXPECT_THAT(messages_.outcomes().at("right"), ElementsAre(ImageOutcome::kWrongSize));
  ASSERT_EQ(reports_.size(), 4U);
  EXPECT_EQ(reports_[3].number, 4U);
  EXPECT_EQ(reports_[3].total, 4U);
  EXPECT_EQ(reports_[3].camera, "right");
  EXPECT_EQ(reports_[3].path, "r0.png");
}

TEST_F(Messages, ReportsAsSoonAsAnImageIsThrough) {
  stream_ << "find corner: l0.png\n";
  EXPECT_TRUE(reports_.empty());
  stream_ << "success\n";
  EXPECT_EQ(reports_.size(), 1U);
}

TEST_F(Messages, TakesTextByTheCharacter) {
  const std::string text = "find corner: l0.png\nsuccess\nfind corner: l1.png\nfailed\n";
  for (const char c : text) stream_.put(c);
  EXPECT_EQ(reports_.size(), 2U);
  EXPECT_TRUE(stream_.good());
}

TEST_F(Messages, StopsAtTextThatCannotBe) {
  stream_ << "find corner: l0.png\nsuccess\nfind corner: other.png\nsuccess\nmore";
  EXPECT_FALSE(messages_.complete());
  EXPECT_EQ(messages_.rest(), "find corner: other.png\nsuccess\nmore");
  EXPECT_THAT(
      messages_.outcomes().at("left"),
      ElementsAre(ImageOutcome::kBoardFound, ImageOutcome::kUnknown, ImageOutcome::kUnknown));
}

TEST_F(Messages, KeepsARefusalBeforeTheFirstImage) {
  stream_ << "chess image error\n";
  EXPECT_FALSE(messages_.complete());
  EXPECT_EQ(messages_.rest(), "chess image error\n");
}

// Names that look like messages.
class OddPaths : public Messages {
 protected:
  OddPaths()
      : Messages({{"c", {"a\nsuccess\n", "a\nsuccess\n\nfailed\n", "", "%s%n", "x failed\n"}}}) {}
};

TEST_F(OddPaths, AreNotTakenForMessages) {
  for (const char* path : {"a\nsuccess\n", "a\nsuccess\n\nfailed\n", "", "%s%n"}) {
    stream_ << "find corner: " << path << "\n"
            << "failed\n";
  }
  stream_ << "find corner: x failed\n\nload x failed\n failed\n";
  EXPECT_TRUE(messages_.complete());
  EXPECT_EQ(messages_.rest(), "");
  EXPECT_THAT(messages_.outcomes().at("c"),
              ElementsAre(ImageOutcome::kNoBoard, ImageOutcome::kNoBoard, ImageOutcome::kNoBoard,
                          ImageOutcome::kNoBoard, ImageOutcome::kNotLoaded));
}

TEST(MessagesWithoutImages, KeepEverything) {
  StitchMessages messages({}, nullptr);
  std::ostream stream(&messages);
  stream << "any text\n";
  EXPECT_TRUE(messages.complete());
  EXPECT_EQ(messages.rest(), "any text\n");
}

TEST(StreamRedirection, EndsWithItsScope) {
  StitchMessages messages({}, nullptr);
  std::streambuf* const before = std::cout.rdbuf();
  {
    const StreamRedirection redirection(std::cout, messages);
    std::cout << "kept away";
  }
  EXPECT_EQ(std::cout.rdbuf(), before);
  EXPECT_EQ(messages.rest(), "kept away");
}

} // namespace
} // namespace velmorn::tool
