// The exact place of a crossing: a model of the blurred picture fitted to the pixels around it.
//
// The model is a product of two blurred edges, each along a slightly bent line, on a plane of
// light, with one grey for either code. What the codes' modules do to a pixel is not modelled, so
// pixels weigh the less the more of a code they see.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_CORNER_MODEL_H
#define VELMORN64_PROVIDERS_BRANTIS64_CORNER_MODEL_H

#include <array>
#include <vector>

#include "brantis64/board_grid.h"

namespace velmorn::brantis {

// How far the pattern around a crossing is known to go on, squares.
struct WindowReach {
  double left = 0.4;
  double right = 0.4;
  double up = 0.4;
  double down = 0.4;
};

struct CornerTask {
  LocalFrame frame;             // where the crossing is thought to be
  bool whiteLowerRight = false; // the pattern's polarity
  double blur = 1;              // pixels (sigma)
  bool fitsBlur = false;        // whether the blur is an unknown too
  double contrast = 200;        // a start, grey levels
  double radius = 7;            // of the window, pixels
  WindowReach reach;
  double columnLineBend = 0; // half the curvature, 1 / pixel, towards the next column
  double rowLineBend = 0;    // the same towards the next row
  double tolerance = 0.02;   // stops when a step is smaller, pixels
};

struct CornerFit {
  cv::Point2d pixel;
  double contrast = 0;    // grey levels from black to white; negative for the wrong polarity
  double correlation = 0; // of the checker part with its model, -1 to 1
  double deviation = 0;   // standard deviation of the place to be expected, pixels
  double blur = 0;        // pixels
};

class CornerFitter {
 public:
  // The image stays the caller's and is used by every fit.
  explicit CornerFitter(const cv::Mat1b& grey);

  // Returns false where the window holds too few pixels or the fit runs away.
  bool fit(const CornerTask& task, CornerFit& result);

 private:
  enum Unknown {
    kRowLineShift, // of the line between two rows, pixels
    kRowLineTurn,  // radians
    kColumnLineShift,
    kColumnLineTurn,
    kContrast, // half of it, signed by the polarity
    kLevel,
    kLightX, // grey levels per radius
    kLightY,
    kFirstCode, // grey levels against the paper
    kSecondCode,
    kBlur,
    kUnknowns
  };

  struct Line {
    cv::Point2d normal; // unit, towards the next row or column
    cv::Point2d along;  // unit
    double bend = 0;
  };
  struct Model {
    Line rowLine, columnLine;
    std::array<double, kUnknowns> value{};
  };

  // Pixels are kept in blocks, so that the compiler can do a block's pixels side by side.
  static constexpr std::size_t kLanes = 16;
  using Lanes = std::array<float, kLanes>;
  struct PixelBlock {
    Lanes x{}, y{}; // pixels from the crossing's supposed place
    Lanes grey{}, weight{}, firstCode{}, secondCode{};
  };
  struct EquationBlock {
    std::array<Lanes, kUnknowns> derivative{}, weighted{};
    Lanes residual{};
  };

  Model startModel(const CornerTask& task) const;
  bool collectWindow(const CornerTask& task);
  void weighCodes(const CornerTask& task, std::size_t count);
  void linearise(const Model& model, double radius);
  bool solveStep(int unknowns, std::array<double, kUnknowns>& step);
  void judge(const Model& model, int unknowns, bool whiteLowerRight, CornerFit& result) const;

  cv::Mat1b grey_;
  std::vector<PixelBlock> pixels_; // the last one filled up with pixels of no weight
  std::vector<EquationBlock> equations_;
  std::array<double, kUnknowns * kUnknowns> normal_{};
  std::array<double, kUnknowns> gradient_{};
};

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_CORNER_MODEL_H
