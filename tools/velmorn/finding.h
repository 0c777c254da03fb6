// What a check of a result has to say.
#ifndef VELMORN64_TOOLS_FINDING_H
#define VELMORN64_TOOLS_FINDING_H

#include <string>
#include <vector>

namespace velmorn::tool {

enum class Weight {
  kCaution, // the result can be used; it could be better, or has not been confirmed
  kProblem, // the result is not to be trusted
};

struct Finding {
  Weight weight = Weight::kCaution;
  std::string text;   // what is wrong, with the cameras' names and the numbers
  std::string advice; // what to do about it
};

using Findings = std::vector<Finding>;

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_FINDING_H
