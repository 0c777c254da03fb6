// Input checks that all stitching runs share.
#include "stitching/stitch_checks.h"

#include <cstdint>

#include "foundation/log.h"
#include "velmorn64.h"

namespace velmorn {

void printAndLog(const char* message) {
  printConsole(message);
  writeLog(kLogPath, "%s", message);
}

int checkCameraCount(int n) {
  if (n < 2) {
    // Two cameras are enough; the text has always said otherwise.
    writeLog(kLogPath, "the number of cameras should be greater than 2\n");
    return kOzkBadSize;
  }
  if (n > kMaxStitchCameras) {
    writeLog(kLogPath, "error: the number of cameras(%d) is greater than %d\n", n,
             kMaxStitchCameras);
    return kOzkBadSize;
  }
  return kOzkSuccess;
}

int checkImageLists(const std::vector<std::string>& camIDs, const ImagePathMap& chessImgPaths,
                    int minImages) {
  const auto first = chessImgPaths.find(camIDs.front());
  for (const std::string& camID : camIDs) {
    const auto entry = chessImgPaths.find(camID);
    if (entry == chessImgPaths.end() || entry->second.size() != first->second.size()) {
      printAndLog("chess image error\n");
      return kOzkBadSize;
    }
  }
  if (static_cast<std::int64_t>(first->second.size()) < minImages) {
    printAndLog("too few chess images\n");
    return kOzkBadSize;
  }
  return kOzkSuccess;
}

} // namespace velmorn
