// The text of a data code, and the corners of its square.
#include "datacode/code_content.h"

#include <cstdio>

namespace velmorn {
namespace {

// Codes come from outside: the smallest number has a predecessor too.
int predecessor(int number) { return static_cast<int>(static_cast<unsigned>(number) - 1U); }

} // namespace

CodeContent parseCodeContent(const char* text) {
  CodeContent content;
  static_cast<void>(std::sscanf(text, "%d,%d,%f", &content.a, &content.b, &content.squareSize));
  return content;
}

CalibCornerSet seedFromCode(const CodeContent& code, const std::int32_t corners[8]) {
  const int left = predecessor(code.a), right = code.a;
  const int top = predecessor(code.b), bottom = code.b;
  const int column[4] = {left, left, right, right};
  const int row[4] = {bottom, top, top, bottom};

  CalibCornerSet seed{};
  seed.count = 4;
  for (int k = 0; k < 4; ++k) {
    seed.column[k] = static_cast<float>(corners[2 * k]);
    seed.row[k] = static_cast<float>(corners[2 * k + 1]);
    seed.worldX[k] = static_cast<float>(column[k]) * code.squareSize;
    seed.worldY[k] = static_cast<float>(row[k]) * code.squareSize;
  }
  return seed;
}

} // namespace velmorn
