// Modules that the blur has run together: box-constrained least squares, then flips.
#include "quillet64/module_deconvolution.h"

#include <algorithm>
#include <array>

#include "quillet64/symbol_decoding.h"

namespace velmorn::quillet {
namespace {

constexpr float kRegularisation = 0.001F;
constexpr int kRounds = 5;         // each with a new white level
constexpr int kPassesPerRound = 8; // over all modules
constexpr int kFlipPasses = 6;
constexpr float kMinGain = 1e-4F; // that a flip has to bring

class Estimate {
 public:
  explicit Estimate(const BlurredCode& code)
      : code_(code),
        modules_(code.shares.size(), 0.5F),
        isFree_(code.shares.size(), 1),
        power_(code.shares.size(), 0),
        rest_(code.seen.size(), 0) {
    for (std::size_t m = 0; m < modules_.size(); ++m) {
      const int row = rowOf(m), column = columnOf(m);
      if (isFinder(code.modules, row, column)) {
        isFree_[m] = 0;
        modules_[m] = isFinderDark(code.modules, row, column) ? 1.0F : 0.0F;
      }
      for (const Share& share : code.shares[m]) power_[m] += share.weight * share.weight;
    }
    subtractModules();
  }

  // Each module in turn to where it fits best, the others as they are.
  void relax() {
    for (std::size_t m = 0; m < modules_.size(); ++m) {
      if (isFree_[m] == 0) continue;
      const float pull = correlation(m) - kRegularisation * (modules_[m] - 0.5F);
      const float best = modules_[m] + pull / (power_[m] + kRegularisation);
      shift(m, std::clamp(best, 0.0F, 1.0F) - modules_[m]);
    }
  }

  // The white level that agrees best with the modules: the margin that it was measured at is narrow
  // and takes in dark from both sides.
  void fitWhite() {
    float product = 0, square = 0;
    for (std::size_t p = 0; p < rest_.size(); ++p) {
      const float lightness = 1 - code_.seen[p];
      const float modelled = 1 - (darkness(p) - rest_[p]);
      product += lightness * modelled;
      square += lightness * lightness;
    }
    if (square > 0) whiteScale_ = std::clamp(product / square, 0.7F, 1.1F);
    subtractModules();
  }

  void round() {
    for (std::size_t m = 0; m < modules_.size(); ++m)
      modules_[m] = modules_[m] > 0.5F ? 1.0F : 0.0F;
    subtractModules();
  }

  // Whether any flip helped.
  bool flipAll() {
    bool flipped = false;
    for (std::size_t m = 0; m < modules_.size(); ++m)
      if (isFree_[m] != 0) flipped = flipOne(m) || flipPair(m) || flipped;
    return flipped;
  }

  cv::Mat_<uchar> dark() const {
    cv::Mat_<uchar> result(code_.modules, code_.modules);
    for (std::size_t m = 0; m < modules_.size(); ++m)
      result(rowOf(m), columnOf(m)) = modules_[m] > 0.5F ? 1 : 0;
    return result;
  }

 private:
  int rowOf(std::size_t m) const { return static_cast<int>(m) / code_.modules; }
  int columnOf(std::size_t m) const { return static_cast<int>(m) % code_.modules; }

  float darkness(std::size_t pixel) const { return 1 - whiteScale_ * (1 - code_.seen[pixel]); }

  // What the modules leave of the pixels.
  void subtractModules() {
    for (std::size_t p = 0; p < rest_.size(); ++p) rest_[p] = darkness(p) - code_.known[p];
    for (std::size_t m = 0; m < modules_.size(); ++m)
      for (const Share& share : code_.shares[m])
        rest_[static_cast<std::size_t>(share.pixel)] -= share.weight * modules_[m];
  }

  float correlation(std::size_t m) const {
    float sum = 0;
    for (const Share& share : code_.shares[m])
      sum += share.weight * rest_[static_cast<std::size_t>(share.pixel)];
    return sum;
  }

  void shift(std::size_t m, float by) {
    if (by == 0) return;
    modules_[m] += by;
    for (const Share& share : code_.shares[m])
      rest_[static_cast<std::size_t>(share.pixel)] -= share.weight * by;
  }

  float flipStep(std::size_t m) const { return modules_[m] > 0.5F ? -1.0F : 1.0F; }

  // How much the squared rest shrinks by flipping one module.
  float flipGain(std::size_t m) const { return 2 * flipStep(m) * correlation(m) - power_[m]; }

  bool flipOne(std::size_t m) {
    if (flipGain(m) < kMinGain) return false;
    shift(m, flipStep(m));
    return true;
  }

  // With a neighbour: blurred, two modules look much the same when they change places.
  bool flipPair(std::size_t m) {
    static constexpr std::array<std::array<int, 2>, 4> kNeighbours = {
        {{0, 1}, {1, 0}, {1, 1}, {1, -1}}};
    const float ownGain = flipGain(m);
    if (ownGain < -power_[m]) return false; // far from it: no neighbour makes up for that
    shift(m, flipStep(m));
    for (const auto& step : kNeighbours) {
      const int row = rowOf(m) + step[0], column = columnOf(m) + step[1];
      const auto other = static_cast<std::size_t>(row * code_.modules + column);
      if (isFree_[other] == 0 || ownGain + flipGain(other) < kMinGain) continue;
      shift(other, flipStep(other));
      return true;
    }
    shift(m, flipStep(m));
    return false;
  }

  const BlurredCode& code_;
  std::vector<float> modules_; // darkness
  std::vector<char> isFree_;   // not of the borders
  std::vector<float> power_;   // sum of the squared weights
  std::vector<float> rest_;
  float whiteScale_ = 1;
};

} // namespace

cv::Mat_<uchar> deconvolvedModules(const BlurredCode& code) {
  Estimate estimate(code);
  for (int round = 0; round < kRounds; ++round) {
    for (int pass = 0; pass < kPassesPerRound; ++pass) estimate.relax();
    estimate.fitWhite();
  }
  estimate.round();
  for (int pass = 0; pass < kFlipPasses && estimate.flipAll(); ++pass) {
  }
  return estimate.dark();
}

} // namespace velmorn::quillet
