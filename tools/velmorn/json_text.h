// How the tool writes JSON.
#ifndef VELMORN64_TOOLS_JSON_TEXT_H
#define VELMORN64_TOOLS_JSON_TEXT_H

#include <string>

#include <nlohmann/json.hpp>
#include <opencv2/core.hpp>

namespace velmorn::tool {

// The matrix as a list of its four rows.
nlohmann::ordered_json rowsOf(const cv::Matx44d& pose);

// The text of a file: indented, a list of plain values on one line, a line end at the end. Text
// that is not UTF-8 is shown with replacement characters.
std::string fileText(const nlohmann::ordered_json& json);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_JSON_TEXT_H
