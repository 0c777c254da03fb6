// What a command's help says, as data for manual pages and completions.
#include "manuals/command_entry.h"

#include <CLI/CLI.hpp>

namespace velmorn::manuals {
namespace {

// CLI11 says "TYPE:CHECK" or "TYPE:CHECK in [RANGE]"; without a check, "TYPE".
void describeValue(const std::string& typeName, OptionEntry& entry) {
  const std::string checked = typeName.substr(typeName.rfind(':') + 1);
  const std::size_t range = checked.find(" in [");
  entry.value = checked.substr(0, range);
  if (range != std::string::npos) entry.range = checked.substr(range + std::string(" in ").size());
  const bool anyText = typeName == "TEXT";
  entry.namesAFile = anyText || entry.value == "FILE" || entry.value == "DIR" ||
                     entry.value.compare(0, 4, "PATH") == 0;
}

std::vector<std::string> namesOf(const CLI::Option& option) {
  if (!option.nonpositional()) return {option.get_name(true)};
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames()) names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

OptionEntry describeOption(const CLI::Option& option) {
  OptionEntry entry;
  entry.names = namesOf(option);
  if (option.get_type_size() != 0) describeValue(option.get_type_name(), entry);
  entry.defaultText = option.get_default_str();
  entry.description = option.get_description();
  entry.required = option.get_required();
  entry.repeated = option.get_expected_max() > 1;
  return entry;
}

bool isShown(const std::string& group) { return !group.empty(); }

CommandEntry describeUnder(const CLI::App& command, const std::string& parentPath) {
  CommandEntry entry;
  entry.path = parentPath + command.get_name();
  entry.description = command.get_description();
  entry.footer = command.get_footer();
  for (const CLI::Option* option : command.get_options()) {
    if (!isShown(option->get_group())) continue;
    (option->nonpositional() ? entry.options : entry.arguments).push_back(describeOption(*option));
  }
  const auto all = [](const CLI::App*) { return true; };
  for (const CLI::App* child : command.get_subcommands(all)) {
    if (isShown(child->get_group()))
      entry.commands.push_back(describeUnder(*child, entry.path + ' '));
  }
  return entry;
}

} // namespace

std::string CommandEntry::name() const { return path.substr(path.rfind(' ') + 1); }

CommandEntry describeCommand(const CLI::App& command) { return describeUnder(command, ""); }

} // namespace velmorn::manuals
