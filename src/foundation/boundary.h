// The library's edge: nothing thrown below it reaches the host.
#ifndef VELMORN64_FOUNDATION_BOUNDARY_H
#define VELMORN64_FOUNDATION_BOUNDARY_H

#include "velmorn64.h"

namespace velmorn {

// Runs the body of an exported function and returns its status code. Whatever the body throws (an
// OpenCV error, bad_alloc) becomes kOzkComputationFailed.
template <typename Body>
int guarded(Body&& body) noexcept {
  try {
    return body();
  } catch (...) {
    return kOzkComputationFailed;
  }
}

} // namespace velmorn

#endif // VELMORN64_FOUNDATION_BOUNDARY_H
