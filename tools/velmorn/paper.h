// Lengths and sheets of paper as the user writes them.
#ifndef VELMORN64_TOOLS_PAPER_H
#define VELMORN64_TOOLS_PAPER_H

#include <optional>
#include <string>

#include <opencv2/core.hpp>

namespace velmorn::tool {

// Reads "20", "20mm", "2 cm", "0.02m" or "1in" in millimetres: a number above 0. Nothing when the
// text has another form.
std::optional<double> parseMillimetres(const std::string& text);

// The shortest text of a length or number, without an exponent: "20", "12.5".
std::string shortText(double number);

// "297x210 mm"
std::string sizeInMillimetres(const cv::Size2d& size);

struct Paper {
  std::string name;
  cv::Size2d size; // mm, as named; empty for a page that is made to fit

  bool isMadeToFit() const { return size.empty(); }
};

// Reads "a4" to "a0", "letter", "fit", "300x200" (millimetres) or "12x18in". Nothing when the text
// has another form.
std::optional<Paper> parsePaper(const std::string& text);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_PAPER_H
