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

// The same for an exported function that returns nothing: what the body throws is dropped.
template <typename Body>
void guardedVoid(Body&& body) noexcept {
  try {
    body();
  } catch (...) {
  }
}

} // namespace velmorn

#endif // VELMORN64_FOUNDATION_BOUNDARY_H
