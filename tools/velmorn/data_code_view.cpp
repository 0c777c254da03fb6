// What the library finds of a data-code board in one image.
#include "velmorn/data_code_view.h"

#include "velmorn/library_console.h"
#include "velmorn/library_image.h"
#include "velmorn/tool_error.h"
#include "velmorn64.h"

namespace velmorn::tool {
namespace {

std::string problemOf(int status, const std::string& code, std::size_t corners) {
  if (status == kOzkNoDataCode) return "no data code found";
  if (status != kOzkSuccess && code.empty())
    return "the search for a data code failed with status " + std::to_string(status);
  const std::string read = "code " + inQuotes(code) + " read, but ";
  if (status != kOzkSuccess)
    return read + "the search for corners failed with status " + std::to_string(status);
  return corners == 0 ? read + "no corners found" : "";
}

} // namespace

// The library gives the code's text on the console alone, and its numbers on the next line.
std::string codeIn(const std::string& console) {
  const std::string head = "finded code is ";
  const std::size_t end = console.rfind("\nparsed code content is (");
  if (console.compare(0, head.size(), head) != 0 || end == std::string::npos) return "";
  return console.substr(head.size(), end - head.size());
}

DataCodeView findDataCodeBoard(const cv::Mat& grey) {
  DataCodeView view;
  if (grey.empty()) {
    view.problem = "not readable as an image";
    return view;
  }
  const cv::Mat pixels = grey.isContinuous() ? grey : grey.clone();
  tagOzKImage image = libraryImage(pixels);
  std::vector<tagOzKPoint2Df32> inImage;
  std::vector<tagOzKPoint3Df32> onBoard;
  int status = 0;
  {
    const LibraryConsole console;
    status = ozkFindDataCodeChessCornerPtAndWorldPt(&image, inImage, onBoard);
    view.code = codeIn(console.text());
  }
  for (const tagOzKPoint2Df32& p : inImage) view.pixels.emplace_back(p.x, p.y);
  for (const tagOzKPoint3Df32& p : onBoard) view.onBoard.emplace_back(p.x, p.y, p.z);
  view.problem = problemOf(status, view.code, view.pixels.size());
  return view;
}

} // namespace velmorn::tool
