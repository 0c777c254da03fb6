// What the words of the command line have to look like.
#ifndef VELMORN64_TOOLS_ARGUMENTS_H
#define VELMORN64_TOOLS_ARGUMENTS_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <opencv2/core.hpp>

#include "velmorn64.h"

namespace velmorn::tool {

// Reads "1,-2.5,3": so many finite numbers in single precision, nothing besides. Nothing when the
// text has another form.
std::optional<std::vector<float>> parseNumbers(const std::string& text, std::size_t number);

// Reads "x1,y1,x2,y2" with x1 below x2 and y1 below y2, and "640x480", each side 1 to 65535.
// Nothing when the text has another form.
std::optional<tagOzKRect2Df32> parseRegion(const std::string& text);
std::optional<cv::Size> parseImageSize(const std::string& text);

// Checks for options; each says what is wanted. The second text stands in the help.
CLI::Validator isBoard();                                                    // WxH
CLI::Validator isLength();                                                   // LENGTH, above 0
CLI::Validator isNumberList(std::size_t number, const std::string& meaning); // such as X,Y,Z

CLI::Validator isRegion();                                               // X1,Y1,X2,Y2
CLI::Validator isImageSize();                                            // WxH
CLI::Validator hasExtension(const std::vector<std::string>& extensions); // of a file to write

// The option --board and --square, both required, as texts for parseBoard and usableSquare.
void addBoardOptions(CLI::App& command, std::string& board, double& square);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_ARGUMENTS_H
