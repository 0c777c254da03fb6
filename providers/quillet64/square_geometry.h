// Squares of a board in an image.
#ifndef VELMORN64_PROVIDERS_QUILLET64_SQUARE_GEOMETRY_H
#define VELMORN64_PROVIDERS_QUILLET64_SQUARE_GEOMETRY_H

#include <array>

#include <opencv2/core.hpp>

namespace velmorn::quillet {

// Corners of a square in the image, pixels, clockwise as seen. In the square's own frame they are
// (0, 0), (1, 0), (1, 1) and (0, 1), u to the right and v down.
using Quad = std::array<cv::Point2f, 4>;

// The projective map that takes the square's frame to the image. A quad that is no convex
// quadrilateral gives a map that is of no use, but never an error.
cv::Matx33d imageFromSquare(const Quad& quad);

cv::Point2d mapPoint(const cv::Matx33d& targetFromSource, const cv::Point2d& point);

// The same square with its frame turned so that corner `first` becomes (0, 0).
Quad turnedQuad(const Quad& quad, int first);

cv::Point2f centre(const Quad& quad);

// Length of the shortest and of the longest side, pixels.
float shortestSide(const Quad& quad);
float longestSide(const Quad& quad);

// Convex, clockwise, every corner's angle well away from 0 and 180 degrees.
bool isProperQuad(const Quad& quad);

// All corners inside the image and away from its border by at least so many pixels.
bool isInside(const Quad& quad, const cv::Size& imageSize, float border);

} // namespace velmorn::quillet

#endif // VELMORN64_PROVIDERS_QUILLET64_SQUARE_GEOMETRY_H
