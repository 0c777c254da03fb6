// The model's fit to drawn crossings.
#include "brantis64/corner_model.h"

#include <gtest/gtest.h>

#include "providers/brantis64/drawn_corner.h"

namespace velmorn::brantis {
namespace {

CornerTask taskFor(const DrawnCorner& corner, cv::Point2d start) {
  CornerTask task;
  task.frame = corner.frame();
  task.frame.pixel = start;
  task.whiteLowerRight = corner.whiteLowerRight;
  task.blur = corner.blur;
  task.radius = 12;
  task.tolerance = 1e-3;
  return task;
}

CornerFit fitOf(const DrawnCorner& corner, const CornerTask& task) {
  CornerFit fit;
  EXPECT_TRUE(CornerFitter(draw(corner)).fit(task, fit));
  return fit;
}

TEST(CornerFitter, FindsThePlaceAtEveryTurn) {
  for (int turn = 0; turn < 360; turn += 15)
    for (const bool white : {false, true}) {
      DrawnCorner corner;
      corner.place = {20.31, 19.77};
      corner.turn = turn;
      corner.whiteLowerRight = white;
      const CornerFit fit = fitOf(corner, taskFor(corner, {20.9, 19.2}));
      EXPECT_NEAR(cv::norm(fit.pixel - corner.place), 0, 0.01) << turn;
      EXPECT_NEAR(fit.contrast, 190, 2);
      EXPECT_GT(fit.correlation, 0.999);
      EXPECT_LT(fit.deviation, 0.02);
    }
}

TEST(CornerFitter, FindsTheTurnAndTheLightToo) {
  DrawnCorner corner;
  corner.place = {20.4, 20.2};
  corner.turn = 8;
  corner.light = 1.5;
  CornerTask task = taskFor(corner, {20, 20});
  DrawnCorner straight;
  task.frame.columnStep = straight.frame().columnStep;
  task.frame.rowStep = straight.frame().rowStep;
  EXPECT_NEAR(cv::norm(fitOf(corner, task).pixel - corner.place), 0, 0.02);
}

TEST(CornerFitter, FindsTheBlur) {
  for (const double blur : {0.7, 1.0, 1.6, 2.2}) {
    DrawnCorner corner;
    corner.turn = 20;
    corner.blur = blur;
    CornerTask task = taskFor(corner, {20.2, 20.2});
    task.blur = 1;
    task.fitsBlur = true;
    EXPECT_NEAR(fitOf(corner, task).blur, blur, 0.03);
  }
}

TEST(CornerFitter, FollowsABentLine) {
  DrawnCorner corner;
  corner.place = {20.3, 20.1};
  corner.bend = 0.002;
  CornerTask task = taskFor(corner, {20, 20});
  const double without = cv::norm(fitOf(corner, task).pixel - corner.place);
  task.rowLineBend = 0.002;
  const double with = cv::norm(fitOf(corner, task).pixel - corner.place);
  EXPECT_GT(without, 0.05);
  EXPECT_LT(with, 0.01);
}

TEST(CornerFitter, SeesTheWrongPolarity) {
  DrawnCorner corner;
  CornerTask task = taskFor(corner, {20, 20});
  task.whiteLowerRight = false;
  const CornerFit fit = fitOf(corner, task);
  EXPECT_LT(fit.contrast, 0);
  EXPECT_LT(fit.correlation, 0);
}

// Whatever stands in a code moves the corner by little.
TEST(CornerFitter, IsNotDrawnByTheCode) {
  DrawnCorner corner;
  corner.place = {20.3, 20.4};
  corner.square = 32;
  cv::Mat1b image = draw(corner);
  image(cv::Rect(25, 25, 16, 2)).setTo(30);
  image(cv::Rect(25, 25, 2, 16)).setTo(30);
  CornerFit fit;
  ASSERT_TRUE(CornerFitter(image).fit(taskFor(corner, {20, 20}), fit));
  EXPECT_NEAR(cv::norm(fit.pixel - corner.place), 0, 0.02);
}

TEST(CornerFitter, WorksWithOneSideOutsideTheImage) {
  DrawnCorner corner;
  corner.place = {4.3, 20.4};
  corner.turn = 10;
  EXPECT_NEAR(cv::norm(fitOf(corner, taskFor(corner, {4, 20})).pixel - corner.place), 0, 0.02);
}

TEST(CornerFitter, RefusesWindowsOutsideTheImage) {
  const DrawnCorner corner;
  CornerFitter fitter(draw(corner));
  CornerFit fit;
  fit.blur = 7;
  EXPECT_FALSE(fitter.fit(taskFor(corner, {-40, 20}), fit));
  EXPECT_FALSE(fitter.fit(taskFor(corner, {20, 400}), fit));
  EXPECT_EQ(fit.blur, 7);
}

TEST(CornerFitter, FindsNothingOnAnEvenArea) {
  CornerFitter fitter(cv::Mat1b(41, 41, uchar{90}));
  CornerFit fit;
  if (fitter.fit(taskFor({}, {20, 20}), fit)) {
    EXPECT_LT(std::abs(fit.contrast), 1);
  }
}

} // namespace
} // namespace velmorn::brantis
