// The profile of a blurred edge.
#include "brantis64/edge_profile.h"

#include <gtest/gtest.h>

namespace velmorn::brantis {
namespace {

TEST(EdgeProfile, IsNearTheErrorFunction) {
  for (int i = -600; i <= 600; ++i) {
    const float t = static_cast<float>(i) / 100;
    EXPECT_NEAR(static_cast<double>(edgeProfile(t).value),
                std::erf(static_cast<double>(t) / std::sqrt(2.0)), 0.0016)
        << t;
  }
}

TEST(EdgeProfile, SlopeIsItsDerivative) {
  for (int i = -60; i <= 60; ++i) {
    const float t = static_cast<float>(i) / 20, h = 0.01F;
    const float slope = (edgeProfile(t + h).value - edgeProfile(t - h).value) / (2 * h);
    EXPECT_NEAR(static_cast<double>(edgeProfile(t).slope), static_cast<double>(slope), 1e-3) << t;
  }
}

TEST(EdgeProfile, IsLevelFarOut) {
  for (const float t : {3.2F, 5.0F, 40.0F}) {
    EXPECT_NEAR(static_cast<double>(edgeProfile(t).value), 1, 1e-4);
    EXPECT_NEAR(static_cast<double>(edgeProfile(-t).value), -1, 1e-4);
    EXPECT_NEAR(static_cast<double>(edgeProfile(t).slope), 0, 1e-4);
  }
}

} // namespace
} // namespace velmorn::brantis
