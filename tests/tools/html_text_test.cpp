// Escaping: no text from outside becomes markup or script.
#include "velmorn/html_text.h"

#include <gmock/gmock.h>

#include <limits>

namespace velmorn::tool {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(HtmlText, EscapesWhatEndsAnElementOrAnAttribute) {
  EXPECT_EQ(htmlText("<b a=\"1\" b='2'>&amp;"), "&lt;b a=&quot;1&quot; b=&#39;2&#39;&gt;&amp;amp;");
}

TEST(HtmlText, KeepsTextOfOtherLanguages) { EXPECT_EQ(htmlText("caméra 左"), "caméra 左"); }

TEST(HtmlText, ReplacesWhatIsNoTextAtAll) {
  EXPECT_EQ(htmlText("a\xFF z"), "a\xEF\xBF\xBD z");
  EXPECT_EQ(htmlText(std::string("a\0b\x1B[31m\nc", 10)), "a b [31m c");
}

TEST(JsonInScript, DoesNotEndTheElement) {
  const nlohmann::ordered_json value = {{"id", "</script><!--\"\\ \xFF"}};
  const std::string text = jsonInScript(value);
  EXPECT_THAT(text, Not(HasSubstr("<")));
  EXPECT_EQ(nlohmann::json::parse(text)["id"], "</script><!--\"\\ \xEF\xBF\xBD");
}

TEST(FixedText, HasSoManyDecimals) {
  EXPECT_EQ(htmlNumber(1.23456, 3), "1.235");
  EXPECT_EQ(htmlNumber(-2, 0), "-2");
}

TEST(FixedText, HasNoSignForZero) {
  EXPECT_EQ(htmlNumber(-0.0, 1), "0.0");
  EXPECT_EQ(htmlNumber(-0.04, 1), "0.0");
  EXPECT_EQ(htmlNumber(-0.06, 1), "-0.1");
}

TEST(FixedText, StaysShortForAnyNumber) {
  EXPECT_EQ(htmlNumber(1e300, 1), "1.0e+300");
  EXPECT_EQ(htmlNumber(std::numeric_limits<double>::quiet_NaN(), 1), "–");
  EXPECT_EQ(htmlNumber(-std::numeric_limits<double>::infinity(), 1), "–");
}

TEST(ShortenedText, CutsBetweenCharacters) {
  EXPECT_EQ(shortenedText("caméra", 6), "caméra");
  EXPECT_EQ(shortenedText("caméra", 4), "camé…");
  EXPECT_EQ(shortenedText("", 4), "");
}

TEST(Base64Text, HasTheStandardsDigits) {
  EXPECT_EQ(base64Text(""), "");
  EXPECT_EQ(base64Text("M"), "TQ==");
  EXPECT_EQ(base64Text("Ma"), "TWE=");
  EXPECT_EQ(base64Text("Man"), "TWFu");
  EXPECT_EQ(base64Text("ManMan"), "TWFuTWFu");
  EXPECT_EQ(base64Text("\xFB\xFF\xFE"), "+//+");
}

} // namespace
} // namespace velmorn::tool
