// The exported function for hosts that pass plain records.
#include <cstring>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "stitching/stitch_run.h"
#include "support/matchers.h"
#include "support/temp_dir.h"

namespace velmorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Every byte of the buffer behind the text is something else than NUL.
OzKStitchCstring buffer(const std::string& text) {
  OzKStitchCstring buffer;
  std::memset(buffer.str, '#', sizeof buffer.str);
  std::memcpy(buffer.str, text.c_str(), text.size() + 1);
  return buffer;
}

// Records of a call, of which each can be spoilt.
struct Records {
  std::vector<OzKStitchCstring> camIDs;
  std::vector<std::vector<OzKStitchCstring>> texts; // what the lists point to
  std::vector<OzKStitchCstringList> lists;
  std::vector<tagOzKCamIntrinsic> intrinsics;
  std::vector<tagOzKCamDistortion> distortions;

  int count() const { return static_cast<int>(camIDs.size()); }

  // A camera with one path, at its own index; the list's other entries hold a path that is not
  // there.
  void add(const std::string& camID, const std::string& path, int num,
           const CameraModel& camera = plainCamera({640, 480}, 500)) {
    const std::size_t own = camIDs.size();
    camIDs.push_back(buffer(camID));
    std::vector<OzKStitchCstring> strs(own + 3, buffer("wrong-entry.png"));
    strs[own] = buffer(path);
    texts.push_back(strs);
    lists.push_back({texts.back().data(), num}); // stays valid: moving a vector keeps its storage
    intrinsics.push_back(camera.intrinsicRecord());
    distortions.push_back(camera.distortionRecord());
  }
};

class RecordEntry : public TempDirTest {
 protected:
  int run(Records& records, int camNum, int baseCamIdx = -1) {
    result = untouchedResult();
    const ConsoleCapture capture;
    const int status =
        ozkVelmornByChessCtype(records.camIDs.data(), camNum, records.lists.data(),
                               records.intrinsics.data(), records.distortions.data(), patternSize,
                               squareSize, &result, minImages, saveCornerImages, baseCamIdx);
    console = capture.text();
    return status;
  }

  // Two cameras of a rig, each with its image of the first board position.
  Records linkedRecords(int num, const std::vector<std::string>& ids = {"cam0", "cam1"}) {
    rig = quickRig(2, rowGroups(2), ids);
    inputs = inputsWithImages(rig, dir() / "images");
    patternSize = inputs.patternSize;
    squareSize = inputs.squareSize;
    Records records;
    for (std::size_t i = 0; i < 2; ++i)
      records.add(ids[i], inputs.paths[ids[i]][0], num, rig.cameras[i]);
    return records;
  }

  // The same call with containers.
  EntryOutcome runContainers(int num) {
    for (auto& [id, paths] : inputs.paths)
      paths = std::vector<std::string>(static_cast<std::size_t>(num), paths[0]);
    inputs.minImages = minImages;
    inputs.saveCornerImages = saveCornerImages;
    return runEntry(inputs);
  }

  tagOzKSize patternSize{9, 6};
  float squareSize = 25;
  int minImages = 3;
  bool saveCornerImages = false;
  OzKStitchResult result = untouchedResult();
  std::string console;
  SyntheticRig rig;
  StitchInputs inputs;
};

TEST_F(RecordEntry, NullPointersAreRefusedWithoutAWord) {
  Records r;
  r.add("a", "a.png", 3);
  r.add("b", "b.png", 3);
  const ConsoleCapture capture;
  const auto call = [&](const OzKStitchCstring* ids, const OzKStitchCstringList* lists,
                        const tagOzKCamIntrinsic* intrinsics,
                        const tagOzKCamDistortion* distortions, OzKStitchResult* out) {
    return ozkVelmornByChessCtype(ids, 2, lists, intrinsics, distortions, {9, 6}, 25, out, 3, false,
                                  -1);
  };
  const auto* ids = r.camIDs.data();
  const auto* lists = r.lists.data();
  const auto* K = r.intrinsics.data();
  const auto* D = r.distortions.data();
  EXPECT_EQ(call(nullptr, lists, K, D, &result), -1111);
  EXPECT_EQ(call(ids, nullptr, K, D, &result), -1111);
  EXPECT_EQ(call(ids, lists, nullptr, D, &result), -1111);
  EXPECT_EQ(call(ids, lists, K, nullptr, &result), -1111);
  EXPECT_EQ(call(ids, lists, K, D, nullptr), -1111);
  EXPECT_EQ(call(nullptr, nullptr, nullptr, nullptr, nullptr), -1111);
  EXPECT_TRUE(isUntouched(result));
  EXPECT_EQ(capture.text(), "");
  EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(RecordEntry, NullPointersAreCheckedBeforeTheNumberOfCameras) {
  Records r;
  r.add("a", "a.png", 3);
  EXPECT_EQ(ozkVelmornByChessCtype(r.camIDs.data(), 0, r.lists.data(), r.intrinsics.data(),
                                   r.distortions.data(), {9, 6}, 25, nullptr, 3, false, -1),
            -1111);
  EXPECT_EQ(ozkVelmornByChessCtype(nullptr, 11, r.lists.data(), r.intrinsics.data(),
                                   r.distortions.data(), {9, 6}, 25, &result, 3, false, -1),
            -1111);
  EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(RecordEntry, ListThatPointsNowhereIsRefused) {
  Records r;
  r.add("a", "a.png", 3);
  r.add("b", "b.png", 3);
  r.lists[1].strs = nullptr;
  EXPECT_EQ(run(r, 2), -1111);
  EXPECT_TRUE(isUntouched(result));
  EXPECT_EQ(console, "");
  EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(RecordEntry, EmptyListMayPointNowhere) {
  Records r;
  r.add("a", "a.png", 0);
  r.add("b", "b.png", 0);
  r.lists[0].strs = r.lists[1].strs = nullptr;
  EXPECT_EQ(run(r, 2), -1107);
  EXPECT_EQ(console, "too few chess images\n");
}

TEST_F(RecordEntry, NoCamerasAreTooFew) {
  Records r;
  r.add("a", "a.png", 3);
  for (const int camNum : {0, -1, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(run(r, camNum), -1107);
    EXPECT_EQ(console, "");
    EXPECT_TRUE(isUntouched(result));
  }
  EXPECT_THAT(logLines(), ElementsAre("the number of cameras should be greater than 2",
                                      "the number of cameras should be greater than 2",
                                      "the number of cameras should be greater than 2"));
}

TEST_F(RecordEntry, ElevenCamerasAreTooMany) {
  Records r;
  for (int i = 0; i < 11; ++i) r.add("cam" + std::to_string(i), "a.png", 3);
  EXPECT_EQ(run(r, 11), -1107);
  EXPECT_THAT(logLines(), ElementsAre("error: the number of cameras(11) is greater than 10"));
}

TEST_F(RecordEntry, NegativeCountsAreEmptyLists) {
  Records r;
  r.add("a", "a.png", -1);
  r.add("b", "b.png", std::numeric_limits<int>::min());
  EXPECT_EQ(run(r, 2), -1107);
  EXPECT_EQ(console, "too few chess images\n");
}

TEST_F(RecordEntry, DifferentCountsAreRefused) {
  Records r;
  r.add("a", "a.png", 3);
  r.add("b", "b.png", 4);
  EXPECT_EQ(run(r, 2), -1107);
  EXPECT_EQ(console, "chess image error\n");
}

// Existing hosts place the path there.
TEST_F(RecordEntry, CamerasOwnIndexPicksThePathForAllItsImages) {
  Records r;
  r.add("a", "a.png", 2);
  r.add("b", "b.png", 2);
  r.add("c", "c.png", 2);
  minImages = 2;
  EXPECT_EQ(run(r, 3), -1);
  std::string expected;
  for (const std::string path : {"a.png", "b.png", "c.png"})
    for (int i = 0; i < 2; ++i) expected += "find corner: " + path + "\nload " + path + " failed\n";
  EXPECT_EQ(console.substr(0, expected.size()), expected);
  EXPECT_TRUE(isUntouched(result));
}

TEST_F(RecordEntry, EntryMayLieBeyondTheCount) {
  Records r;
  r.add("a", "a.png", 1);
  r.add("b", "b.png", 1); // entry 1 of a list that counts one entry
  minImages = 1;
  EXPECT_EQ(run(r, 2), -1);
  EXPECT_EQ(withoutCornerSearch(console), "failed to get camera b RT\n");
  EXPECT_EQ(console.substr(0, console.find("failed to")),
            "find corner: a.png\nload a.png failed\nfind corner: b.png\nload b.png failed\n");
}

TEST_F(RecordEntry, GivesWhatTheContainersGive) {
  Records records = linkedRecords(4);
  ASSERT_EQ(run(records, 2), 0);
  const EntryOutcome expected = runContainers(4);
  EXPECT_EQ(expected.status, 0);
  EXPECT_EQ(std::memcmp(&result, &expected.result, sizeof result), 0);
  EXPECT_EQ(console, expected.console);
  EXPECT_EQ(logLines().size(), 6U); // three lines per run
}

TEST_F(RecordEntry, RepeatedImageLinksTheCameras) {
  Records records = linkedRecords(5);
  ASSERT_EQ(run(records, 2, 1), 0);
  EXPECT_EQ(result.baseCamIdx, 1);
  EXPECT_EQ(result.cameraNum, 2);
  EXPECT_EQ(result.camExtrinsic[1].data[4], 1.0);
  EXPECT_EQ(result.camExtrinsic[1].data[5], 0.0);
  // One board position only, so the figures are coarse.
  EXPECT_THAT(transformOf(result.camExtrinsic[0]), extrinsicNear(rig.camFromCam(0, 1), 1, 15));
}

TEST_F(RecordEntry, CornerImagesAreSavedForEveryCopy) {
  Records records = linkedRecords(3);
  saveCornerImages = true;
  ASSERT_EQ(run(records, 2), 0);
  for (const std::string id : {"cam0", "cam1"}) {
    const std::string first = readFile("chessImgs/corner-000-" + id + ".bmp");
    EXPECT_TRUE(first == readFile("chessImgs/corner-001-" + id + ".bmp"));
    EXPECT_TRUE(first == readFile("chessImgs/corner-002-" + id + ".bmp"));
  }
}

TEST_F(RecordEntry, IdentifiersAreReadUpToTheirEnd) {
  const std::string longest(511, 'x');
  Records records = linkedRecords(3, {longest, "100%s%n %d"});
  ASSERT_EQ(run(records, 2), 0);
  EXPECT_EQ(logLines().at(0), "camreaIDs (" + longest + ",100%s%n %d)");
}

// No buffer is read beyond its 512 bytes.
TEST_F(RecordEntry, BufferWithoutAnEndIsTakenWhole) {
  Records records = linkedRecords(3);
  std::memset(records.camIDs[0].str, 'y', sizeof records.camIDs[0].str);
  ASSERT_EQ(run(records, 2), 0);
  EXPECT_EQ(logLines().at(0), "camreaIDs (" + std::string(512, 'y') + ",cam1)");
}

TEST_F(RecordEntry, EmptyIdentifierIsAnIdentifier) {
  Records records = linkedRecords(3);
  records.camIDs[0] = buffer("");
  ASSERT_EQ(run(records, 2), 0);
  EXPECT_EQ(logLines().at(0), "camreaIDs (,cam1)");
}

TEST_F(RecordEntry, RepeatedIdentifierTakesTheLaterRecords) {
  Records records = linkedRecords(3);
  Records repeated;
  repeated.add("cam1", "wrong.png", 3); // overwritten by the third
  repeated.add("cam0", inputs.paths["cam0"][0], 3, rig.cameras[0]);
  repeated.add("cam1", inputs.paths["cam1"][0], 3, rig.cameras[1]);
  ASSERT_EQ(run(records, 2, 0), 0);
  const OzKStitchResult expected = result;
  ASSERT_EQ(run(repeated, 3, 1), 0);
  EXPECT_EQ(result.cameraNum, 3);
  for (const int camera : {0, 2})
    EXPECT_EQ(std::memcmp(&result.camExtrinsic[camera], &expected.camExtrinsic[1],
                          sizeof(tagOzKCamExtrinsic)),
              0);
}

TEST_F(RecordEntry, RefusalOfOpencvLeavesTheResultAlone) {
  Records records = linkedRecords(3);
  patternSize = {2, 2};
  EXPECT_EQ(run(records, 2), -1);
  EXPECT_TRUE(isUntouched(result));
}

} // namespace
} // namespace velmorn
