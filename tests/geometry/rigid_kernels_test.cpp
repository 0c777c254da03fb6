// Every vector form of the rigid fit's passes gives the plain form's bytes.
#include "geometry/rigid_kernels.h"

#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "geometry/point_clouds.h"

namespace velmorn {
namespace {

struct Form {
  const char* name;
  VectorLevel level;
};

// The forms that this machine can run; the plain one checks the comparison itself.
std::vector<Form> runnableForms() {
  std::vector<Form> forms{{"plain", VectorLevel::kNone}};
  if (supportedVectorLevel() >= VectorLevel::kAvx2) forms.push_back({"AVX2", VectorLevel::kAvx2});
  if (supportedVectorLevel() >= VectorLevel::kAvx512)
    forms.push_back({"AVX-512", VectorLevel::kAvx512});
  return forms;
}

// Everything the four passes write for one set of pairs.
struct Outputs {
  double sumA[3] = {1, 2, 3}, sumB[3] = {-4, 5, 6};
  double products4[4][9] = {{1, 2, 3, 4, 5, 6, 7, 8, 9}, {0.1}, {}, {-7}};
  double products2[2][9] = {{9, 8, 7, 6, 5, 4, 3, 2, 1}, {0.3}};
  double residual = 0;
};

Outputs runForm(const Form& form, const PointPairs& pairs, int n) {
  const RigidKernels& kernels = rigidKernels(form.level);
  const float ca[3] = {1.5F, -2.25F, 0.1F}, cb[3] = {3.3F, -20.7F, 499.9F};
  const double R[9] = {0.01, -0.99, 0.02, 0.98, 0.01, -0.03, 0.02, 0.04, 1.01};
  const double t[3] = {3.1, -19.9, 500.2};
  Outputs out;
  kernels.addPoints(pairs.a.data(), pairs.b.data(), n, out.sumA, out.sumB);
  kernels.addProducts4(pairs.a.data(), pairs.b.data(), n, ca, cb, out.products4);
  kernels.addProducts2(pairs.a.data(), pairs.b.data(), n, ca, cb, out.products2);
  out.residual =
      static_cast<double>(kernels.addResiduals(pairs.a.data(), pairs.b.data(), n, R, t, 0.7F));
  return out;
}

void expectSameBytes(const PointPairs& pairs, int n) {
  const Outputs plain = runForm({"plain", VectorLevel::kNone}, pairs, n);
  for (const Form& form : runnableForms()) {
    const Outputs other = runForm(form, pairs, n);
    EXPECT_EQ(std::memcmp(&plain, &other, sizeof plain), 0) << form.name << ", n = " << n;
  }
}

TEST(RigidKernels, EverySmallCountGivesThePlainBytes) {
  for (int n = 0; n <= 70; ++n) expectSameBytes(randomPairs(n, 1U + static_cast<unsigned>(n)), n);
}

TEST(RigidKernels, LargeCountsGiveThePlainBytes) {
  for (const int n : {999, 4096, 5461, 10007}) expectSameBytes(randomPairs(n, 7), n);
}

TEST(RigidKernels, ExtremeCoordinatesGiveThePlainBytes) {
  PointPairs pairs = randomPairs(37, 3, 1e30F, 1e20F);
  expectSameBytes(pairs, 37);
  pairs = randomPairs(37, 4, 1e-38F, 1e-40F);
  expectSameBytes(pairs, 37);
  pairs.a[5].y = std::numeric_limits<float>::infinity();
  expectSameBytes(pairs, 37);
}

TEST(RigidKernels, PlainSumsOfTwoPairsByHand) {
  const tagOzKPoint3Df32 a[2] = {{1, 2, 3}, {4, 5, 6}}, b[2] = {{7, 8, 9}, {10, 11, 12}};
  const float zero[3] = {};
  double sumA[3] = {}, sumB[3] = {}, products[2][9] = {};
  const RigidKernels& kernels = plainRigidKernels();
  kernels.addPoints(a, b, 2, sumA, sumB);
  kernels.addProducts2(a, b, 2, zero, zero, products);
  EXPECT_EQ(sumA[0], 5);
  EXPECT_EQ(sumA[2], 9);
  EXPECT_EQ(sumB[1], 19);
  EXPECT_EQ(products[0][1], 8);  // a0.x * b0.y
  EXPECT_EQ(products[1][3], 50); // a1.y * b1.x
  const double identity[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1}, shift[3] = {6, 6, 2};
  EXPECT_EQ(kernels.addResiduals(a, b, 2, identity, shift, 0.5F), 8.5F); // two lengths of 4
}

} // namespace
} // namespace velmorn
