// The rigid transform between two cameras that fits the board positions that both saw.
#include "velmorn/board_fit.h"

#include <cmath>

#include "velmorn/pose.h"

namespace velmorn::tool {
namespace {

struct Centroids {
  cv::Vec3d a, b;
  double count = 0;
};

Centroids centroidsOf(const std::vector<SeenBoard>& boards) {
  Centroids sums;
  for (const SeenBoard& board : boards)
    for (std::size_t i = 0; i < board.byA.size(); ++i) {
      sums.a += board.byA[i];
      sums.b += board.byB[i];
      ++sums.count;
    }
  if (sums.count > 0) {
    sums.a /= sums.count;
    sums.b /= sums.count;
  }
  return sums;
}

cv::Matx33d rotationFrom(const cv::Matx33d& covariance) {
  cv::Matx33d U, Vt;
  cv::Matx31d w;
  cv::SVD::compute(covariance, w, U, Vt);
  const double sign = cv::determinant(U * Vt) < 0 ? -1 : 1;
  return U * cv::Matx33d::diag({1, 1, sign}) * Vt;
}

double squaresAt(const SeenBoard& board, const cv::Matx44d& aFromB) {
  double sum = 0;
  for (std::size_t i = 0; i < board.byA.size(); ++i) {
    const cv::Vec3d difference = board.byA[i] - transformed(aFromB, board.byB[i]);
    sum += difference.dot(difference);
  }
  return sum;
}

} // namespace

BoardFit fitBoards(const std::vector<SeenBoard>& boards) {
  const Centroids centroids = centroidsOf(boards);
  BoardFit fit;
  if (centroids.count == 0) return fit;
  cv::Matx33d covariance = cv::Matx33d::zeros();
  for (const SeenBoard& board : boards)
    for (std::size_t i = 0; i < board.byA.size(); ++i)
      covariance += (board.byA[i] - centroids.a) * (board.byB[i] - centroids.b).t();
  const cv::Matx33d R = rotationFrom(covariance);
  fit.aFromB = poseFrom(cv::Mat(R), cv::Mat(cv::Vec3d(centroids.a - R * centroids.b)));
  double squares = 0;
  for (const SeenBoard& board : boards) squares += squaresAt(board, fit.aFromB);
  fit.apart = std::sqrt(squares / centroids.count);
  return fit;
}

double apartAt(const SeenBoard& board, const cv::Matx44d& aFromB) {
  if (board.byA.empty()) return 0;
  return std::sqrt(squaresAt(board, aFromB) / static_cast<double>(board.byA.size()));
}

} // namespace velmorn::tool
