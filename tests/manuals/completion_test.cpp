#include "manuals/completion.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>

#include "support/temp_dir.h"
#include "tools/process.h"

namespace velmorn::manuals {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// Calls the completion as bash does and prints what it offers.
constexpr const char* kComplete =
    "source ./completion; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _tool; "
    "if ((${#COMPREPLY[@]})); then printf '%s\\n' \"${COMPREPLY[@]}\"; fi";

CommandEntry tool() {
  CommandEntry command;
  command.path = "tool";
  command.options = {{{"-h", "--help"}, "", "", "", "", false, false, false}};
  CommandEntry stitch;
  stitch.path = "tool stitch";
  stitch.arguments = {{{"rig"}, "FILE", "", "", "", true, false, true}};
  stitch.options = {{{"-o", "--output"}, "FILE", "", "", "", false, false, true},
                    {{"--square"}, "LENGTH", "", "", "", false, false, false},
                    {{"--all"}, "", "", "", "", false, false, false}};
  CommandEntry turn;
  turn.path = "tool turn";
  CommandEntry back;
  back.path = "tool turn back";
  back.options = {{{"--angle"}, "DEGREES", "", "", "", false, false, false}};
  CommandEntry number;
  number.path = "tool turn by";
  number.arguments = {{{"angle"}, "DEGREES", "", "", "", true, false, false}};
  turn.commands = {back, number};
  command.commands = {stitch, turn};
  return command;
}

class BashCompletion : public TempDirTest {
 protected:
  BashCompletion() {
    writeFile(dir() / "completion", bashCompletion(tool()));
    writeFile(dir() / "rig one.json", "");
    writeFile(dir() / "rig.json", "");
  }

  // The last word is the one to be completed.
  std::vector<std::string> offered(const std::vector<std::string>& words) {
    std::vector<std::string> arguments = {"--norc", "-c", kComplete, "bash"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    const tool::ProcessResult result = tool::runProcess(VELMORN_BASH, arguments, dir());
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    std::istringstream stream(result.out);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
  }
};

TEST_F(BashCompletion, Subcommands) {
  EXPECT_THAT(offered({"tool", ""}), ElementsAre("stitch", "turn"));
  EXPECT_THAT(offered({"tool", "st"}), ElementsAre("stitch"));
  EXPECT_THAT(offered({"tool", "x"}), IsEmpty());
  EXPECT_THAT(offered({"tool", "turn", ""}), ElementsAre("back", "by"));
}

TEST_F(BashCompletion, Options) {
  EXPECT_THAT(offered({"tool", "-"}), ElementsAre("-h", "--help"));
  EXPECT_THAT(offered({"tool", "stitch", "--"}), ElementsAre("--output", "--square", "--all"));
  EXPECT_THAT(offered({"tool", "stitch", "rig.json", "--s"}), ElementsAre("--square"));
  EXPECT_THAT(offered({"tool", "turn", "back", "-"}), ElementsAre("--angle"));
}

TEST_F(BashCompletion, OptionsWhereNothingElseCanStand) {
  EXPECT_THAT(offered({"tool", "turn", "back", ""}), ElementsAre("--angle"));
}

TEST_F(BashCompletion, Files) {
  EXPECT_THAT(offered({"tool", "stitch", "rig"}), UnorderedElementsAre("rig one.json", "rig.json"));
  EXPECT_THAT(offered({"tool", "stitch", "-o", "rig."}), ElementsAre("rig.json"));
  EXPECT_THAT(offered({"tool", "stitch", "--all", "rig."}), ElementsAre("rig.json"));
}

TEST_F(BashCompletion, ValueBehindAnEqualsSign) {
  EXPECT_THAT(offered({"tool", "stitch", "--output", "=", "rig."}), ElementsAre("rig.json"));
  EXPECT_THAT(offered({"tool", "stitch", "--output", "="}),
              UnorderedElementsAre("completion", "rig one.json", "rig.json"));
  EXPECT_THAT(offered({"tool", "stitch", "--square", "=", "r"}), IsEmpty());
}

TEST_F(BashCompletion, OtherValuesAreLeftToTheUser) {
  EXPECT_THAT(offered({"tool", "stitch", "--square", ""}), IsEmpty());
  EXPECT_THAT(offered({"tool", "turn", "by", ""}), IsEmpty());
}

} // namespace
} // namespace velmorn::manuals
