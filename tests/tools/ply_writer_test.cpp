// Merged clouds as files: every byte of a small one, and larger ones read back.
#include "velmorn/ply_writer.h"

#include <gmock/gmock.h>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"
#include "tools/merge_builder.h"
#include "velmorn/ply_header.h"

namespace velmorn::tool {
namespace {

using testing::EndsWith;
using testing::StartsWith;

class PlyWriterFile : public TempDirTest {};

TEST_F(PlyWriterFile, BytesOfOnePoint) {
  PlyWriter writer("a.ply", {"camera 0 left", "camera 1 right"});
  writer.add({{1, -2, 0.5F}, {3, 2, 1}, 1});
  writer.commit();
  EXPECT_EQ(readFile("a.ply"),
            "ply\n"
            "format binary_little_endian 1.0\n"
            "comment camera 0 left\n"
            "comment camera 1 right\n"
            "comment " +
                std::string(19, ' ') +
                "\n"
                "element vertex 1\n"
                "property float x\n"
                "property float y\n"
                "property float z\n"
                "property uchar red\n"
                "property uchar green\n"
                "property uchar blue\n"
                "property uchar camera\n"
                "end_header\n" +
                std::string("\0\0\x80\x3F\0\0\0\xC0\0\0\0\x3F\1\2\3\1", 16));
}

// More than one part, and a number of points that is longer than the first header's.
TEST_F(PlyWriterFile, ManyPointsComeBack) {
  constexpr int kNumber = 200000;
  PlyWriter writer("many.ply", {});
  for (int i = 0; i < kNumber; ++i) {
    writer.add(
        {{static_cast<float>(i), 0.25F, -1}, {10, 20, 30}, static_cast<std::uint8_t>(i % 7)});
  }
  EXPECT_EQ(writer.size(), 200000U);
  writer.commit();
  EXPECT_NO_THROW(requireSoundPlyHeader("many.ply"));
  const std::vector<CloudPoint> points = readMergedCloud("many.ply");
  ASSERT_EQ(points.size(), 200000U);
  for (const std::size_t i : {0U, 65535U, 65536U, 199999U}) {
    EXPECT_EQ(points[i].position, cv::Vec3f(static_cast<float>(i), 0.25F, -1));
    EXPECT_EQ(points[i].colour, cv::Vec3b(10, 20, 30));
    EXPECT_EQ(points[i].camera, i % 7);
  }
}

TEST_F(PlyWriterFile, WithoutACommitNothingChanges) {
  writeFile("old.ply", "as it was");
  {
    PlyWriter writer("old.ply", {});
    for (int i = 0; i < 100000; ++i) writer.add({{1, 2, 3}, {}, 0});
  }
  EXPECT_EQ(readFile("old.ply"), "as it was");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir()),
                          std::filesystem::directory_iterator()),
            1);
}

TEST_F(PlyWriterFile, FailsBeforeTheFirstPoint) {
  EXPECT_THAT(toolError([] { PlyWriter("no/where.ply", {}); }),
              StartsWith("cannot write no/where.ply: "));
}

} // namespace
} // namespace velmorn::tool
