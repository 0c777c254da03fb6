// What a command's help says, as data for manual pages and completions.
#ifndef VELMORN64_TOOLS_MANUALS_COMMAND_ENTRY_H
#define VELMORN64_TOOLS_MANUALS_COMMAND_ENTRY_H

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace velmorn::manuals {

struct OptionEntry {
  std::vector<std::string> names; // "-o", "--output"; of an argument without dashes its name alone
  std::string value;              // what follows, such as FILE or WxH; empty for a flag
  std::string range;              // such as "[1 - 10]"; empty when any value of the kind will do
  std::string defaultText;
  std::string description;
  bool required = false;
  bool repeated = false;   // takes several values
  bool namesAFile = false; // the value is, or may be, a path
};

struct CommandEntry {
  std::string path; // every word of it, such as "velmorn extrinsic turn"
  std::string description;
  std::vector<OptionEntry> arguments; // without dashes, in their order
  std::vector<OptionEntry> options;
  std::vector<CommandEntry> commands; // subcommands, in the order of the help
  std::string footer;                 // example and remarks, lines as in the help

  std::string name() const; // the last word of the path
};

CommandEntry describeCommand(const CLI::App& command);

} // namespace velmorn::manuals

#endif // VELMORN64_TOOLS_MANUALS_COMMAND_ENTRY_H
