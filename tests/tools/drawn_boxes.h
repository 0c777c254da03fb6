// The areas that a vector drawing fills.
#ifndef VELMORN64_TESTS_TOOLS_DRAWN_BOXES_H
#define VELMORN64_TESTS_TOOLS_DRAWN_BOXES_H

#include <string>
#include <vector>

#include "velmorn/board_sheet.h"

namespace velmorn::tool {

// What is filled with ink on the first page of a PDF file or in an SVG file, in millimetres from
// the upper left corner, in the order of drawing; without the letters. Throws for a file that has
// another form than the printer's.
std::vector<InkBox> boxesOfPdf(const std::string& file);
std::vector<InkBox> boxesOfSvg(const std::string& file);

// The sizes that the files give their pages, millimetres.
cv::Size2d pageOfPdf(const std::string& file);
cv::Size2d pageOfSvg(const std::string& file);

// The boxes as a picture, black on white.
cv::Mat_<uchar> pictureOf(const std::vector<InkBox>& boxes, const cv::Size2d& page,
                          double pixelsPerMillimetre);

} // namespace velmorn::tool

#endif // VELMORN64_TESTS_TOOLS_DRAWN_BOXES_H
