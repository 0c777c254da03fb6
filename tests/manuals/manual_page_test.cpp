#include "manuals/manual_page.h"

#include <gmock/gmock.h>

namespace velmorn::manuals {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Key;
using testing::Not;

CommandEntry stitch() {
  CommandEntry command;
  command.path = "tool stitch";
  command.description = "Join the cameras";
  command.arguments = {{{"rig"}, "FILE", "", "", "Rig file", true, false, true},
                       {{"more"}, "FILE", "", "", "Further files", false, true, true}};
  command.options = {{{"-o", "--output"}, "FILE", "", "r.json", "To write", false, false, true},
                     {{"--square"}, "LENGTH", "", "", "Side", true, false, false},
                     {{"--mode"}, "INT", "[1 - 4]", "", "Which way", false, false, false},
                     {{"--all"}, "", "", "", "Everything", false, false, false}};
  command.footer = "Example:\n  tool stitch a.json\nwith a.json\n  {}\n\nPaths are relative.";
  return command;
}

CommandEntry turn() {
  CommandEntry command;
  command.path = "tool turn";
  command.description = "Turn a frame";
  CommandEntry back;
  back.path = "tool turn back";
  back.description = "The other way";
  back.footer = "Example:\n  tool turn back";
  command.commands = {back};
  return command;
}

CommandEntry tool() {
  CommandEntry command;
  command.path = "tool";
  command.description = "Rigs of cameras";
  command.commands = {stitch(), turn()};
  command.footer = "tool COMMAND --help says more.";
  return command;
}

std::string page(const std::string& name) { return manualPages(tool(), "tools 1.2").at(name); }

TEST(ManualPages, OneForTheToolAndOnePerCommand) {
  EXPECT_THAT(manualPages(tool(), ""),
              ElementsAre(Key("tool-stitch.1"), Key("tool-turn.1"), Key("tool.1")));
}

TEST(ManualPages, PageOfACommand) {
  EXPECT_EQ(page("tool-stitch.1"),
            ".TH TOOL\\-STITCH 1 \"\" \"tools 1.2\" \"User Commands\"\n"
            ".SH NAME\n"
            "tool\\-stitch \\- join the cameras\n"
            ".SH SYNOPSIS\n"
            "\\fBtool stitch\\fR [\\fIOPTIONS\\fR] \\fB\\-\\-square\\fR \\fILENGTH\\fR "
            "\\fIrig\\fR [\\fImore\\fR ...]\n"
            ".SH DESCRIPTION\n"
            "Join the cameras.\n"
            ".SH ARGUMENTS\n"
            ".TP\n\\fIrig\\fR\nRig file. Required.\n"
            ".TP\n[\\fImore\\fR ...]\nFurther files.\n"
            ".SH OPTIONS\n"
            ".TP\n\\fB\\-o\\fR, \\fB\\-\\-output\\fR \\fIFILE\\fR\n"
            "To write. Default: \\fBr.json\\fR.\n"
            ".TP\n\\fB\\-\\-square\\fR \\fILENGTH\\fR\nSide. Required.\n"
            ".TP\n\\fB\\-\\-mode\\fR \\fIINT\\fR\nWhich way. In [1 \\- 4].\n"
            ".TP\n\\fB\\-\\-all\\fR\nEverything.\n"
            ".SH EXAMPLES\n"
            ".RS 4\n.EX\ntool stitch a.json\n.EE\n.RE\n.PP\n"
            "with a.json\n.PP\n"
            ".RS 4\n.EX\n{}\n.EE\n.RE\n"
            ".SH NOTES\n"
            "Paths are relative.\n"
            ".SH SEE ALSO\n"
            "\\fBtool\\fR(1)\n");
}

TEST(ManualPages, SubcommandsStandOnTheirCommandsPage) {
  EXPECT_THAT(page("tool-turn.1"),
              HasSubstr(".SH SUBCOMMANDS\n"
                        ".SS tool turn back\n"
                        "\\fBtool turn back\\fR [\\fIOPTIONS\\fR]\n"
                        ".PP\nThe other way.\n"
                        ".PP\nExample:\n.PP\n.RS 4\n.EX\ntool turn back\n.EE\n.RE\n"
                        ".SH SEE ALSO\n"));
  EXPECT_THAT(page("tool-turn.1"), HasSubstr("[\\fIOPTIONS\\fR] \\fISUBCOMMAND\\fR\n"));
  EXPECT_THAT(page("tool-turn.1"), Not(HasSubstr(".SH EXAMPLES")));
}

TEST(ManualPages, PageOfTheTool) {
  const std::string text = page("tool.1");
  EXPECT_THAT(text, HasSubstr(".SH NAME\ntool \\- rigs of cameras\n"));
  EXPECT_THAT(text, HasSubstr(".SH COMMANDS\n.TP\n\\fBstitch\\fR\nJoin the cameras.\n"
                              ".TP\n\\fBturn\\fR\nTurn a frame.\n"));
  EXPECT_THAT(text, HasSubstr(".SH NOTES\ntool COMMAND \\-\\-help says more.\n"));
  EXPECT_THAT(text, HasSubstr(".SH EXIT STATUS\n.TP\n.B 0\nDone.\n"));
  EXPECT_THAT(text, HasSubstr("\\fBtool\\-stitch\\fR(1),\n\\fBtool\\-turn\\fR(1)\n"));
}

} // namespace
} // namespace velmorn::manuals
