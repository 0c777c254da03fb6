// The pages and the completion of velmorn itself, whatever commands it has.
#include <gmock/gmock.h>

#include <CLI/CLI.hpp>
#include <filesystem>

#include "manuals/command_entry.h"
#include "support/temp_dir.h"
#include "tools/process.h"
#include "velmorn/command_line.h"

namespace velmorn::manuals {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// Every command and subcommand.
std::vector<CommandEntry> everyCommand(const CommandEntry& parent) {
  std::vector<CommandEntry> all;
  for (const CommandEntry& command : parent.commands) {
    all.push_back(command);
    const std::vector<CommandEntry> below = everyCommand(command);
    all.insert(all.end(), below.begin(), below.end());
  }
  return all;
}

class ToolPages : public TempDirTest {
 protected:
  ToolPages() : made_(tool::runProcess(VELMORN_MANUALS, {"pages"}, dir())) {}

  std::string page(const std::string& name) { return readFile(dir() / "pages/man1" / name); }

  const CommandEntry velmorn_ = describeCommand(*tool::unparsedCommandLine());
  const tool::ProcessResult made_;
};

TEST_F(ToolPages, GeneratorSaysNothing) {
  EXPECT_EQ(made_.status, 0);
  EXPECT_EQ(made_.out + made_.err, "");
  ASSERT_FALSE(velmorn_.commands.empty());
}

TEST_F(ToolPages, EveryHelpHasAnExample) {
  for (const CommandEntry& command : everyCommand(velmorn_)) {
    EXPECT_THAT(command.footer, StartsWith("Example:\n  " + velmorn_.path + ' ')) << command.path;
    EXPECT_THAT(command.footer, HasSubstr(command.path)) << command.path;
  }
}

TEST_F(ToolPages, EveryOptionIsDescribed) {
  for (const CommandEntry& command : everyCommand(velmorn_)) {
    EXPECT_NE(command.description, "") << command.path;
    for (const OptionEntry& option : command.options) {
      EXPECT_NE(option.description, "") << command.path << ' ' << option.names.front();
    }
    for (const OptionEntry& argument : command.arguments) {
      EXPECT_NE(argument.description, "") << command.path << ' ' << argument.names.front();
    }
  }
}

TEST_F(ToolPages, EveryCommandHasAPage) {
  for (const CommandEntry& command : velmorn_.commands) {
    EXPECT_THAT(page("velmorn-" + command.name() + ".1"), HasSubstr(".SH EXAMPLES\n"));
    EXPECT_THAT(page("velmorn.1"), HasSubstr("\\fB" + command.name() + "\\fR"));
  }
}

TEST_F(ToolPages, ManShowsThemWithoutWarnings) {
  for (const auto& file : std::filesystem::directory_iterator(dir() / "pages/man1")) {
    const tool::ProcessResult shown =
        tool::runProcess(VELMORN_MAN, {"--warnings", "-P", "cat", "-l", file.path()}, dir());
    EXPECT_EQ(shown.status, 0) << file.path();
    EXPECT_EQ(shown.err, "") << file.path();
    EXPECT_THAT(shown.out, HasSubstr("SYNOPSIS")) << file.path();
  }
}

TEST_F(ToolPages, BashReadsTheCompletion) {
  const std::string script = "source pages/velmorn.bash && complete -p velmorn";
  const tool::ProcessResult read = tool::runProcess(VELMORN_BASH, {"--norc", "-c", script}, dir());
  EXPECT_EQ(read.out, "complete -F _velmorn velmorn\n");
  EXPECT_EQ(read.err, "");
}

TEST(Manuals, WrongUse) {
  const TempDir dir;
  const tool::ProcessResult result = tool::runProcess(VELMORN_MANUALS, {}, dir.path());
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "usage: velmorn_manuals FOLDER\n");
}

TEST(Manuals, FolderThatCannotBeMade) {
  const TempDir dir;
  writeFile(dir.path() / "file", "");
  const tool::ProcessResult result = tool::runProcess(VELMORN_MANUALS, {"file/pages"}, dir.path());
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, StartsWith("velmorn_manuals: "));
}

} // namespace
} // namespace velmorn::manuals
