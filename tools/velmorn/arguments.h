// What the words of the command line have to look like.
#ifndef VELMORN64_TOOLS_ARGUMENTS_H
#define VELMORN64_TOOLS_ARGUMENTS_H

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace velmorn::tool {

// Reads "1,-2.5,3": so many finite numbers in single precision, nothing besides. Nothing when the
// text has another form.
std::optional<std::vector<float>> parseNumbers(const std::string& text, std::size_t number);

// Checks for options; each says what is wanted. The second text stands in the help.
CLI::Validator isBoard();                                                    // WxH
CLI::Validator isLength();                                                   // LENGTH, above 0
CLI::Validator isNumberList(std::size_t number, const std::string& meaning); // such as X,Y,Z

// The option --board and --square, both required, as texts for parseBoard and usableSquare.
void addBoardOptions(CLI::App& command, std::string& board, double& square);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_ARGUMENTS_H
