// Opens a page in Chromium, without a window and without a network.
#ifndef VELMORN64_TESTS_TOOLS_BROWSER_H
#define VELMORN64_TESTS_TOOLS_BROWSER_H

#include <filesystem>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

namespace velmorn::tool {

struct BrowserRun {
  std::string dom;                   // the page's elements after its scripts have run
  std::vector<std::string> console;  // what the page, or the browser about it, wrote there
  std::vector<std::string> requests; // addresses that the page asked for, but for files
};

// Runs the page's scripts with software rendering. Throws when Chromium is not installed or fails.
//
// options  further command-line options
BrowserRun openPage(const std::filesystem::path& page,
                    const std::vector<std::string>& options = {});

// A picture of the page's first window, BGR.
cv::Mat photographPage(const std::filesystem::path& page, cv::Size window,
                       const std::vector<std::string>& options = {});

} // namespace velmorn::tool

#endif // VELMORN64_TESTS_TOOLS_BROWSER_H
