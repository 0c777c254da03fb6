// How the modules of a code make up the pixels that show it.
#include "quillet64/blurred_code.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "quillet64/module_sampling.h"

namespace velmorn::quillet {
namespace {

constexpr int kPartsPerModule = 3; // and direction, each as a Gaussian spot
constexpr double kReach = 3;       // sigmas
constexpr double kInnerRim = 0.3;  // pixels of the square's sides that are left out
constexpr float kMinWeight = 1e-4F;

cv::Rect boundingPixels(const Quad& quad, const cv::Size& size) {
  const auto [left, right] = std::minmax({quad[0].x, quad[1].x, quad[2].x, quad[3].x});
  const auto [top, bottom] = std::minmax({quad[0].y, quad[1].y, quad[2].y, quad[3].y});
  const cv::Point first(static_cast<int>(std::floor(left)), static_cast<int>(std::floor(top)));
  const cv::Point last(static_cast<int>(std::ceil(right)), static_cast<int>(std::ceil(bottom)));
  return cv::Rect(first, last + cv::Point(1, 1)) & cv::Rect({0, 0}, size);
}

// Distances of a point from the square's sides, pixels, positive inside.
std::array<double, 4> sideDistances(const Quad& quad, const cv::Point2d& p) {
  std::array<double, 4> distances{};
  for (std::size_t k = 0; k < 4; ++k) {
    const cv::Point2d from = quad[k], along = cv::Point2d(quad[(k + 1) % 4]) - from;
    distances[k] = along.cross(p - from) / std::max(cv::norm(along), 1e-9);
  }
  return distances;
}

double blurredStep(double distance, double sigma) {
  return 0.5 * std::erfc(distance / (sigma * std::sqrt(2.0)));
}

// Across one pair of sides it is black, across both, at the corners, white again.
double spilledIn(const std::array<double, 4>& distances, double sigma) {
  const double a = blurredStep(distances[0], sigma) + blurredStep(distances[2], sigma);
  const double b = blurredStep(distances[1], sigma) + blurredStep(distances[3], sigma);
  return a * (1 - b) + b * (1 - a);
}

class Builder {
 public:
  Builder(const cv::Mat& grey, const Quad& quad, const SquareLook& look, double sigma)
      : map_(imageFromSquare(quad)),
        sigma_(sigma),
        window_(boundingPixels(quad, grey.size())),
        pixelNumber_(window_.size(), -1) {
    const cv::Matx33d squareFromImage = map_.inv();
    for (int y = 0; y < window_.height; ++y)
      for (int x = 0; x < window_.width; ++x) {
        const cv::Point pixel(window_.x + x, window_.y + y);
        const auto distances = sideDistances(quad, pixel);
        if (*std::min_element(distances.begin(), distances.end()) < kInnerRim) continue;
        pixelNumber_(y, x) = static_cast<int>(code_.seen.size());
        const double level = static_cast<double>(grey.at<uchar>(pixel));
        code_.seen.push_back(
            static_cast<float>(look.darkness(level, mapPoint(squareFromImage, pixel))));
        code_.known.push_back(static_cast<float>(spilledIn(distances, sigma)));
      }
  }

  BlurredCode build(int modules) {
    code_.modules = modules;
    for (int row = 0; row < modules; ++row)
      for (int column = 0; column < modules; ++column) addModule(column, row);
    return std::move(code_);
  }

 private:
  void addModule(int column, int row) {
    const cv::Point2d corner = place(column, row), right = place(column + 1, row);
    const cv::Point2d below = place(column, row + 1), opposite = place(column + 1, row + 1);
    const double area = std::abs((opposite - corner).cross(below - right)) / 2;
    const double reach =
        kReach * sigma_ + std::max(cv::norm(opposite - corner), cv::norm(below - right)) / 2;
    const cv::Point2d middle = place(column + 0.5, row + 0.5);
    const cv::Point2d origin = window_.tl();
    const cv::Point2d from = middle - origin - cv::Point2d(reach, reach);
    const cv::Point2d to = middle - origin + cv::Point2d(reach, reach);
    const cv::Rect around = cv::Rect(cv::Point(static_cast<int>(std::ceil(from.x)),
                                               static_cast<int>(std::ceil(from.y))),
                                     cv::Point(static_cast<int>(std::floor(to.x)) + 1,
                                               static_cast<int>(std::floor(to.y)) + 1)) &
                            cv::Rect({0, 0}, window_.size());

    cv::Mat_<float> weights(around.size(), 0.0F);
    for (int j = 0; j < kPartsPerModule; ++j)
      for (int i = 0; i < kPartsPerModule; ++i) {
        const cv::Point2d spot =
            place(column + (i + 0.5) / kPartsPerModule, row + (j + 0.5) / kPartsPerModule);
        addSpot(weights, spot - origin - cv::Point2d(around.tl()),
                area / (kPartsPerModule * kPartsPerModule));
      }
    code_.shares.push_back(sharesFrom(weights, around));
  }

  cv::Point2d place(double column, double row) const {
    return mapPoint(map_, inSquare(code_.modules, column, row));
  }

  // A Gaussian spot that adds up to `mass`.
  void addSpot(cv::Mat_<float>& weights, const cv::Point2d& spot, double mass) {
    const double height = mass / (2 * CV_PI * sigma_ * sigma_);
    const double steepness = -0.5 / (sigma_ * sigma_);
    across_.resize(static_cast<std::size_t>(weights.cols));
    for (int x = 0; x < weights.cols; ++x)
      across_[static_cast<std::size_t>(x)] =
          static_cast<float>(std::exp(steepness * (x - spot.x) * (x - spot.x)));
    for (int y = 0; y < weights.rows; ++y) {
      const auto down =
          static_cast<float>(height * std::exp(steepness * (y - spot.y) * (y - spot.y)));
      float* row = weights.ptr<float>(y);
      for (int x = 0; x < weights.cols; ++x) row[x] += down * across_[static_cast<std::size_t>(x)];
    }
  }

  std::vector<Share> sharesFrom(const cv::Mat_<float>& weights, const cv::Rect& around) const {
    std::vector<Share> shares;
    for (int y = 0; y < weights.rows; ++y)
      for (int x = 0; x < weights.cols; ++x) {
        const int pixel = pixelNumber_(around.y + y, around.x + x);
        if (pixel >= 0 && weights(y, x) >= kMinWeight) shares.push_back({pixel, weights(y, x)});
      }
    return shares;
  }

  cv::Matx33d map_;
  double sigma_;
  cv::Rect window_;
  cv::Mat_<int> pixelNumber_; // in the window; -1 for pixels that are not used
  BlurredCode code_;
  std::vector<float> across_;
};

} // namespace

BlurredCode blurredCode(const cv::Mat& grey, const Quad& quad, const SquareLook& look,
                        double blurSigma, int modules) {
  return Builder(grey, quad, look, blurSigma).build(modules);
}

} // namespace velmorn::quillet
