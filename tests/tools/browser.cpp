// Opens a page in Chromium.
#include "tools/browser.h"

#include <sstream>
#include <stdexcept>

#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>

#include "support/temp_dir.h"
#include "tools/process.h"

namespace velmorn::tool {
namespace {

constexpr const char* kTimeout = "/usr/bin/timeout";
constexpr const char* kMostSeconds = "180";

std::string chromium() {
  const std::string path = VELMORN_CHROMIUM;
  if (!std::filesystem::exists(path)) {
    throw std::runtime_error(
        "Chromium is not installed (looked for chromium, chromium-browser and "
        "google-chrome); scripts/install_deps installs it");
  }
  return path;
}

// As root there is no sandbox; no name leads anywhere, so that every request to a network fails.
ProcessResult run(const std::filesystem::path& page, const std::filesystem::path& folder,
                  const std::vector<std::string>& options) {
  std::vector<std::string> words = {kMostSeconds,
                                    chromium(),
                                    "--headless=new",
                                    "--no-sandbox",
                                    "--no-first-run",
                                    "--disable-background-networking",
                                    "--host-resolver-rules=MAP * ~NOTFOUND",
                                    "--use-angle=swiftshader",
                                    "--enable-unsafe-swiftshader",
                                    "--user-data-dir=" + (folder / "profile").string(),
                                    "--enable-logging=stderr",
                                    "--hide-scrollbars",
                                    "--virtual-time-budget=8000"};
  words.insert(words.end(), options.begin(), options.end());
  words.push_back("file://" + std::filesystem::absolute(page).string());
  ProcessResult result = runProcess(kTimeout, words, folder);
  if (result.status != 0) throw std::runtime_error("Chromium failed: " + result.err);
  return result;
}

// Of the browser's own requests the log says that they have no origin.
std::vector<std::string> requestsIn(const std::filesystem::path& netLog) {
  std::vector<std::string> requests;
  const nlohmann::json log = nlohmann::json::parse(readFile(netLog));
  for (const nlohmann::json& event : log.at("events")) {
    const auto params = event.value("params", nlohmann::json::object());
    const std::string initiator = params.value("initiator", "not an origin");
    const std::string address = params.value("url", "");
    if (initiator != "not an origin" && address.rfind("file:", 0) != 0) requests.push_back(address);
  }
  return requests;
}

std::vector<std::string> consoleLines(const std::string& log) {
  std::vector<std::string> console;
  std::istringstream lines(log);
  for (std::string line; std::getline(lines, line);)
    if (line.find(":CONSOLE:") != std::string::npos) console.push_back(line);
  return console;
}

} // namespace

BrowserRun openPage(const std::filesystem::path& page, const std::vector<std::string>& options) {
  const TempDir folder;
  const std::filesystem::path netLog = folder.path() / "requests.json";
  std::vector<std::string> all = {"--dump-dom", "--log-net-log=" + netLog.string()};
  all.insert(all.end(), options.begin(), options.end());
  const ProcessResult result = run(page, folder.path(), all);
  return {result.out, consoleLines(result.err), requestsIn(netLog)};
}

cv::Mat photographPage(const std::filesystem::path& page, cv::Size window,
                       const std::vector<std::string>& options) {
  const TempDir folder;
  const std::string picture = (folder.path() / "picture.png").string();
  std::vector<std::string> all = {
      "--screenshot=" + picture,
      "--window-size=" + std::to_string(window.width) + "," + std::to_string(window.height)};
  all.insert(all.end(), options.begin(), options.end());
  run(page, folder.path(), all);
  return cv::imread(picture, cv::IMREAD_COLOR);
}

} // namespace velmorn::tool
