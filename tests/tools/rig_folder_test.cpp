// Folders that make a rig, and folders that do not.
#include "velmorn/rig_folder.h"

#include <gmock/gmock.h>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"
#include "tools/rig_builder.h"

namespace velmorn::tool {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class RigFolder : public TempDirTest {
 protected:
  void put(const std::string& file, const std::string& content = "") {
    const std::filesystem::path path = dir() / "rig" / file;
    std::filesystem::create_directories(path.parent_path());
    writeFile(path, content);
  }

  // Cameras "a" and "b" with camera files and board-1 to board-3.
  void putTwoCameras() {
    for (const std::string id : {"a", "b"}) {
      put(id + "/intrinsics.yml", cameraYaml());
      for (const std::string number : {"1", "2", "3"}) put(id + "/board-" + number + ".png");
    }
  }

  Rig read(const std::string& board = "9x6", double square = 25) {
    return readRigFolder("rig", board, square,
                         [&](const std::vector<std::string>& images, const std::string& output) {
                           calibrated_.push_back(output);
                           images_ = images;
                           writeFile(output, cameraYaml());
                         });
  }

  std::string refusal(const std::string& board = "9x6") {
    const std::string message = toolError([&] { read(board); });
    EXPECT_THAT(message, StartsWith("rig: "));
    return message;
  }

  std::vector<std::string> calibrated_, images_;
};

TEST_F(RigFolder, TakesAFolderPerCamera) {
  putTwoCameras();
  put("a/depth.png");
  put("a/color.png");
  put("a/notes.txt");
  put("notes/readme.txt");
  put("rig.json");
  const Rig rig = read();
  ASSERT_EQ(rig.cameras.size(), 2U);
  EXPECT_EQ(rig.cameras[0].id, "a");
  EXPECT_EQ(rig.cameras[1].id, "b");
  EXPECT_THAT(rig.cameras[0].images,
              ElementsAre("rig/a/board-1.png", "rig/a/board-2.png", "rig/a/board-3.png"));
  EXPECT_EQ(rig.cameras[0].intrinsicsPath, "rig/a/intrinsics.yml");
  EXPECT_EQ(rig.board.width, 9);
  EXPECT_EQ(rig.square, 25);
  EXPECT_EQ(rig.base, kAutoBase);
  EXPECT_THAT(calibrated_, IsEmpty());
}

TEST_F(RigFolder, ImagesOfEqualNamesShowOnePosition) {
  putTwoCameras();
  std::filesystem::remove(dir() / "rig/a/board-2.png");
  put("b/board-4.PNG");
  const Rig rig = read();
  EXPECT_THAT(rig.cameras[0].images, ElementsAre("rig/a/board-1.png", "rig/a/board-2.png",
                                                 "rig/a/board-3.png", "rig/a/board-4.PNG"));
  EXPECT_THAT(rig.cameras[1].images, ElementsAre("rig/b/board-1.png", "rig/b/board-2.png",
                                                 "rig/b/board-3.png", "rig/b/board-4.PNG"));
}

TEST_F(RigFolder, TakesAllImagesWhenNoneIsCalledBoard) {
  for (const std::string id : {"a", "b"}) {
    put(id + "/intrinsics.xml", "");
    for (const char* name : {"1.jpg", "2.jpeg", "3.tif", "depth.png", "color.jpg"})
      put(id + "/" + name);
  }
  const auto cameras = cameraFolders("rig", false);
  ASSERT_EQ(cameras.size(), 2U);
  EXPECT_THAT(cameras[0].images, ElementsAre("1.jpg", "2.jpeg", "3.tif"));
  EXPECT_EQ(cameras[0].intrinsics, "intrinsics.xml");
}

TEST_F(RigFolder, CalibratesACameraWithoutACameraFile) {
  putTwoCameras();
  std::filesystem::remove(dir() / "rig/b/intrinsics.yml");
  read();
  EXPECT_THAT(calibrated_, ElementsAre("rig/b/intrinsics.yml"));
  EXPECT_THAT(images_, ElementsAre("rig/b/board-1.png", "rig/b/board-2.png", "rig/b/board-3.png"));
}

TEST_F(RigFolder, TakesCodeImagesForADataCodeBoard) {
  putTwoCameras();
  for (const std::string id : {"a", "b"}) put(id + "/code-1.png");
  const Rig rig = read("data-code", 0);
  EXPECT_TRUE(rig.hasDataCodes);
  EXPECT_THAT(rig.cameras[1].images, ElementsAre("rig/b/code-1.png"));
}

TEST_F(RigFolder, SaysWhatAFolderLacks) {
  put("a/board-1.png");
  EXPECT_THAT(refusal(), HasSubstr("no folders with board images of two cameras"));
  put("b/board-1.png");
  EXPECT_THAT(refusal("data-code"), HasSubstr("camera \"a\" has no intrinsics.yml"));
  EXPECT_THAT(refusal(), HasSubstr("\"min_images\" is 3, but each camera has 1 image"));
  put("a/intrinsics.yml", "bad");
  EXPECT_THAT(refusal(), HasSubstr("camera \"a\": rig/a/intrinsics.yml"));
}

TEST_F(RigFolder, NamesAFolderThatIsNotThere) {
  EXPECT_THAT(toolError([] { cameraFolders("none", false); }), StartsWith("none: "));
}

} // namespace
} // namespace velmorn::tool
