// Values of simulation jobs, within their limits.
#include "velmorn/simulate_values.h"

#include "velmorn/round_numbers.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {

double numberWithin(const JsonObject& object, const std::string& key, double low, double high,
                    double defaultValue) {
  if (!object.has(key)) return defaultValue;
  const double value = object.number(key);
  if (value >= low && value <= high) return value;
  object.fail(inQuotes(key) + " has to be " + shortNumberText(low) + " to " +
              shortNumberText(high));
}

int wholeNumberWithin(const JsonObject& object, const std::string& key, int low, int high,
                      int defaultValue) {
  const int value = object.wholeNumber(key, defaultValue);
  if (value >= low && value <= high) return value;
  object.fail(inQuotes(key) + " has to be " + std::to_string(low) + " to " + std::to_string(high));
}

double lengthUpTo(const JsonObject& object, const std::string& key, double longest,
                  double defaultValue) {
  if (!object.has(key)) return defaultValue;
  const double value = object.number(key);
  if (value > 0 && value <= longest) return value;
  object.fail(inQuotes(key) + " has to be a length above 0, at most " + shortNumberText(longest));
}

} // namespace velmorn::tool
