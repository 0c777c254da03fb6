// Runs a program as a user would.
#include "tools/process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

#include "support/temp_dir.h"

namespace velmorn::tool {
namespace {

// In the child: never returns.
[[noreturn]] void become(std::vector<char*>& arguments, const std::string& folder,
                         const std::string& outPath, const std::string& errPath) {
  const int out = open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  const int err = open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  const bool ready =
      dup2(out, STDOUT_FILENO) >= 0 && dup2(err, STDERR_FILENO) >= 0 && chdir(folder.c_str()) == 0;
  if (ready) execv(arguments[0], arguments.data());
  _exit(127);
}

} // namespace

ProcessResult runProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const std::filesystem::path& workingDirectory) {
  const TempDir streams;
  const std::string outPath = (streams.path() / "out").string();
  const std::string errPath = (streams.path() / "err").string();
  std::vector<std::string> words = {program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);

  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("cannot start a process");
  if (child == 0) become(pointers, workingDirectory.string(), outPath, errPath);
  int status = 0;
  if (waitpid(child, &status, 0) != child) throw std::runtime_error("lost a process");

  ProcessResult result;
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  result.out = readFile(outPath);
  result.err = readFile(errPath);
  return result;
}

std::string lastLine(const std::string& text) {
  const std::string trimmed = text.substr(0, text.find_last_not_of('\n') + 1);
  return trimmed.substr(trimmed.rfind('\n') + 1);
}

} // namespace velmorn::tool
