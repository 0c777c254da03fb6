// The exact place of a crossing: Gauss-Newton on the model of the blurred picture.
#include "brantis64/corner_model.h"

#include <algorithm>
#include <cmath>

#include <opencv2/core/hal/hal.hpp>

#include "brantis64/edge_profile.h"

namespace velmorn::brantis {
namespace {

constexpr int kMaxIterations = 10;
constexpr double kMaxStep = 1.5;               // pixels
constexpr double kMaxTurn = 0.2;               // radians
constexpr double kMinBlur = 0.4, kMaxBlur = 4; // pixels

// Added to the diagonal, relative and absolute: keeps unknowns without pixels where they are. Small
// enough not to slow the others down.
constexpr double kRelativeRidge = 1e-5;
constexpr double kAbsoluteRidge = 1e-2;

cv::Point2d unit(const cv::Point2d& p) { return p * (1 / std::hypot(p.x, p.y)); }

// The normal of `along` on the side of `towards`.
cv::Point2d unitNormal(const cv::Point2d& along, const cv::Point2d& towards) {
  const cv::Point2d normal(-along.y, along.x);
  return normal.dot(towards) < 0 ? -normal : normal;
}

} // namespace

CornerFitter::CornerFitter(const cv::Mat1b& grey) : grey_(grey) {}

bool CornerFitter::fit(const CornerTask& task, CornerFit& result) {
  if (!collectWindow(grey_, task, pixels_)) return false;
  equations_.resize(pixels_.size());
  Model model = startModel(task);
  const int unknowns = task.fitsBlur ? kUnknowns : kBlur;
  for (int iteration = 0;; ++iteration) {
    linearise(model, task.radius, unknowns);
    Unknowns step;
    if (!solveStep(unknowns, step)) return false;
    const double largest =
        std::max(std::abs(step[kRowLineShift]), std::abs(step[kColumnLineShift]));
    if (!std::isfinite(largest)) return false;
    const double scale = std::min(
        {1.0, kMaxStep / largest,
         kMaxTurn / std::max(std::abs(step[kRowLineTurn]), std::abs(step[kColumnLineTurn]))});
    for (int i = 0; i < unknowns; ++i) model.value[i] += (i < kContrast ? scale : 1) * step[i];
    turn(model.rowLine, scale * step[kRowLineTurn]);
    turn(model.columnLine, scale * step[kColumnLineTurn]);
    model.value[kBlur] = std::clamp(model.value[kBlur], kMinBlur, kMaxBlur);
    if (std::abs(model.value[kRowLineShift]) > task.radius ||
        std::abs(model.value[kColumnLineShift]) > task.radius)
      return false;
    // The first step only finds the light, however good the start is.
    const bool isSettled = iteration > 0 && largest < task.tolerance;
    if (isSettled || iteration + 1 == kMaxIterations) break;
  }
  judge(model, unknowns, task.whiteLowerRight, result);
  result.pixel += task.frame.pixel;
  return std::isfinite(result.pixel.x) && std::isfinite(result.pixel.y);
}

// To the first order, as the step itself.
void CornerFitter::turn(Line& line, double angle) {
  line.normal = unit(line.normal + angle * line.along);
  line.along = unit(line.along - angle * line.normal);
}

CornerFitter::Model CornerFitter::startModel(const CornerTask& task) const {
  Model model;
  model.rowLine.along = unit(task.frame.columnStep);
  model.rowLine.normal = unitNormal(model.rowLine.along, task.frame.rowStep);
  model.rowLine.bend = task.rowLineBend;
  model.columnLine.along = unit(task.frame.rowStep);
  model.columnLine.normal = unitNormal(model.columnLine.along, task.frame.columnStep);
  model.columnLine.bend = task.columnLineBend;
  model.value[kContrast] = (task.whiteLowerRight ? 0.5 : -0.5) * task.contrast;
  model.value[kBlur] = task.blur;
  return model;
}

// Residuals and derivatives of every pixel. Where the edges do not meet at a right angle the
// product of their profiles needs a term more, of first order in the cosine of the angle between
// them.
void CornerFitter::linearise(const Model& model, double radius, int unknowns) {
  const auto f = [](double v) { return static_cast<float>(v); };
  const Line &row = model.rowLine, &column = model.columnLine;
  const double blur = model.value[kBlur];
  const float inverse = f(1 / blur), inverseRadius = f(1 / radius);
  const float nx1 = f(row.normal.x), ny1 = f(row.normal.y), ax1 = f(row.along.x),
              ay1 = f(row.along.y);
  const float nx2 = f(column.normal.x), ny2 = f(column.normal.y), ax2 = f(column.along.x),
              ay2 = f(column.along.y);
  const float shift1 = f(model.value[kRowLineShift]), shift2 = f(model.value[kColumnLineShift]);
  const float bend1 = f(row.bend), bend2 = f(column.bend);
  const float cosine = f(row.normal.dot(column.normal));
  const float contrast = f(model.value[kContrast]), level = f(model.value[kLevel]);
  const float lightX = f(model.value[kLightX]), lightY = f(model.value[kLightY]);
  const float code1 = f(model.value[kFirstCode]), code2 = f(model.value[kSecondCode]);

  for (std::size_t block = 0; block < pixels_.size(); ++block) {
    // A copy, which the results cannot overlap: the loops need no check for that.
    const PixelBlock pixels = pixels_[block];
    EquationBlock& equations = equations_[block];
    auto& d = equations.derivative;
    for (std::size_t k = 0; k < kLanes; ++k) {
      const float x = pixels.x[k], y = pixels.y[k];
      const float along1 = ax1 * x + ay1 * y, along2 = ax2 * x + ay2 * y;
      const float t1 = (nx1 * x + ny1 * y - shift1 - bend1 * along1 * along1) * inverse;
      const float t2 = (nx2 * x + ny2 * y - shift2 - bend2 * along2 * along2) * inverse;
      const EdgeProfile edge1 = edgeProfile(t1), edge2 = edgeProfile(t2);
      const float checker = edge1.value * edge2.value + cosine * edge1.slope * edge2.slope;
      const float across1 = contrast * inverse * edge1.slope * edge2.value;
      const float across2 = contrast * inverse * edge1.value * edge2.slope;
      d[kRowLineShift][k] = -across1;
      d[kRowLineTurn][k] = across1 * along1;
      d[kColumnLineShift][k] = -across2;
      d[kColumnLineTurn][k] = across2 * along2;
      d[kContrast][k] = checker;
      d[kLevel][k] = 1;
      d[kLightX][k] = x * inverseRadius;
      d[kLightY][k] = y * inverseRadius;
      d[kFirstCode][k] = pixels.firstCode[k];
      d[kSecondCode][k] = pixels.secondCode[k];
      d[kBlur][k] = -(t1 * across1 + t2 * across2);
      equations.residual[k] =
          pixels.grey[k] - (contrast * checker + level + (lightX * x + lightY * y) * inverseRadius +
                            code1 * pixels.firstCode[k] + code2 * pixels.secondCode[k]);
    }
    for (int i = 0; i < unknowns; ++i)
      for (std::size_t k = 0; k < kLanes; ++k)
        equations.weighted[i][k] = d[i][k] * pixels.weight[k];
  }
}

// The sums are kept in lanes of their own, as vectors add them up.
bool CornerFitter::solveStep(int unknowns, Unknowns& step) {
  const auto sumOf = [](const Lanes& lanes) {
    std::array<double, 4> sums{};
    for (std::size_t k = 0; k < kLanes; k += 4)
      for (std::size_t l = 0; l < 4; ++l) sums[l] += static_cast<double>(lanes[k + l]);
    return (sums[0] + sums[1]) + (sums[2] + sums[3]);
  };
  for (int i = 0; i < unknowns; ++i) {
    for (int j = 0; j <= i; ++j) {
      Lanes sums{};
      for (const EquationBlock& block : equations_)
        for (std::size_t k = 0; k < kLanes; ++k)
          sums[k] += block.weighted[i][k] * block.derivative[j][k];
      normal_(i, j) = normal_(j, i) = sumOf(sums);
    }
    Lanes sums{};
    for (const EquationBlock& block : equations_)
      for (std::size_t k = 0; k < kLanes; ++k) sums[k] += block.weighted[i][k] * block.residual[k];
    gradient_[i] = sumOf(sums);
    normal_(i, i) += kRelativeRidge * normal_(i, i) + kAbsoluteRidge;
  }
  auto factor = normal_;
  step = gradient_;
  return cv::hal::Cholesky64f(factor.val, kUnknowns * sizeof(double), unknowns, step.val,
                              sizeof(double), 1) != 0;
}

// Judged by the residuals before the last step, which was small.
void CornerFitter::judge(const Model& model, int unknowns, bool whiteLowerRight,
                         CornerFit& result) const {
  const double sign = whiteLowerRight ? 1 : -1;
  const double half = model.value[kContrast];
  double weights = 0, errors = 0, checkers = 0, seen = 0, products = 0;
  for (std::size_t block = 0; block < pixels_.size(); ++block)
    for (std::size_t k = 0; k < kLanes; ++k) {
      const double w = static_cast<double>(pixels_[block].weight[k]);
      const double error = static_cast<double>(equations_[block].residual[k]);
      const double checker = static_cast<double>(equations_[block].derivative[kContrast][k]);
      const double picture = error + half * checker; // without light and codes
      weights += w;
      errors += w * error * error;
      checkers += w * checker * checker;
      seen += w * picture * picture;
      products += w * picture * checker;
    }
  result.contrast = 2 * sign * half;
  result.correlation = sign * products / std::sqrt(std::max(checkers * seen, 1e-12));
  result.blur = model.value[kBlur];

  const cv::Matx22d normals(model.rowLine.normal.x, model.rowLine.normal.y,
                            model.columnLine.normal.x, model.columnLine.normal.y);
  const cv::Matx22d fromShifts = normals.inv();
  const cv::Vec2d place =
      fromShifts * cv::Vec2d(model.value[kRowLineShift], model.value[kColumnLineShift]);
  result.pixel = {place[0], place[1]};

  cv::Matx<double, kUnknowns, 2> columns;
  columns(kRowLineShift, 0) = 1;
  columns(kColumnLineShift, 1) = 1;
  auto factor = normal_;
  cv::hal::Cholesky64f(factor.val, kUnknowns * sizeof(double), unknowns, columns.val,
                       2 * sizeof(double), 2);
  const cv::Matx22d covariance(columns(kRowLineShift, 0), columns(kRowLineShift, 1),
                               columns(kColumnLineShift, 0), columns(kColumnLineShift, 1));
  const double variance = errors / std::max(1.0, weights - unknowns);
  result.deviation =
      std::sqrt(std::max(0.0, variance * cv::trace(fromShifts * covariance * fromShifts.t())));
}

} // namespace velmorn::brantis
