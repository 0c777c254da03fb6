// Values of simulation jobs, within their limits.
#ifndef VELMORN64_TOOLS_SIMULATE_VALUES_H
#define VELMORN64_TOOLS_SIMULATE_VALUES_H

#include <string>

#include "velmorn/json_object.h"

namespace velmorn::tool {

// The number of the key, or the default when the key is not there. Each throws ToolError for a
// number that is not within the limits.
double numberWithin(const JsonObject& object, const std::string& key, double low, double high,
                    double defaultValue);
int wholeNumberWithin(const JsonObject& object, const std::string& key, int low, int high,
                      int defaultValue);

// A length above 0 and at most `longest`.
double lengthUpTo(const JsonObject& object, const std::string& key, double longest,
                  double defaultValue);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SIMULATE_VALUES_H
