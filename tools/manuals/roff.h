// Text for manual pages.
#ifndef VELMORN64_TOOLS_MANUALS_ROFF_H
#define VELMORN64_TOOLS_MANUALS_ROFF_H

#include <string>

namespace velmorn::manuals {

// The text as roff shows it character by character: nothing in it is a request, an escape or a
// typographic quote, and a dash can be copied as an option's dash.
std::string roffText(const std::string& text);

std::string bold(const std::string& text);
std::string italic(const std::string& text);

// A help text's lines: those indented by two blanks stand as they are, the others are filled into
// paragraphs, which blank lines separate.
std::string roffParagraphs(const std::string& lines);

} // namespace velmorn::manuals

#endif // VELMORN64_TOOLS_MANUALS_ROFF_H
