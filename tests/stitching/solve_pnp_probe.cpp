// The replaced cv::solvePnP.
#include "stitching/solve_pnp_probe.h"

#include <dlfcn.h>

#include <cstdlib>

#include <opencv2/calib3d.hpp>

namespace velmorn {
namespace {

SolvePnpProbe* activeProbe = nullptr;

using SolvePnp = bool (*)(cv::InputArray, cv::InputArray, cv::InputArray, cv::InputArray,
                          cv::OutputArray, cv::OutputArray, bool, int);

// The shared library's function, under the name that the compiler gives it.
SolvePnp opencvsSolvePnp() {
  void* symbol =
      dlsym(RTLD_NEXT, "_ZN2cv8solvePnPERKNS_11_InputArrayES2_S2_S2_RKNS_12_OutputArrayES5_bi");
  if (symbol == nullptr) std::abort(); // another OpenCV: every test that estimates a pose is void
  return reinterpret_cast<SolvePnp>(symbol);
}

} // namespace

SolvePnpProbe::SolvePnpProbe(int failingCall) : failingCall_(failingCall) { activeProbe = this; }

SolvePnpProbe::~SolvePnpProbe() { activeProbe = nullptr; }

bool SolvePnpProbe::take(const SolvePnpCall& call) {
  calls_.push_back(call);
  return static_cast<int>(calls_.size()) - 1 != failingCall_;
}

} // namespace velmorn

bool cv::solvePnP(InputArray objectPoints, InputArray imagePoints, InputArray cameraMatrix,
                  InputArray distCoeffs, OutputArray rvec, OutputArray tvec, bool useExtrinsicGuess,
                  int flags) {
  if (velmorn::activeProbe != nullptr) {
    velmorn::SolvePnpCall call;
    objectPoints.getMat().reshape(3, 1).copyTo(call.boardPoints);
    imagePoints.getMat().reshape(2, 1).copyTo(call.corners);
    call.intrinsic = cameraMatrix.getMat().clone();
    call.distortion = distCoeffs.getMat().clone();
    call.useExtrinsicGuess = useExtrinsicGuess;
    call.flags = flags;
    if (!velmorn::activeProbe->take(call)) return false;
  }
  return velmorn::opencvsSolvePnp()(objectPoints, imagePoints, cameraMatrix, distCoeffs, rvec, tvec,
                                    useExtrinsicGuess, flags);
}
