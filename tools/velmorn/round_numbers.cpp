// Round numbers for axes and scale bars.
#include "velmorn/round_numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace velmorn::tool {
namespace {

constexpr double kTolerance = 1e-9; // relative: 5 * 0.2 counts as 1
constexpr double kLargestPlain = 1e9;
constexpr int kMostDecimals = 9;

double powerOfTenBelow(double value) { return std::pow(10.0, std::floor(std::log10(value))); }

std::string formatted(const char* format, int precision, double value) {
  char text[64];
  std::snprintf(text, sizeof(text), format, precision, value);
  return text;
}

} // namespace

double roundNumberAtLeast(double least) {
  const double power = powerOfTenBelow(least);
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= least * (1 - kTolerance)) return factor * power;
  }
  return 10 * power;
}

double roundNumberAtMost(double most) {
  const double power = powerOfTenBelow(most);
  for (const double factor : {10.0, 5.0, 2.0}) {
    if (factor * power <= most * (1 + kTolerance)) return factor * power;
  }
  return power;
}

std::vector<double> multiplesWithin(double from, double to, double step) {
  const double first = std::ceil(from / step - kTolerance);
  const double last = std::floor(to / step + kTolerance);
  std::vector<double> multiples;
  for (int i = 0; first + i <= last; ++i) multiples.push_back((first + i) * step);
  return multiples;
}

std::string numberText(double value, double step) {
  const int decimals = std::max(0, -static_cast<int>(std::floor(std::log10(step) + kTolerance)));
  if (std::abs(value) < step * kTolerance) return "0";
  if (std::abs(value) >= kLargestPlain || decimals > kMostDecimals) return shortNumberText(value);
  return formatted("%.*f", decimals, value);
}

std::string shortNumberText(double value) { return formatted("%.*g", 7, value + 0); }

std::string roughNumberText(double value) {
  constexpr int kDigits = 3;
  const bool isLarge = std::abs(value) >= std::pow(10.0, kDigits);
  return isLarge ? formatted("%.*f", 0, value) : formatted("%.*g", kDigits, value + 0);
}

} // namespace velmorn::tool
