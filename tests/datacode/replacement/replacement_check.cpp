// Says which libraries the product found: ours see no code in an empty image, the others always do.
#include <cstdio>
#include <cstring>

#include "velmorn64.h"

int main(int argc, char** argv) {
  const bool expectOthers = argc > 1 && std::strcmp(argv[1], "others") == 0;
  unsigned char pixels[64 * 64] = {};
  tagOzKImage image{};
  image.type = kOzkImageOneChannel;
  image.dataType = kOzkSample8U;
  image.width = image.height = 64;
  image.data = pixels;
  std::vector<tagOzKPoint2Df32> imagePts;
  std::vector<tagOzKPoint3Df32> worldPts;
  const int status = ozkFindDataCodeChessCornerPtAndWorldPt(&image, imagePts, worldPts);
  const bool fromOthers = status == kOzkSuccess && worldPts.size() == 4 && worldPts[0].x == 40 &&
                          worldPts[0].y == 100 && imagePts[0].x == 9.5F && imagePts[0].y == 39.5F;
  const bool fromOurs = status == kOzkNoDataCode && imagePts.empty();
  std::printf("status %d, %zu corners\n", status, imagePts.size());
  return (expectOthers ? fromOthers : fromOurs) ? 0 : 1;
}
