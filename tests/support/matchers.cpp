// Differences of rigid transforms, and the matcher built on them.
#include "support/matchers.h"

#include <algorithm>
#include <cmath>
#include <ostream>

namespace velmorn {
namespace {

constexpr double kDegreesPerRadian = 180 / CV_PI;

cv::Matx33d rotationOf(const cv::Matx44d& transform) { return transform.get_minor<3, 3>(0, 0); }

cv::Vec3d translationOf(const cv::Matx44d& transform) {
  return {transform(0, 3), transform(1, 3), transform(2, 3)};
}

class ExtrinsicNear {
 public:
  using is_gtest_matcher = void;

  ExtrinsicNear(const cv::Matx44d& expected, double degrees, double length)
      : expected_(expected), degrees_(degrees), length_(length) {}

  bool MatchAndExplain(const cv::Matx44d& actual, std::ostream* out) const {
    const double degrees = rotationDegreesApart(actual, expected_);
    const double length = translationApart(actual, expected_);
    const bool rotationFits = degrees <= degrees_, translationFits = length <= length_;
    if (out != nullptr)
      *out << "whose rotation is " << degrees << " degrees off" << (rotationFits ? "" : " (FAILED)")
           << " and whose translation is " << length << " off"
           << (translationFits ? "" : " (FAILED)");
    return rotationFits && translationFits;
  }

  void DescribeTo(std::ostream* out) const {
    *out << "is within " << degrees_ << " degrees and " << length_ << " of\n" << expected_;
  }

  void DescribeNegationTo(std::ostream* out) const {
    *out << "is more than " << degrees_ << " degrees or " << length_ << " from\n" << expected_;
  }

 private:
  cv::Matx44d expected_;
  double degrees_, length_;
};

} // namespace

cv::Matx44d transformOf(const tagOzKCamExtrinsic& extrinsic) { return cv::Matx44d(extrinsic.data); }

cv::Matx44d transformOf(const cv::Matx33d& R, const cv::Vec3d& T) {
  return {R(0, 0), R(0, 1), R(0, 2), T[0], R(1, 0), R(1, 1), R(1, 2), T[1],
          R(2, 0), R(2, 1), R(2, 2), T[2], 0,       0,       0,       1};
}

cv::Matx44d transformOf(const cv::Mat& R, const cv::Mat& T) {
  return transformOf(cv::Matx33d(R), cv::Vec3d(T.at<double>(0), T.at<double>(1), T.at<double>(2)));
}

cv::Matx44d inverseOf(const cv::Matx44d& transform) {
  const cv::Matx33d R = rotationOf(transform).t();
  return transformOf(R, -(R * translationOf(transform)));
}

double translationLength(const cv::Matx44d& transform) {
  return cv::norm(translationOf(transform));
}

double rotationDegreesApart(const cv::Matx44d& a, const cv::Matx44d& b) {
  // From the sine as well as the cosine: the cosine alone cannot tell small angles apart.
  const cv::Matx33d aFromB = rotationOf(a) * rotationOf(b).t();
  const cv::Vec3d axis(aFromB(2, 1) - aFromB(1, 2), aFromB(0, 2) - aFromB(2, 0),
                       aFromB(1, 0) - aFromB(0, 1));
  return std::atan2(cv::norm(axis), cv::trace(aFromB) - 1) * kDegreesPerRadian;
}

double translationApart(const cv::Matx44d& a, const cv::Matx44d& b) {
  return cv::norm(translationOf(a) - translationOf(b));
}

testing::Matcher<const cv::Matx44d&> extrinsicNear(const cv::Matx44d& expected, double degrees,
                                                   double length) {
  return ExtrinsicNear(expected, degrees, length);
}

} // namespace velmorn
