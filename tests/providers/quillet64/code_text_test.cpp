// Texts that are and that are not a board's.
#include "quillet64/code_text.h"

#include <string>

#include <gtest/gtest.h>

namespace velmorn::quillet {
namespace {

TEST(CodeText, AcceptsTwoIndicesAndALength) {
  for (const char* text : {"1,1,20", "12,7,20", "60,40,12.5", "2147483647,1,0.001", "1,2,2e1",
                           "01,002,3", "3,4,.5", "3,4,5."})
    EXPECT_TRUE(isBoardCodeText(text)) << text;
}

TEST(CodeText, RefusesIndicesThatAreNone) {
  for (const char* text : {"0,1,20", "1,0,20", "-1,1,20", "+1,1,20", "1,-1,20", "2147483648,1,20",
                           "1,99999999999,20", "1.5,1,20", ",1,20", "1,,20", "a,1,20"})
    EXPECT_FALSE(isBoardCodeText(text)) << text;
}

TEST(CodeText, RefusesLengthsThatAreNone) {
  for (const char* text : {"1,1,0", "1,1,-20", "1,1,inf", "1,1,nan", "1,1,1e60", "1,1,", "1,1",
                           "1,1,x", "1,1,+20", "1,1,1e-60"})
    EXPECT_FALSE(isBoardCodeText(text)) << text;
}

TEST(CodeText, TheWholeTextCounts) {
  for (const char* text :
       {"", " ", " 1,1,20", "1,1,20 ", "1, 1,20", "1,1,20,", "1,1,20mm", "1;1;20", "http://1,1,20"})
    EXPECT_FALSE(isBoardCodeText(text)) << text;
  EXPECT_FALSE(isBoardCodeText(std::string("1,1,20\0", 7)));
  EXPECT_FALSE(isBoardCodeText(std::string("1,1,20\n")));
}

} // namespace
} // namespace velmorn::quillet
