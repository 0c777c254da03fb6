// Writes the manual pages and the shell completion of velmorn, from its own help.
#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>

#include "manuals/command_entry.h"
#include "manuals/completion.h"
#include "manuals/manual_page.h"
#include "velmorn/atomic_file.h"
#include "velmorn/command_line.h"
#include "velmorn64.h"

namespace {

using velmorn::tool::writeFileAtomically;

void writeManuals(const std::filesystem::path& folder) {
  const velmorn::manuals::CommandEntry tool =
      velmorn::manuals::describeCommand(*velmorn::tool::unparsedCommandLine());
  std::filesystem::create_directories(folder / "man1");
  const std::string release = std::string("velmorn64 ") + VELMORN64_VERSION;
  for (const auto& [name, page] : velmorn::manuals::manualPages(tool, release)) {
    writeFileAtomically((folder / "man1" / name).string(), page);
  }
  writeFileAtomically((folder / "velmorn.bash").string(), velmorn::manuals::bashCompletion(tool));
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: velmorn_manuals FOLDER\n";
    return velmorn::tool::kExitUsage;
  }
  try {
    writeManuals(argv[1]);
  } catch (const std::exception& error) {
    std::cerr << "velmorn_manuals: " << error.what() << '\n';
    return velmorn::tool::kExitFailed;
  }
  return velmorn::tool::kExitSuccess;
}
