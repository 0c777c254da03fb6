// The exact place of a crossing: a model of the blurred picture fitted to the pixels around it.
//
// The model is a product of two blurred edges, each along a slightly bent line, on a plane of
// light, with one grey for either code. What the codes' modules do to a pixel is not modelled, so
// pixels weigh the less the more of a code they see.
#ifndef VELMORN64_PROVIDERS_BRANTIS64_CORNER_MODEL_H
#define VELMORN64_PROVIDERS_BRANTIS64_CORNER_MODEL_H

#include <vector>

#include "brantis64/corner_task.h"
#include "brantis64/corner_window.h"

namespace velmorn::brantis {

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

  using Unknowns = cv::Vec<double, kUnknowns>;

  struct Line {
    cv::Point2d normal; // unit, towards the next row or column
    cv::Point2d along;  // unit
    double bend = 0;
  };
  struct Model {
    Line rowLine, columnLine;
    Unknowns value;
  };

  struct EquationBlock {
    Lanes derivative[kUnknowns]{}, weighted[kUnknowns]{};
    Lanes residual{};
  };

  Model startModel(const CornerTask& task) const;
  static void turn(Line& line, double angle);
  void linearise(const Model& model, double radius, int unknowns);
  bool solveStep(int unknowns, Unknowns& step);
  void judge(const Model& model, int unknowns, bool whiteLowerRight, CornerFit& result) const;

  cv::Mat1b grey_;
  std::vector<PixelBlock> pixels_;
  std::vector<EquationBlock> equations_;
  cv::Matx<double, kUnknowns, kUnknowns> normal_;
  Unknowns gradient_;
};

} // namespace velmorn::brantis

#endif // VELMORN64_PROVIDERS_BRANTIS64_CORNER_MODEL_H
