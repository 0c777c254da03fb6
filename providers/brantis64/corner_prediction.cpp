// Where a corner must be: a weighted homography of its neighbours.
#include "brantis64/corner_prediction.h"

#include <cmath>

#include <opencv2/core/hal/hal.hpp>

namespace velmorn::brantis {
namespace {

constexpr int kNearReach = 2; // squares
constexpr int kFarReach = 4;
constexpr std::size_t kEnoughNear = 8;

// Weight of "no perspective" against the samples: the depth changes by some hundredths from square
// to square, corners are known to some thousandths of a square.
constexpr double kPerspectiveRidge = 0.01;

// Of a corner's place, pixels; and what a lens may bend a grid line over one square, squares.
constexpr double kNoise = 0.1;
constexpr double kLensBend = 0.03;
constexpr double kTinyRidge = 1e-6;

// Below this share of the product of its diagonal a 3 x 3 matrix of samples counts as singular.
constexpr double kSingular = 1e-6;

std::vector<GridSample> neighbours(const CornerGrid& grid, GridPoint at, int reach) {
  std::vector<GridSample> samples;
  for (int dy = -reach; dy <= reach; ++dy)
    for (int dx = -reach; dx <= reach; ++dx) {
      const GridCorner* corner = dx == 0 && dy == 0 ? nullptr : grid.find(at + GridPoint{dx, dy});
      if (corner == nullptr) continue;
      const double distance2 = dx * dx + dy * dy;
      samples.push_back({static_cast<double>(dx), static_cast<double>(dy), corner->pixel,
                         1 / (distance2 * distance2)});
    }
  return samples;
}

// The samples' pixels are taken relative to their mean and in units of their spread.
struct PixelScale {
  cv::Point2d mean;
  double length = 1;
};

PixelScale pixelScale(const std::vector<GridSample>& samples) {
  PixelScale scale;
  for (const GridSample& s : samples) scale.mean += s.pixel;
  scale.mean *= 1 / static_cast<double>(samples.size());
  double sum = 0, squares = 0;
  for (const GridSample& s : samples) {
    sum += (s.pixel - scale.mean).dot(s.pixel - scale.mean);
    squares += s.column * s.column + s.row * s.row;
  }
  if (sum > 0 && squares > 0) scale.length = std::sqrt(sum / squares);
  return scale;
}

bool isSingular(const cv::Matx33d& m) {
  return !(cv::determinant(m) > kSingular * m(0, 0) * m(1, 1) * m(2, 2));
}

// Pixels from columns and rows.
struct Homography {
  cv::Vec3d x, y; // numerators' factors of column, row and 1
  cv::Vec2d w;    // denominator's factors of column and row
  cv::Point2d mean;
  double length = 1; // pixels

  cv::Point2d at(double u, double v) const {
    const double scale = length / (w[0] * u + w[1] * v + 1);
    return mean + scale * cv::Point2d(x[0] * u + x[1] * v + x[2], y[0] * u + y[1] * v + y[2]);
  }
};

// The unknowns of x (g u + h v + 1) = a u + b v + c and of the same for y: the two rows share only
// g and h, which come first, from the Schur complement.
bool fitHomography(const std::vector<GridSample>& samples, Homography& homography) {
  if (samples.size() < 3) return false;
  const PixelScale scale = pixelScale(samples);

  cv::Matx33d uu = cv::Matx33d::zeros();
  cv::Matx32d ux = cv::Matx32d::zeros(), uy = cv::Matx32d::zeros();
  cv::Matx22d d = cv::Matx22d::zeros();
  cv::Vec3d bx(0, 0, 0), by(0, 0, 0);
  cv::Vec2d bd(0, 0);
  double weightSum = 0;
  for (const GridSample& s : samples) {
    const cv::Point2d q = (s.pixel - scale.mean) * (1 / scale.length);
    const cv::Vec3d u(s.column, s.row, 1);
    const cv::Vec2d px(-s.column * q.x, -s.row * q.x), py(-s.column * q.y, -s.row * q.y);
    uu += s.weight * u * u.t();
    ux += s.weight * u * px.t();
    uy += s.weight * u * py.t();
    d += s.weight * (px * px.t() + py * py.t());
    bx += s.weight * q.x * u;
    by += s.weight * q.y * u;
    bd += s.weight * (q.x * px + q.y * py);
    weightSum += s.weight;
  }
  if (isSingular(uu)) return false;
  const cv::Matx33d inverse = uu.inv();
  const double ridge = kPerspectiveRidge * weightSum;
  const cv::Matx22d schur =
      d - ux.t() * inverse * ux - uy.t() * inverse * uy + cv::Matx22d(ridge, 0, 0, ridge);
  const cv::Vec2d gh = schur.inv() * (bd - ux.t() * (inverse * bx) - uy.t() * (inverse * by));
  const cv::Vec3d x = inverse * (bx - ux * gh), y = inverse * (by - uy * gh);

  homography = {x, y, gh, scale.mean, scale.length};
  return true;
}

// What a lens bends beyond the homography: a polynomial of second degree through the samples'
// residuals, its value at (0, 0). The terms of second degree are held back by what they may be at
// most, else they would follow the noise.
cv::Point2d lensCorrection(const std::vector<GridSample>& samples, const Homography& homography) {
  constexpr int kTerms = 6;
  const double noise = kNoise / (kLensBend * homography.length);
  cv::Matx<double, kTerms, kTerms> matrix;
  cv::Matx<double, kTerms, 2> right;
  for (const GridSample& s : samples) {
    const double u = s.column, v = s.row;
    const double terms[kTerms] = {1, u, v, u * u, u * v, v * v};
    const cv::Point2d residual = s.pixel - homography.at(u, v);
    for (int i = 0; i < kTerms; ++i) {
      for (int j = 0; j < kTerms; ++j) matrix(i, j) += s.weight * terms[i] * terms[j];
      right(i, 0) += s.weight * terms[i] * residual.x;
      right(i, 1) += s.weight * terms[i] * residual.y;
    }
  }
  for (int i = 0; i < kTerms; ++i) matrix(i, i) += i < 3 ? kTinyRidge : noise * noise;
  if (cv::hal::Cholesky64f(matrix.val, kTerms * sizeof(double), kTerms, right.val,
                           2 * sizeof(double), 2) == 0)
    return {0, 0};
  return {right(0, 0), right(0, 1)};
}

LocalFrame frameOf(const Homography& h) {
  LocalFrame frame;
  frame.pixel = h.at(0, 0);
  frame.columnStep = h.length * cv::Point2d(h.x[0] - h.w[0] * h.x[2], h.y[0] - h.w[0] * h.y[2]);
  frame.rowStep = h.length * cv::Point2d(h.x[1] - h.w[1] * h.x[2], h.y[1] - h.w[1] * h.y[2]);
  return frame;
}

} // namespace

bool frameFromSamples(const std::vector<GridSample>& samples, LocalFrame& frame) {
  Homography homography;
  if (!fitHomography(samples, homography)) return false;
  frame = frameOf(homography);
  return true;
}

bool predictCorner(const CornerGrid& grid, GridPoint at, LocalFrame& frame) {
  std::vector<GridSample> samples = neighbours(grid, at, kNearReach);
  if (samples.size() < kEnoughNear) samples = neighbours(grid, at, kFarReach);
  Homography homography;
  if (!fitHomography(samples, homography)) return false;
  frame = frameOf(homography);
  frame.pixel += lensCorrection(samples, homography);
  return true;
}

} // namespace velmorn::brantis
