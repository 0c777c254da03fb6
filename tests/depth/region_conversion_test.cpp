// Rectangles and points between pixels and a region.
#include <cmath>
#include <cstring>
#include <random>

#include <gtest/gtest.h>

#include "velmorn64.h"

namespace velmorn {
namespace {

constexpr tagOzKRect2Df32 kRegion{-100, 50, 300, 250}; // 400 by 200
constexpr int kWidth = 200, kHeight = 400;             // 2 by 0.5 units per pixel

void expectRect(const tagOzKRect2Df32& rect, float x1, float y1, float x2, float y2) {
  EXPECT_EQ(rect.x1, x1);
  EXPECT_EQ(rect.y1, y1);
  EXPECT_EQ(rect.x2, x2);
  EXPECT_EQ(rect.y2, y2);
}

TEST(RegionConversion, RectangleByHand) {
  tagOzKRect2Df32 out{};
  ASSERT_EQ(ozkCvtImgRect2MesureRegion(&kRegion, kWidth, kHeight, {10, 20, 30, 60}, &out), 0);
  expectRect(out, -80, 60, -40, 80);
  ASSERT_EQ(ozkCvtMesureRegion2ImgRect(&kRegion, kWidth, kHeight, {-80, 60, -40, 80}, &out), 0);
  expectRect(out, 10, 20, 30, 60);
}

TEST(RegionConversion, ReversedCornersAreExchanged) {
  tagOzKRect2Df32 out{};
  ozkCvtImgRect2MesureRegion(&kRegion, kWidth, kHeight, {30, 20, 10, 60}, &out);
  expectRect(out, -80, 60, -40, 80);
  ozkCvtImgRect2MesureRegion(&kRegion, kWidth, kHeight, {10, 60, 30, 20}, &out);
  expectRect(out, -80, 60, -40, 80);
  ozkCvtMesureRegion2ImgRect(&kRegion, kWidth, kHeight, {-40, 80, -80, 60}, &out);
  expectRect(out, 10, 20, 30, 60);
}

TEST(RegionConversion, OutMayBeTheRegion) {
  tagOzKRect2Df32 region = kRegion;
  ASSERT_EQ(ozkCvtImgRect2MesureRegion(&region, kWidth, kHeight, {10, 20, 30, 60}, &region), 0);
  expectRect(region, -80, 60, -40, 80);
}

TEST(RegionConversion, NothingIsClamped) {
  tagOzKRect2Df32 out{};
  ozkCvtMesureRegion2ImgRect(&kRegion, kWidth, kHeight, {-300, 0, 500, 300}, &out);
  expectRect(out, -100, -100, 300, 500);
}

TEST(RegionConversion, PointByHand) {
  tagOzKPoint2Df32 p{};
  ASSERT_EQ(ozkCvtImgP2CamPt(&kRegion, kWidth, kHeight, {10, 20}, &p), 0);
  EXPECT_EQ(p.x, -80);
  EXPECT_EQ(p.y, 60);
  tagOzKPoint3Df32 q{1, 2, 3};
  ASSERT_EQ(ozkCvtImgP2CamPt(&kRegion, kWidth, kHeight, {10, 20}, &q), 0);
  EXPECT_EQ(q.x, -80);
  EXPECT_EQ(q.y, 60);
  EXPECT_EQ(q.z, 0);
}

// 7 * 0.1 / 3 in single precision is not 7 * (0.1 / 3): points multiply first, rectangles divide
// first.
TEST(RegionConversion, OrderOfTheOperations) {
  const tagOzKRect2Df32 region{0, 0, 0.1F, 0.1F};
  tagOzKPoint2Df32 p{};
  ozkCvtImgP2CamPt(&region, 3, 3, {7, 7}, &p);
  const float product = 7.0F * 0.1F;
  EXPECT_EQ(p.x, product / 3.0F);
  tagOzKRect2Df32 out{};
  ozkCvtImgRect2MesureRegion(&region, 3, 3, {7, 7, 7, 7}, &out);
  const float scale = 0.1F / 3.0F;
  EXPECT_EQ(out.x1, scale * 7.0F);
  ASSERT_NE(p.x, out.x1);
}

TEST(RegionConversion, ThereAndBackAgain) {
  std::mt19937 random(5);
  std::uniform_real_distribution<float> place(-500, 500), extent(1, 900);
  for (int i = 0; i < 500; ++i) {
    tagOzKRect2Df32 region{place(random), place(random), 0, 0}, rect = region, there{}, back{};
    region.x2 = region.x1 + extent(random);
    region.y2 = region.y1 + extent(random);
    rect.x2 = rect.x1 + extent(random);
    rect.y2 = rect.y1 + extent(random);
    ozkCvtImgRect2MesureRegion(&region, 640, 480, rect, &there);
    ozkCvtMesureRegion2ImgRect(&region, 640, 480, there, &back);
    const float tolerance =
        1e-6F * 640 * 1500 / std::min(region.x2 - region.x1, region.y2 - region.y1);
    EXPECT_NEAR(back.x1, rect.x1, tolerance);
    EXPECT_NEAR(back.y2, rect.y2, tolerance);
    tagOzKPoint2Df32 p{};
    ozkCvtImgP2CamPt(&region, 640, 480, {rect.x1, rect.y1}, &p);
    EXPECT_NEAR(p.x, there.x1, 1e-3F);
    EXPECT_NEAR(p.y, there.y1, 1e-3F);
  }
}

TEST(RegionConversion, RegionWithoutWidthGivesInfinity) {
  const tagOzKRect2Df32 region{5, 0, 5, 10};
  tagOzKRect2Df32 out{};
  ASSERT_EQ(ozkCvtMesureRegion2ImgRect(&region, 10, 10, {1, 0, 9, 10}, &out), 0);
  EXPECT_TRUE(std::isinf(out.x1) && out.x1 < 0);
  EXPECT_TRUE(std::isinf(out.x2) && out.x2 > 0);
  EXPECT_EQ(out.y2, 10);
}

struct Call {
  const tagOzKRect2Df32* region;
  int width, height, status;
};

TEST(RegionConversion, ChecksInTheirOrder) {
  const Call calls[] = {{&kRegion, 0, 4, kOzkBadSize},
                        {&kRegion, 4, 0, kOzkBadSize},
                        {nullptr, 0, 4, kOzkBadSize},
                        {nullptr, 4, 4, kOzkNullPointer},
                        {&kRegion, -4, -4, kOzkSuccess}};
  for (const Call& call : calls) {
    tagOzKRect2Df32 rect{1, 2, 3, 4};
    tagOzKPoint2Df32 p{1, 2};
    tagOzKPoint3Df32 q{1, 2, 3};
    const auto [region, w, h, status] = call;
    EXPECT_EQ(ozkCvtImgRect2MesureRegion(region, w, h, {0, 0, 1, 1}, &rect), status);
    if (status != kOzkSuccess) expectRect(rect, 1, 2, 3, 4);
    rect = {1, 2, 3, 4};
    EXPECT_EQ(ozkCvtMesureRegion2ImgRect(region, w, h, {0, 0, 1, 1}, &rect), status);
    if (status != kOzkSuccess) expectRect(rect, 1, 2, 3, 4);
    EXPECT_EQ(ozkCvtImgP2CamPt(region, w, h, {0, 0}, &p), status);
    EXPECT_EQ(ozkCvtImgP2CamPt(region, w, h, {0, 0}, &q), status);
    if (status != kOzkSuccess) {
      EXPECT_EQ(p.x + p.y + q.x + q.y + q.z, 9);
    }
    tagOzKRect2Df32* noRect = nullptr;
    tagOzKPoint2Df32* noPoint = nullptr;
    tagOzKPoint3Df32* noPoint3 = nullptr;
    EXPECT_EQ(ozkCvtImgRect2MesureRegion(region, w, h, {}, noRect), kOzkNullPointer);
    EXPECT_EQ(ozkCvtMesureRegion2ImgRect(region, w, h, {}, noRect), kOzkNullPointer);
    EXPECT_EQ(ozkCvtImgP2CamPt(region, w, h, {}, noPoint), kOzkNullPointer);
    EXPECT_EQ(ozkCvtImgP2CamPt(region, w, h, {}, noPoint3), kOzkNullPointer);
  }
}

} // namespace
} // namespace velmorn
