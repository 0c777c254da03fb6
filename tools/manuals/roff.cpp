// Text for manual pages.
#include "manuals/roff.h"

#include <sstream>

namespace velmorn::manuals {
namespace {

constexpr const char* kIndent = "  "; // of lines that stand as they are

std::string roffCharacter(char character) {
  switch (character) {
    case '\\':
      return "\\e";
    case '-':
      return "\\-";
    case '\'':
      return "\\(aq";
    case '`':
      return "\\(ga";
    case '^':
      return "\\(ha";
    case '~':
      return "\\(ti";
    case '"':
      return "\\(dq";
    default:
      return {character};
  }
}

bool isIndented(const std::string& line) { return line.compare(0, 2, kIndent) == 0; }

// What may come between two lines of different kinds.
enum class Lines { kNone, kFilled, kAsTheyAre };

std::string change(Lines from, Lines to) {
  std::string requests;
  if (from == Lines::kAsTheyAre && to != Lines::kAsTheyAre) requests += ".EE\n.RE\n";
  if (from == Lines::kAsTheyAre && to == Lines::kFilled) requests += ".PP\n";
  if (from == Lines::kFilled && to == Lines::kAsTheyAre) requests += ".PP\n";
  if (from != Lines::kAsTheyAre && to == Lines::kAsTheyAre) requests += ".RS 4\n.EX\n";
  return requests;
}

} // namespace

std::string roffText(const std::string& text) {
  std::string roff;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool startsLine = i == 0 || text[i - 1] == '\n';
    if (startsLine && text[i] == '.') roff += "\\&";
    roff += roffCharacter(text[i]);
  }
  return roff;
}

std::string bold(const std::string& text) { return "\\fB" + roffText(text) + "\\fR"; }

std::string italic(const std::string& text) { return "\\fI" + roffText(text) + "\\fR"; }

std::string roffParagraphs(const std::string& lines) {
  std::string roff;
  std::istringstream stream(lines);
  Lines kind = Lines::kNone;
  bool blankBefore = false;
  for (std::string line; std::getline(stream, line);) {
    if (line.empty()) {
      blankBefore = true;
      continue;
    }
    const Lines next = isIndented(line) ? Lines::kAsTheyAre : Lines::kFilled;
    roff += change(kind, next);
    if (blankBefore && kind == next) roff += next == Lines::kFilled ? ".PP\n" : "\n";
    roff += roffText(isIndented(line) ? line.substr(2) : line) + '\n';
    kind = next;
    blankBefore = false;
  }
  return roff + change(kind, Lines::kNone);
}

} // namespace velmorn::manuals
