// What a check says about rigs with one fault each, and about sound ones.
#include <gmock/gmock.h>

#include <opencv2/calib3d.hpp>

#include "tools/record_builder.h"
#include "velmorn/check_command.h"
#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr Weight kProblem = Weight::kProblem;
constexpr Weight kCaution = Weight::kCaution;

auto finding(Weight weight, const testing::Matcher<std::string>& text) {
  return AllOf(Field(&Finding::weight, weight), Field(&Finding::text, text));
}

// Three cameras that see every position.
SyntheticRig threeCameras(int width = 9, int height = 6) {
  RigOptions options;
  options.cameraCount = 3;
  options.groups = rowGroups(3);
  options.board.width = width;
  options.board.height = height;
  options.ids = {"a", "b", "c"};
  return makeRig(options);
}

cv::Matx44d smallMove() {
  cv::Matx33d R;
  cv::Rodrigues(cv::Vec3d(0, 0.02, 0), R);
  return poseFrom(cv::Mat(R), cv::Mat(cv::Vec3d(6, 0, 0)));
}

TEST(CheckRun, HasNothingToSayAboutASoundRig) {
  const SyntheticRig rig = threeCameras();
  const Findings findings = checkRun(recordOf(rig, recordCorners(rig)));
  EXPECT_THAT(findings, IsEmpty()) << checkText("result.json", StitchRecord(), findings);
}

TEST(CheckRun, HasNothingToSayAboutASoundBoardThatCouldBeTurned) {
  const SyntheticRig rig = threeCameras(8, 6);
  EXPECT_THAT(checkRun(recordOf(rig, recordCorners(rig))), IsEmpty());
}

TEST(CheckRun, NamesAnUnlinkedCameraAndThePairThatLacksViews) {
  const SyntheticRig rig = threeCameras();
  CornerMap corners = recordCorners(rig);
  // c sees the board twice, when b sees it too but a does not.
  for (std::size_t j = 2; j < corners["c"].size(); ++j) corners["c"][j].clear();
  corners["a"][0].clear();
  StitchRecord run = recordOf(rig, corners);
  run.error = "camera \"c\" could not be linked";
  run.cameras[2].baseFromCam.reset();
  run.cameras[2].parent.clear();
  const Findings findings = checkRun(run);
  EXPECT_THAT(findings, Contains(finding(kProblem, AllOf(HasSubstr("camera \"c\" is not linked"),
                                                         HasSubstr("\"c\" and \"b\" both see the "
                                                                   "board in 2 positions, needed "
                                                                   "are 3")))));
}

TEST(CheckRun, NamesACameraThatNeverSeesTheBoard) {
  const SyntheticRig rig = threeCameras();
  CornerMap corners = recordCorners(rig);
  for (auto& list : corners["b"]) list.clear();
  const Findings findings = checkRun(recordOf(rig, corners));
  EXPECT_THAT(findings, Contains(finding(kProblem, HasSubstr("camera \"b\" is not linked"))));
  EXPECT_THAT(findings,
              Contains(Field(&Finding::advice, HasSubstr("look at the images of \"b\""))));
}

TEST(CheckRun, NamesALinkOfFewPositions) {
  const SyntheticRig rig = threeCameras();
  CornerMap corners = recordCorners(rig);
  for (std::size_t j = 2; j < corners["c"].size(); ++j) corners["c"][j].clear();
  StitchRecord run = recordOf(rig, corners);
  run.minImages = 1;
  EXPECT_THAT(checkRun(run),
              Contains(finding(kCaution, HasSubstr("\"c\" and \"a\" are linked by 2 board "
                                                   "positions only"))));
  corners["c"][1].clear();
  run = recordOf(rig, corners);
  run.minImages = 1;
  EXPECT_THAT(checkRun(run), Contains(finding(kProblem, HasSubstr("which nothing confirms"))));
}

TEST(CheckRun, NamesABumpedCameraWhenAndHowFar) {
  const SyntheticRig rig = threeCameras();
  for (const std::size_t camera : {0U, 1U, 2U}) {
    CornerMap corners = recordCorners(rig);
    moveFrom(rig, camera, 5, smallMove(), corners);
    const Findings findings = checkRun(recordOf(rig, corners));
    ASSERT_EQ(findings.size(), 1U) << checkText("", StitchRecord(), findings);
    const std::string& id = rig.ids[camera];
    EXPECT_THAT(findings[0], finding(kProblem, HasSubstr("camera \"" + id + "\" was moved")));
    EXPECT_THAT(findings[0].text, HasSubstr("positions 5 (" + id + "-4.png) and 6 (" + id));
    EXPECT_THAT(findings[0].text, testing::ContainsRegex("and 1\\.1[0-9] degrees"));
  }
}

TEST(CheckRun, NamesBothCamerasOfAPairOneOfWhichWasBumped) {
  RigOptions options;
  options.ids = {"a", "b"};
  const SyntheticRig rig = makeRig(options);
  CornerMap corners = recordCorners(rig);
  moveFrom(rig, 1, 5, smallMove(), corners);
  EXPECT_THAT(checkRun(recordOf(rig, corners)),
              testing::ElementsAre(
                  finding(kProblem, HasSubstr("one of the cameras \"a\" and \"b\" was moved"))));
}

TEST(CheckRun, NamesACameraThatTheResultPutsElsewhere) {
  const SyntheticRig rig = threeCameras();
  StitchRecord run = recordOf(rig, recordCorners(rig));
  run.cameras[1].baseFromCam = *run.cameras[1].baseFromCam * smallMove();
  EXPECT_THAT(checkRun(run),
              testing::ElementsAre(finding(
                  kProblem, AllOf(HasSubstr("camera \"b\" does not stand where the result says"),
                                  HasSubstr("\"a\" and \"c\"")))));
}

TEST(CheckRun, NamesAnOddPosition) {
  const SyntheticRig rig = threeCameras();
  CornerMap corners = recordCorners(rig);
  const CornerMap still = corners;
  moveFrom(rig, 1, 3, smallMove(), corners);
  for (std::size_t j = 4; j < corners["b"].size(); ++j) corners["b"][j] = still.at("b")[j];
  EXPECT_THAT(checkRun(recordOf(rig, corners)),
              testing::ElementsAre(finding(
                  kProblem, AllOf(HasSubstr("camera \"b\": board position 4 (b-3.png) disagrees"),
                                  HasSubstr("\"a\" and \"c\"")))));
}

TEST(CheckRun, NamesAHalfTurnedBoard) {
  const SyntheticRig rig = threeCameras(8, 6);
  CornerMap corners = recordCorners(rig);
  turnBoards(rig, 2, corners);
  EXPECT_THAT(checkRun(recordOf(rig, corners)),
              testing::ElementsAre(finding(
                  kProblem, AllOf(HasSubstr("camera \"c\" takes the board for turned by half a"),
                                  HasSubstr("\"a\" and \"b\"")))));
}

void scaleFocalLengths(SyntheticRig& rig, std::size_t camera, double factor) {
  rig.cameras[camera].matrix(0, 0) *= factor;
  rig.cameras[camera].matrix(1, 1) *= factor;
}

TEST(CheckRun, NamesWrongIntrinsics) {
  SyntheticRig rig = threeCameras();
  const CornerMap corners = recordCorners(rig);
  scaleFocalLengths(rig, 1, 1.1);
  const Findings findings = checkRun(recordOf(rig, corners));
  const std::string text = checkText("", StitchRecord(), findings);
  EXPECT_THAT(text, HasSubstr("PROBLEM  camera \"b\": b.yml does not fit its images: f"));
  EXPECT_THAT(text, HasSubstr(" is 569 there, and about 517"));
  for (const Finding& other : findings) EXPECT_THAT(other.text, HasSubstr("\"b\""));
}

TEST(CheckRun, NamesIntrinsicsOfACameraOfTheSameKind) {
  SyntheticRig rig = threeCameras();
  const CornerMap corners = recordCorners(rig);
  scaleFocalLengths(rig, 1, 1.01);
  const Findings findings = checkRun(recordOf(rig, corners));
  EXPECT_THAT(checkText("", StitchRecord(), findings),
              HasSubstr("PROBLEM  camera \"b\": b.yml does not fit its images"));
}

TEST(CheckRun, NamesADistortionThatIsLeftOut) {
  SyntheticRig rig = threeCameras();
  const CornerMap corners = recordCorners(rig);
  StitchRecord run = recordOf(rig, corners);
  for (double& coefficient : run.cameras[2].intrinsics->model.distortion.coeffs) coefficient = 0;
  EXPECT_THAT(
      checkRun(run),
      Contains(finding(kProblem, HasSubstr("camera \"c\": c.yml does not fit its images"))));
}

TEST(CheckRun, NamesIntrinsicsOfAnotherSize) {
  const SyntheticRig rig = threeCameras();
  StitchRecord run = recordOf(rig, recordCorners(rig));
  run.cameras[1].intrinsics->model.imageSize = {1280, 960};
  EXPECT_THAT(checkRun(run),
              testing::ElementsAre(finding(kProblem, HasSubstr("the images are 640x480, but b.yml "
                                                               "is for 1280x960"))));
}

TEST(CheckRun, NamesAnImageThatIsWorseThanTheOthers) {
  const SyntheticRig rig = threeCameras();
  CornerMap corners = recordCorners(rig);
  for (std::size_t i = 0; i < corners["a"][7].size(); i += 2) corners["a"][7][i].x += 1.5F;
  EXPECT_THAT(checkRun(recordOf(rig, corners)),
              Contains(finding(kCaution, HasSubstr("a-7.png has a reprojection error of"))));
}

TEST(CheckRun, NamesABoardSeenFromOneAngleAndInOnePlace) {
  SyntheticRig rig = threeCameras();
  for (Shot& shot : rig.shots) shot = rig.shots.front();
  const Findings findings = checkRun(recordOf(rig, recordCorners(rig)));
  EXPECT_THAT(findings,
              Contains(finding(kCaution, HasSubstr("saw the board from one angle only"))));
  EXPECT_THAT(findings, Not(Contains(Field(&Finding::weight, kProblem))));
}

TEST(CheckRun, NamesAPoorCoverageAndNarrowSquares) {
  const SyntheticRig rig = threeCameras();
  StitchRecord run = recordOf(rig, recordCorners(rig));
  for (CameraRecord& camera : run.cameras)
    for (ShotRecord& shot : camera.shots)
      for (cv::Point2d& corner : shot.corners) corner *= 0.3;
  const Findings findings = checkRun(run);
  EXPECT_THAT(findings, Contains(finding(kCaution, HasSubstr("corners cover only"))));
  EXPECT_THAT(findings, Contains(finding(kCaution, HasSubstr("pixels wide"))));
}

TEST(CheckRun, NamesAFailureWithoutAnyOtherProblem) {
  const SyntheticRig rig = threeCameras();
  StitchRecord run = recordOf(rig, recordCorners(rig));
  run.error = "something else";
  EXPECT_THAT(checkRun(run),
              testing::ElementsAre(finding(kProblem, "the run failed: something else")));
}

TEST(CheckText, PutsProblemsFirstAndEndsWithTheVerdict) {
  const SyntheticRig rig = threeCameras();
  const StitchRecord run = recordOf(rig, recordCorners(rig));
  EXPECT_THAT(checkText("r.json", run, {}),
              AllOf(testing::StartsWith("r.json: 3 cameras before a board of 9x6 inner corners\n"),
                    testing::EndsWith("\nThe calibration is good.\n")));
  EXPECT_THAT(checkText("r.json", run, {{kCaution, "x", "y"}}),
              HasSubstr("\ncaution  x.\n  what to do: y.\n\nThe result can be used."));
  EXPECT_THAT(checkText("r.json", run, {{kProblem, "x", "y"}}),
              HasSubstr("\nPROBLEM  x.\n  what to do: y.\n\nDo not trust this result."));
}

} // namespace
} // namespace velmorn::tool
