// The commands of docs/getting-started.md, as they stand there, on the rig that the page simulates.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "support/temp_dir.h"
#include "tools/process.h"

namespace velmorn::tool {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// The words of the page's indented lines that run the tool, and of the one in the text.
std::vector<std::vector<std::string>> commandsIn(const std::string& page) {
  std::vector<std::vector<std::string>> commands;
  std::istringstream lines(page);
  for (std::string line; std::getline(lines, line);) {
    const std::string head = "    velmorn ";
    if (line.rfind(head, 0) != 0) continue;
    std::istringstream words(line.substr(head.size()));
    commands.emplace_back();
    for (std::string word; words >> word;) commands.back().push_back(word);
  }
  return commands;
}

class GettingStarted : public TempDirTest {};

TEST_F(GettingStarted, ThePagesCommandsWorkAsTheyStand) {
  const std::string page = readFile(VELMORN_GETTING_STARTED);
  ASSERT_THAT(page, HasSubstr("`velmorn simulate --cameras 4 -o rig`"));
  const auto run = [&](const std::vector<std::string>& arguments) {
    return runProcess(VELMORN_TOOL, arguments, dir());
  };
  ASSERT_EQ(run({"simulate", "--cameras", "4", "-o", "rig"}).status, 0);

  std::vector<std::string> seen;
  for (const auto& command : commandsIn(page)) {
    const ProcessResult result = run(command);
    EXPECT_EQ(result.status, 0) << command.front() << ": " << result.err;
    seen.push_back(command.front());
  }
  EXPECT_THAT(seen, testing::ElementsAre("board", "stitch", "merge", "report", "check"));
  EXPECT_EQ(nlohmann::json::parse(readFile(dir() / "result.json"))["cameras"].size(), 4U);
  EXPECT_THAT(readFile(dir() / "merged.ply"), StartsWith("ply\n"));
  EXPECT_THAT(readFile(dir() / "report.html"), StartsWith("<!DOCTYPE html>"));
}

} // namespace
} // namespace velmorn::tool
