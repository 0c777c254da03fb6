#include "geometry/extrinsic_rows.h"

#include <gtest/gtest.h>

namespace velmorn {
namespace {

TEST(ExtrinsicRows, RowsAreWrittenAndReadInPlace) {
  tagOzKCamExtrinsic extrinsic = extrinsicWithoutRows();
  for (int r = 0; r < 3; ++r)
    setRow(extrinsic, r, {10.0 * r + 1, 10.0 * r + 2, 10.0 * r + 3}, 10.0 * r + 4);
  const double expected[16] = {1, 2, 3, 4, 11, 12, 13, 14, 21, 22, 23, 24, 0, 0, 0, 1};
  for (int k = 0; k < 16; ++k) EXPECT_EQ(extrinsic.data[k], expected[k]);
  EXPECT_EQ(rotationRow(extrinsic, 2).y, 22);
  EXPECT_EQ(translationOf(extrinsic).y, 14);
}

TEST(Vector3, ProductsByHand) {
  const Vector3d a{1, 2, 3}, b{-4, 5, 6};
  EXPECT_EQ(dot(a, b), 24);
  const Vector3d c = cross(a, b);
  EXPECT_EQ(c.x, -3);
  EXPECT_EQ(c.y, -18);
  EXPECT_EQ(c.z, 13);
}

TEST(Vector3, FloatsStayFloats) {
  const Vector3f a{16777216, 1, 1}, ones{1, 1, 1};
  EXPECT_EQ(dot(a, ones), 16777216.0F); // the ones are lost one by one
  EXPECT_EQ(dot(widened(a), widened(ones)), 16777218.0);
  EXPECT_EQ(narrowed({0.1, 0, 0}).x, 0.1F);
}

} // namespace
} // namespace velmorn
