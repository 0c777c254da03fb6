// How text from outside gets into an HTML page.
#ifndef VELMORN64_TOOLS_HTML_TEXT_H
#define VELMORN64_TOOLS_HTML_TEXT_H

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace velmorn::tool {

// The text for an element's content or an attribute in quotes, in HTML and SVG. Control characters
// become blanks, and bytes that are not UTF-8 replacement characters.
std::string htmlText(const std::string& text);

// The value for a <script type="application/json"> element: no "<" ends it early.
std::string jsonInScript(const nlohmann::ordered_json& value);

// The number with so many decimals, without a sign for 0; a dash for one that is not finite.
std::string htmlNumber(double value, int decimals);

// The text's first characters, with an ellipsis when it has more of them.
std::string shortenedText(const std::string& text, std::size_t mostCharacters);

// The bytes in base 64, as data addresses have them.
std::string base64Text(std::string_view bytes);

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_HTML_TEXT_H
