// Names that the report's page and its style sheet share.
#ifndef VELMORN64_TOOLS_REPORT_STYLE_H
#define VELMORN64_TOOLS_REPORT_STYLE_H

#include <cstddef>
#include <string>

namespace velmorn::tool {

// Colours that are told apart also by people who see fewer of them; further cameras begin again.
constexpr std::size_t kCameraColours = 6;

// The class that gives a camera its colour, as the text colour.
inline std::string cameraClass(std::size_t camera) {
  return "camera-" + std::to_string(camera % kCameraColours);
}

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_REPORT_STYLE_H
