// What was found at the seams, in words and as JSON.
#include "velmorn/seam_table.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace velmorn::tool {
namespace {

using nlohmann::json;

const std::vector<std::string> kIds = {"left", "right", "top"};

// One seam that agrees, one without overlap, one of surfaces far from each other.
std::vector<Seam> seams() {
  return {{0, 1, 20000, 19500, 0.12345, 1.5}, {0, 2, 19, 19, 0, 0}, {1, 2, 2000, 1, 0, 0}};
}

TEST(SeamTable, OneLinePerSeam) {
  EXPECT_EQ(seamTable(seams(), kIds),
            "seam              points   share  median  90 %\n"
            "left   right       19500  97.5 %   0.123   1.5\n"
            "left   top    no overlap       -       -     -\n"
            "right  top             1   0.1 %       -     -\n");
}

TEST(SeamTable, JsonHasNullWhereThereIsNoNumber) {
  const json file = json::parse(seamFileText(seams(), kIds));
  ASSERT_EQ(file["seams"].size(), 3U);
  const json expected = {{"cameras", {"left", "right"}},
                         {"overlap", true},
                         {"inView", 20000},
                         {"compared", 19500},
                         {"share", 0.975},
                         {"median", 0.12345},
                         {"percentile90", 1.5}};
  EXPECT_EQ(file["seams"][0], expected);
  EXPECT_EQ(file["seams"][1]["overlap"], false);
  EXPECT_TRUE(file["seams"][1]["share"].is_null());
  EXPECT_EQ(file["seams"][2]["share"], 0.0005);
  EXPECT_TRUE(file["seams"][2]["median"].is_null());
  EXPECT_TRUE(file["seams"][2]["percentile90"].is_null());
}

} // namespace
} // namespace velmorn::tool
