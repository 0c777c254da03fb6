// Guards the compiler flags that keep the promised roundings.
#include <gtest/gtest.h>

namespace {

// The way of the centroids: a mean in double, rounded to float, widened again. Two neighbouring
// values are where g++ 12.2's straight-line vectoriser drops the rounding.
void roundPair(const double* mean, double* rounded) {
  const float x = static_cast<float>(mean[0]);
  const float y = static_cast<float>(mean[1]);
  rounded[0] = static_cast<double>(x);
  rounded[1] = static_cast<double>(y);
}

TEST(Rounding, DoubleToFloatToDoubleOfNeighboursIsRounded) {
  void (*volatile hidden)(const double*, double*) = roundPair; // neither inlined nor evaluated
  const double mean[2] = {0.1, 1.0 / 3.0};
  double rounded[2] = {};
  hidden(mean, rounded);
  EXPECT_EQ(rounded[0], 0.100000001490116119384765625);
  EXPECT_EQ(rounded[1], 0.3333333432674407958984375);
}

// On a processor level that has a fused multiply-add, where the compiler could use it.
#if defined(__x86_64__)
[[gnu::target("fma")]]
#endif
double
multiplyAdd(double x, double y, double z) {
  return x * y + z;
}

TEST(Rounding, MultiplyAndAddAreRoundedSeparately) {
  double (*volatile hidden)(double, double, double) = multiplyAdd;
  const double x = 1.0 + 1.0 / 134217728.0; // 1 + 2^-27; its square needs one bit too many
  volatile double square = x;
  square = square * x;
  EXPECT_EQ(hidden(x, x, -square), 0.0);
}

} // namespace
