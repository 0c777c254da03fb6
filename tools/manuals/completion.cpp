// Completion of a command line in bash.
#include "manuals/completion.h"

#include <algorithm>

namespace velmorn::manuals {
namespace {

// The script's parts; NAME is the tool's name. Between them stand the tool's own words.
constexpr const char* kStart = R"(# bash completion for NAME

_NAME() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local command=NAME commands= options= file_options= value_options= arguments= i

  # --option=value comes as three words.
  if [[ $current == = ]]; then
    current=
  elif [[ $previous == = ]]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi

  for ((i = 1; i < COMP_CWORD; ++i)); do
    case "$command ${COMP_WORDS[i]}" in
)";

constexpr const char* kOptionsOfCommands = R"(        command+=" ${COMP_WORDS[i]}"
        ;;
    esac
  done

  case $command in
)";

constexpr const char* kEnd = R"(  esac

  COMPREPLY=()
  if [[ " $file_options " == *" $previous "* ]]; then
    arguments=files
  elif [[ " $value_options " == *" $previous "* ]]; then
    return
  elif [[ $current == -* || -z $commands$arguments ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    return
  elif [[ -n $commands ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$current")
    return
  fi
  if [[ $arguments == files ]]; then
    compopt -o default -o filenames 2>/dev/null # default: readline's own, for names in quotes
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}
complete -F _NAME NAME
)";

std::string withName(std::string text, const std::string& name) {
  const std::string placeholder = "NAME";
  for (std::size_t at = text.find(placeholder); at != std::string::npos;
       at = text.find(placeholder, at + name.size())) {
    text.replace(at, placeholder.size(), name);
  }
  return text;
}

std::vector<std::string> pathsBelow(const CommandEntry& command) {
  std::vector<std::string> paths;
  for (const CommandEntry& child : command.commands) {
    paths.push_back(child.path);
    const std::vector<std::string> further = pathsBelow(child);
    paths.insert(paths.end(), further.begin(), further.end());
  }
  return paths;
}

std::string pathPattern(const CommandEntry& tool) {
  std::string pattern;
  for (const std::string& path : pathsBelow(tool)) {
    pattern += (pattern.empty() ? "      '" : " | \\\n      '") + path + '\'';
  }
  return pattern + ")\n";
}

template <typename Condition>
std::string namesWhere(const std::vector<OptionEntry>& options, Condition condition) {
  std::string names;
  for (const OptionEntry& option : options) {
    if (!condition(option)) continue;
    for (const std::string& name : option.names) names += (names.empty() ? "" : " ") + name;
  }
  return names;
}

std::string assignment(const std::string& variable, const std::string& words) {
  return words.empty() ? "" : "      " + variable + "='" + words + "'\n";
}

std::string commandNames(const CommandEntry& command) {
  std::string names;
  for (const CommandEntry& child : command.commands) {
    names += (names.empty() ? "" : " ") + child.name();
  }
  return names;
}

std::string argumentKind(const CommandEntry& command) {
  const bool namesFiles = std::any_of(command.arguments.begin(), command.arguments.end(),
                                      [](const OptionEntry& entry) { return entry.namesAFile; });
  if (command.arguments.empty()) return "";
  return namesFiles ? "files" : "others";
}

std::string optionsOfCommand(const CommandEntry& command) {
  const auto any = [](const OptionEntry&) { return true; };
  const auto isFile = [](const OptionEntry& option) { return option.namesAFile; };
  const auto isOther = [](const OptionEntry& option) {
    return !option.value.empty() && !option.namesAFile;
  };
  std::string lines = "    '" + command.path + "')\n";
  lines += assignment("commands", commandNames(command));
  lines += assignment("options", namesWhere(command.options, any));
  lines += assignment("file_options", namesWhere(command.options, isFile));
  lines += assignment("value_options", namesWhere(command.options, isOther));
  lines += assignment("arguments", argumentKind(command));
  lines += "      ;;\n";
  for (const CommandEntry& child : command.commands) lines += optionsOfCommand(child);
  return lines;
}

} // namespace

std::string bashCompletion(const CommandEntry& tool) {
  return withName(kStart, tool.name()) + pathPattern(tool) + kOptionsOfCommands +
         optionsOfCommand(tool) + withName(kEnd, tool.name());
}

} // namespace velmorn::manuals
