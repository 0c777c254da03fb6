// Files of the report's page that are built into the tool.
#ifndef VELMORN64_TOOLS_EMBEDDED_TEXT_H
#define VELMORN64_TOOLS_EMBEDDED_TEXT_H

#include <string_view>

namespace velmorn::tool {

struct EmbeddedText {
  std::string_view text;
  std::string_view sha256; // of the text, 64 hexadecimal digits
};

// The page's own files, tools/velmorn/report.
EmbeddedText reportStyle();
EmbeddedText reportSceneScript();
EmbeddedText reportViewScript();
EmbeddedText reportPageScript();

// three.js, its control by mouse and touch, and the licence of both.
EmbeddedText threeScript();
EmbeddedText orbitScript();
EmbeddedText threeLicence();

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_EMBEDDED_TEXT_H
