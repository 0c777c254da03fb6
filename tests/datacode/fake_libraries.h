// Stand-ins for the two imported libraries: they do what a script says and record every call.
#ifndef VELMORN64_TESTS_DATACODE_FAKE_LIBRARIES_H
#define VELMORN64_TESTS_DATACODE_FAKE_LIBRARIES_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include <opencv2/core.hpp>

#include "datacode/imported_libraries.h"

namespace velmorn::fake {

// A corner as the extractor hands it out: column and row are x and y.
struct Corner {
  float column, row, worldX, worldY;
};

// What the libraries do with one image.
struct Shot {
  int dcCreate = 0, dcProcess = 0, calibCreate = 0, calibCornerExtractExt = 0;
  int dcRelease = 0, calibRelease = 0;
  int codes = 1;
  bool hasItems = true, hasContent = true, hasCorners = true;
  std::string content = "3,5,20";
  std::array<std::int32_t, 8> codeCorners = {10, 40, 11, 21, 30, 20, 31, 41};
  std::vector<Corner> corners;
  int count = -1000; // of the result when it is not that of `corners`
};

// What one image's calls were given.
struct Record {
  DataCodeImageSize readerSize{}, extractorSize{};
  std::array<unsigned char, sizeof(DataCodeConfig)> readerConfig{};
  std::array<unsigned char, sizeof(CalibConfig)> extractorConfig{};
  const tagOzKImage* readerImage = nullptr;
  const tagOzKImage* extractorImage = nullptr;
  tagOzKImage image{}; // as the reader saw it
  CalibCornerSet seed{};
};

// The configuration records come out of the libraries filled with this.
constexpr unsigned char kConfigByte = 0xA7;
constexpr int kReaderHandle = 0x1111, kExtractorHandle = 0x2222;

// Starts afresh: image i of the calls to come is treated as shots[i], the last one from then on.
void play(const std::vector<Shot>& shots);

// Names of the calls so far, in order; one with a wrong handle has " (wrong handle)" added.
const std::vector<std::string>& calls();
const std::vector<Record>& records();

} // namespace velmorn::fake

#endif // VELMORN64_TESTS_DATACODE_FAKE_LIBRARIES_H
