// Watches, and on request breaks, the pose estimations that the library asks OpenCV for.
//
// OpenCV's default method reports no failure for any input, it throws; so the library's answer to a
// reported failure can only be seen by replacing the call. The test program defines cv::solvePnP
// itself, which takes precedence over the shared library's, and passes the calls on.
#ifndef VELMORN64_TESTS_STITCHING_SOLVE_PNP_PROBE_H
#define VELMORN64_TESTS_STITCHING_SOLVE_PNP_PROBE_H

#include <vector>

#include <opencv2/core.hpp>

namespace velmorn {

struct SolvePnpCall {
  std::vector<cv::Point3f> boardPoints;
  std::vector<cv::Point2f> corners;
  cv::Mat intrinsic, distortion;
  bool useExtrinsicGuess = false;
  int flags = 0;
};

// Takes note of the calls while it lives. One at a time, on one thread.
class SolvePnpProbe {
 public:
  // Call number `failingCall`, counted from 0, reports failure; none does when it is negative.
  explicit SolvePnpProbe(int failingCall = -1);
  ~SolvePnpProbe();
  SolvePnpProbe(const SolvePnpProbe&) = delete;
  SolvePnpProbe& operator=(const SolvePnpProbe&) = delete;

  const std::vector<SolvePnpCall>& calls() const { return calls_; }

  // Takes one call; false when it is to report failure.
  bool take(const SolvePnpCall& call);

 private:
  int failingCall_;
  std::vector<SolvePnpCall> calls_;
};

} // namespace velmorn

#endif // VELMORN64_TESTS_STITCHING_SOLVE_PNP_PROBE_H
