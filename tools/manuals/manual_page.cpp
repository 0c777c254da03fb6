// Manual pages of a command-line tool, from its help.
#include "manuals/manual_page.h"

#include <algorithm>
#include <cctype>

#include "manuals/roff.h"

namespace velmorn::manuals {
namespace {

constexpr const char* kExample = "Example:\n"; // what a footer with examples starts with

constexpr const char* kExitStatus =
    ".SH EXIT STATUS\n"
    ".TP\n.B 0\nDone.\n"
    ".TP\n.B 1\nThe run failed; the last line on the standard error says why.\n"
    ".TP\n.B 2\nThe command line is wrong.\n"
    ".PP\nA command with further statuses names them on its page.\n";

// "velmorn extrinsic" is on the page velmorn-extrinsic.
std::string pageName(const CommandEntry& command) {
  std::string name = command.path;
  std::replace(name.begin(), name.end(), ' ', '-');
  return name;
}

std::string upperCase(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

std::string section(const std::string& title, const std::string& content) {
  return content.empty() ? "" : ".SH " + title + "\n" + content;
}

std::string title(const CommandEntry& command, const std::string& release) {
  return ".TH " + upperCase(roffText(pageName(command))) + " 1 \"\" \"" + roffText(release) +
         "\" \"User Commands\"\n";
}

// The line that man -k finds; descriptions start with a capital there, here they do not.
std::string nameLine(const CommandEntry& command) {
  std::string summary = command.description;
  if (!summary.empty()) summary[0] = static_cast<char>(std::tolower(summary[0]));
  return roffText(pageName(command)) + " \\- " + roffText(summary) + "\n";
}

std::string optionWords(const OptionEntry& option, const std::string& name) {
  return option.value.empty() ? bold(name) : bold(name) + ' ' + italic(option.value);
}

std::string argumentWord(const OptionEntry& argument) {
  const std::string word =
      italic(argument.names.front()) + (argument.repeated ? std::string(" ...") : std::string());
  return argument.required ? word : '[' + word + ']';
}

// What has to be given stands there in full.
std::string synopsis(const CommandEntry& command) {
  std::string line = bold(command.path) + " [" + italic("OPTIONS") + ']';
  for (const OptionEntry& option : command.options) {
    if (option.required) line += ' ' + optionWords(option, option.names.back());
  }
  for (const OptionEntry& argument : command.arguments) line += ' ' + argumentWord(argument);
  if (!command.commands.empty()) line += ' ' + italic("SUBCOMMAND");
  return line + '\n';
}

// The description and what the help says in capitals behind the option's name.
std::string meaning(const OptionEntry& option) {
  std::string text = roffText(option.description) + '.';
  if (!option.range.empty()) text += " In " + roffText(option.range) + '.';
  if (option.required) text += " Required.";
  if (!option.defaultText.empty()) text += " Default: " + bold(option.defaultText) + '.';
  return text + '\n';
}

std::string argumentList(const std::vector<OptionEntry>& arguments) {
  std::string list;
  for (const OptionEntry& argument : arguments) {
    list += ".TP\n" + argumentWord(argument) + '\n' + meaning(argument);
  }
  return list;
}

std::string optionList(const std::vector<OptionEntry>& options) {
  std::string list;
  for (const OptionEntry& option : options) {
    std::string names;
    for (const std::string& name : option.names) {
      names += (names.empty() ? "" : ", ") + bold(name);
    }
    if (!option.value.empty()) names += ' ' + italic(option.value);
    list += ".TP\n" + names + '\n' + meaning(option);
  }
  return list;
}

bool hasExample(const std::string& footer) { return footer.rfind(kExample, 0) == 0; }

// Example and remarks are parted by the first blank line.
std::string examples(const std::string& footer) {
  if (!hasExample(footer)) return "";
  const std::string text = footer.substr(std::string(kExample).size());
  return roffParagraphs(text.substr(0, text.find("\n\n")));
}

std::string remarks(const std::string& footer) {
  if (!hasExample(footer)) return roffParagraphs(footer);
  const std::size_t blank = footer.find("\n\n");
  return blank == std::string::npos ? "" : roffParagraphs(footer.substr(blank));
}

std::string commandList(const std::vector<CommandEntry>& commands) {
  std::string list;
  for (const CommandEntry& command : commands) {
    list += ".TP\n" + bold(command.name()) + '\n' + roffText(command.description) + ".\n";
  }
  return list;
}

std::string paragraph(const std::string& heading, const std::string& content) {
  return content.empty() ? "" : heading + ".PP\n" + content;
}

// A subcommand on the page of its command.
std::string subsection(const CommandEntry& command) {
  return ".SS " + roffText(command.path) + '\n' + synopsis(command) + ".PP\n" +
         roffText(command.description) + ".\n" + argumentList(command.arguments) +
         optionList(command.options) + paragraph(".PP\nExample:\n", examples(command.footer)) +
         paragraph("", remarks(command.footer));
}

std::string reference(const CommandEntry& command) { return bold(pageName(command)) + "(1)"; }

std::string commandPage(const CommandEntry& command, const CommandEntry& tool,
                        const std::string& release) {
  std::string subcommands;
  for (const CommandEntry& subcommand : command.commands) subcommands += subsection(subcommand);
  return title(command, release) + section("NAME", nameLine(command)) +
         section("SYNOPSIS", synopsis(command)) +
         section("DESCRIPTION", roffText(command.description) + ".\n") +
         section("ARGUMENTS", argumentList(command.arguments)) +
         section("OPTIONS", optionList(command.options)) + section("SUBCOMMANDS", subcommands) +
         section("EXAMPLES", examples(command.footer)) + section("NOTES", remarks(command.footer)) +
         section("SEE ALSO", reference(tool) + '\n');
}

std::string toolPage(const CommandEntry& tool, const std::string& release) {
  std::string references;
  for (const CommandEntry& command : tool.commands) {
    references += (references.empty() ? "" : ",\n") + reference(command);
  }
  return title(tool, release) + section("NAME", nameLine(tool)) +
         section("SYNOPSIS", synopsis(tool)) +
         section("DESCRIPTION", roffText(tool.description) + ".\n") +
         section("COMMANDS", commandList(tool.commands)) +
         section("OPTIONS", optionList(tool.options)) + section("NOTES", remarks(tool.footer)) +
         kExitStatus + section("SEE ALSO", references + '\n');
}

} // namespace

std::map<std::string, std::string> manualPages(const CommandEntry& tool,
                                               const std::string& release) {
  std::map<std::string, std::string> pages = {{pageName(tool) + ".1", toolPage(tool, release)}};
  for (const CommandEntry& command : tool.commands) {
    pages[pageName(command) + ".1"] = commandPage(command, tool, release);
  }
  return pages;
}

} // namespace velmorn::manuals
