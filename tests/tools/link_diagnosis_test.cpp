// Why a stitching run failed.
#include "velmorn/link_diagnosis.h"

#include <gmock/gmock.h>

#include <ostream>

namespace velmorn::tool {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

// Cameras with three images each: "a" and "b" see the board in all of them, "c" in none.
class LinkDiagnosis : public testing::Test {
 protected:
  LinkDiagnosis() {
    rig_.minImages = 2;
    for (const char* id : {"a", "b", "c"}) {
      RigCamera camera;
      camera.id = id;
      for (const char* number : {"0", "1", "2"}) camera.images.push_back(camera.id + number);
      images_[id] = camera.images;
      rig_.cameras.push_back(camera);
    }
  }

  std::string reason(const std::string& messageForC, const std::string& rest, int status) {
    StitchMessages messages(images_, [](const ImageReport&) {});
    std::ostream stream(&messages);
    for (const auto& [id, paths] : images_) {
      for (const std::string& path : paths) {
        stream << "find corner: " << path << "\n" << (id == "c" ? messageForC : "success\n");
      }
    }
    stream << rest;
    return failureReason(rig_, messages, status);
  }

  Rig rig_;
  ImagePathMap images_;
};

TEST_F(LinkDiagnosis, CountsTheViewsSharedWithTheOthers) {
  EXPECT_EQ(reason("failed\n", "failed to get camera c RT\n", -1),
            "camera \"c\" could not be linked: board views shared with \"a\" 0, \"b\" 0, needed 2");
}

TEST_F(LinkDiagnosis, NamesImagesThatWereNoHelp) {
  EXPECT_THAT(reason("image size is error\n", "failed to get camera c RT\n", -1),
              HasSubstr("3 images of it had another size than the first one (such as c0)"));
}

TEST_F(LinkDiagnosis, DistinguishesAPoseThatFailed) {
  EXPECT_THAT(reason("success\n", "solvePnP error\nfailed to get camera c RT\n", -1),
              AllOf(HasSubstr("\"a\" 3, \"b\" 3, needed 2"), HasSubstr("shares enough")));
}

TEST_F(LinkDiagnosis, NamesEveryCamera) {
  EXPECT_THAT(reason("failed\n", "failed to get camera b RT\nfailed to get camera c RT\n", -1),
              AllOf(HasSubstr("camera \"b\" could not be linked"), HasSubstr("; nor could \"c\"")));
}

TEST_F(LinkDiagnosis, GivesTheStatusWhenNoCameraIsNamed) {
  EXPECT_EQ(reason("success\n", "", -1), "the library refused the run with status -1");
  EXPECT_EQ(reason("success\n", "some\nmessage\n", -1107),
            "the library refused the run with status -1107: some message");
}

} // namespace
} // namespace velmorn::tool
