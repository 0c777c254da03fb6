// Lists of numbers on the command line.
#include "velmorn/arguments.h"

#include <gmock/gmock.h>

namespace velmorn::tool {
namespace {

using testing::ElementsAre;
using testing::Optional;

TEST(Arguments, ReadsListsOfNumbers) {
  EXPECT_THAT(parseNumbers("1,-2.5,3e2", 3), Optional(ElementsAre(1.0F, -2.5F, 300.0F)));
  EXPECT_THAT(parseNumbers("-.5", 1), Optional(ElementsAre(-0.5F)));
}

TEST(Arguments, RefusesOtherTexts) {
  for (const char* text : {"", "1,2", "1,2,3,4", "1,2,3,", ",1,2", "1,,3", "1, 2,3", "1,2,x",
                           "1;2;3", "1,2,nan", "1,2,inf", "1,2,1e39", "1,2,3mm"}) {
    EXPECT_FALSE(parseNumbers(text, 3)) << text;
  }
}

} // namespace
} // namespace velmorn::tool
