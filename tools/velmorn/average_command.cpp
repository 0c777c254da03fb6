// `velmorn average`: the mean of a burst of images.
#include "velmorn/average_command.h"

#include <filesystem>
#include <iomanip>
#include <iostream>

#include "velmorn/atomic_file.h"
#include "velmorn/grey_image.h"
#include "velmorn/image_average.h"
#include "velmorn/image_file.h"
#include "velmorn/image_list.h"
#include "velmorn/progress.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

constexpr std::size_t kExactDepthImages = 256; // the library sums in single precision

bool isDepth(const cv::Mat& image) { return image.depth() == CV_16U; }

// A second run would else take in what the first one wrote.
void requireOtherOutput(const std::vector<std::string>& paths, const std::string& output) {
  std::error_code notThere;
  for (const std::string& path : paths) {
    if (!std::filesystem::equivalent(path, output, notThere)) continue;
    throw ToolError(output + " is the file to write and one of the images");
  }
}

void printSummary(const AverageOptions& options, std::size_t images, const cv::Mat& average) {
  std::cout << "images      " << images << ", " << sizeText(average.size()) << ' '
            << (isDepth(average) ? "16-bit depth" : pixelText(average)) << '\n';
  if (isDepth(average)) {
    const auto all = static_cast<double>(average.total());
    std::cout << "unmeasured  " << std::fixed << std::setprecision(2)
              << 100 * (1 - cv::countNonZero(average) / all) << " % of the pixels, in no image\n";
  }
  std::cout << "written to  " << oneLine(options.output) << '\n';
}

} // namespace

void runAverage(const AverageOptions& options) {
  const std::vector<std::string> paths = expandImages(options.images, "");
  requireOtherOutput(paths, options.output);
  requireWritable(options.output);
  const std::vector<cv::Mat> burst = readBurst(paths);
  if (isDepth(burst.front()) && burst.size() > kExactDepthImages) {
    printWarning("the mean of more than " + std::to_string(kExactDepthImages) +
                 " depth images is rounded");
  }
  const cv::Mat average = averageOf(burst);
  writeFileAtomically(options.output, imageFileText(options.output, average));
  printSummary(options, burst.size(), average);
}

} // namespace velmorn::tool
