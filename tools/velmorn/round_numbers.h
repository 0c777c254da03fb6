// Round numbers for axes and scale bars: 1, 2 or 5 times a power of ten.
#ifndef VELMORN64_TOOLS_ROUND_NUMBERS_H
#define VELMORN64_TOOLS_ROUND_NUMBERS_H

#include <string>
#include <vector>

namespace velmorn::tool {

// The smallest round number that is not below `least`, and the largest that is not above `most`.
// Both have to be finite and above 0.
double roundNumberAtLeast(double least);
double roundNumberAtMost(double most);

// The multiples of the step from `from` to `to`, both included.
std::vector<double> multiplesWithin(double from, double to, double step);

// The number with as many decimals as tell multiples of a round step apart.
std::string numberText(double value, double step);

// The number in up to seven digits, without zeros at the end.
std::string shortNumberText(double value);

// The number in three digits, or all digits before the point when there are more.
std::string roughNumberText(double value);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_ROUND_NUMBERS_H
