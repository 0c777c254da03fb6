#include "manuals/command_entry.h"

#include <gmock/gmock.h>

#include <CLI/CLI.hpp>

namespace velmorn::manuals {
namespace {

using testing::ElementsAre;

class CommandEntryTest : public testing::Test {
 protected:
  OptionEntry described() { return describeCommand(app_).options.back(); }

  CLI::App app_{"Does things", "tool"};
  std::string text_;
  std::vector<std::string> texts_;
  int number_ = 0;
  bool flag_ = false;
};

TEST_F(CommandEntryTest, Tool) {
  app_.footer("More");
  const CommandEntry entry = describeCommand(app_);
  EXPECT_EQ(entry.path, "tool");
  EXPECT_EQ(entry.name(), "tool");
  EXPECT_EQ(entry.description, "Does things");
  EXPECT_EQ(entry.footer, "More");
  ASSERT_EQ(entry.options.size(), 1U);
  EXPECT_THAT(entry.options[0].names, ElementsAre("-h", "--help"));
  EXPECT_EQ(entry.options[0].value, "");
  EXPECT_FALSE(entry.options[0].namesAFile);
}

TEST_F(CommandEntryTest, TextMayBeAFile) {
  app_.add_option("-o,--output", text_, "To write")->capture_default_str();
  EXPECT_THAT(described().names, ElementsAre("-o", "--output"));
  EXPECT_EQ(described().value, "TEXT");
  EXPECT_EQ(described().description, "To write");
  EXPECT_EQ(described().defaultText, "");
  EXPECT_TRUE(described().namesAFile);
  EXPECT_FALSE(described().required);
  EXPECT_FALSE(described().repeated);
}

TEST_F(CommandEntryTest, ChecksNameTheValue) {
  app_.add_option("--in", text_)->required()->check(CLI::ExistingFile);
  EXPECT_EQ(described().value, "FILE");
  EXPECT_TRUE(described().namesAFile);
  EXPECT_TRUE(described().required);
  app_.add_option("--folder", text_)->check(CLI::ExistingDirectory);
  EXPECT_TRUE(described().namesAFile);
  app_.add_option("--new", text_)->check(CLI::NonexistentPath);
  EXPECT_TRUE(described().namesAFile);
  app_.add_option("--board", text_)->check(CLI::Validator([](std::string&) { return ""; }, "WxH"));
  EXPECT_EQ(described().value, "WxH");
  EXPECT_FALSE(described().namesAFile);
}

TEST_F(CommandEntryTest, RangeAndDefault) {
  number_ = 3;
  app_.add_option("--number", number_)->check(CLI::Range(1, 10))->capture_default_str();
  EXPECT_EQ(described().value, "INT");
  EXPECT_EQ(described().range, "[1 - 10]");
  EXPECT_EQ(described().defaultText, "3");
  EXPECT_FALSE(described().namesAFile);
}

TEST_F(CommandEntryTest, FlagsHaveNoValue) {
  app_.add_flag("--all", flag_);
  EXPECT_EQ(described().value, "");
  EXPECT_FALSE(described().namesAFile);
}

TEST_F(CommandEntryTest, ArgumentsAreApart) {
  app_.add_option("images", texts_, "Image files")->required();
  const CommandEntry entry = describeCommand(app_);
  EXPECT_EQ(entry.options.size(), 1U);
  ASSERT_EQ(entry.arguments.size(), 1U);
  EXPECT_THAT(entry.arguments[0].names, ElementsAre("images"));
  EXPECT_TRUE(entry.arguments[0].repeated);
  EXPECT_TRUE(entry.arguments[0].required);
}

TEST_F(CommandEntryTest, SubcommandsWithTheirPaths) {
  app_.add_subcommand("turn", "Turn it")->add_subcommand("back", "Back");
  const CommandEntry entry = describeCommand(app_);
  ASSERT_EQ(entry.commands.size(), 1U);
  EXPECT_EQ(entry.commands[0].path, "tool turn");
  ASSERT_EQ(entry.commands[0].commands.size(), 1U);
  EXPECT_EQ(entry.commands[0].commands[0].path, "tool turn back");
  EXPECT_EQ(entry.commands[0].commands[0].name(), "back");
}

TEST_F(CommandEntryTest, WhatTheHelpHidesIsLeftOut) {
  app_.add_flag("--secret", flag_)->group("");
  app_.add_subcommand("inner", "")->group("");
  const CommandEntry entry = describeCommand(app_);
  EXPECT_EQ(entry.options.size(), 1U);
  EXPECT_TRUE(entry.commands.empty());
}

} // namespace
} // namespace velmorn::manuals
