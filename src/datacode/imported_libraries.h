// The two libraries that find data codes (Quillet64) and calibration corners (Brantis64), as this
// library imports them: ten functions with C linkage, and the records exchanged.
//
// The layouts are fixed to the byte, little-endian: either library may be replaced at deployment by
// another one with the same functions. Every function returns 0 or the library's own error code.
// What a record reserves beyond the fields below belongs to the libraries.
#ifndef VELMORN64_DATACODE_IMPORTED_LIBRARIES_H
#define VELMORN64_DATACODE_IMPORTED_LIBRARIES_H

#include <cstddef>
#include <cstdint>

#include "velmorn64.h"

namespace velmorn {

// Image size of both libraries' handles.
struct DataCodeImageSize {
  std::int32_t width;  // pixels
  std::int32_t height; // pixels
};

// The reader's configuration. Its meaning is the reader's; three fields are set to fixed values.
struct DataCodeConfig {
  std::int32_t field0;
  std::uint8_t reservedA[52];
  std::int32_t field56;
  std::uint8_t reservedB[8];
  std::int32_t field68;
  std::uint8_t reservedC[104];
};

// What the reader works on.
struct DataCodeInput {
  const tagOzKImage* image;
  std::uint8_t reserved[120];
};

// One code.
struct DataCodeItem {
  const char* content; // NUL-terminated
  std::uint8_t reserved[8];
  const std::int32_t* corners; // pixels: x0, y0, x1, y1, x2, y2, x3, y3
};

// What the reader found. The items are the reader's, until its handle is released. They may be
// longer than DataCodeItem; only the first one is read.
struct DataCodeOutput {
  std::int32_t count;
  std::uint8_t reservedA[4];
  const DataCodeItem* items;
  std::uint8_t reservedB[112];
};

// The extractor's configuration. Two fields are set to the square size as a whole number.
struct CalibConfig {
  std::uint8_t reservedA[8];
  std::int32_t squareSizeA;
  std::int32_t squareSizeB;
  std::uint8_t reservedB[112];
};

constexpr int kCalibCornerSetCapacity = 512;

// Corners in the image and on the board. Within each pair the row (y) comes before the column (x).
struct CalibCornerSet {
  std::int32_t count;
  float row[kCalibCornerSetCapacity];    // pixels
  float column[kCalibCornerSetCapacity]; // pixels
  float worldY[kCalibCornerSetCapacity]; // unit of the codes
  float worldX[kCalibCornerSetCapacity];
};

static_assert(sizeof(DataCodeImageSize) == 8, "");
static_assert(offsetof(DataCodeImageSize, width) == 0, "");
static_assert(offsetof(DataCodeImageSize, height) == 4, "");
static_assert(sizeof(DataCodeConfig) == 176, "");
static_assert(offsetof(DataCodeConfig, field0) == 0, "");
static_assert(offsetof(DataCodeConfig, field56) == 56, "");
static_assert(offsetof(DataCodeConfig, field68) == 68, "");
static_assert(sizeof(DataCodeInput) == 128, "");
static_assert(offsetof(DataCodeInput, image) == 0, "");
static_assert(sizeof(DataCodeItem) == 24, "");
static_assert(offsetof(DataCodeItem, content) == 0, "");
static_assert(offsetof(DataCodeItem, corners) == 16, "");
static_assert(sizeof(DataCodeOutput) == 128, "");
static_assert(offsetof(DataCodeOutput, count) == 0, "");
static_assert(offsetof(DataCodeOutput, items) == 8, "");
static_assert(sizeof(CalibConfig) == 128, "");
static_assert(offsetof(CalibConfig, squareSizeA) == 8, "");
static_assert(offsetof(CalibConfig, squareSizeB) == 12, "");
static_assert(sizeof(CalibCornerSet) == 8196, "");
static_assert(offsetof(CalibCornerSet, count) == 0, "");
static_assert(offsetof(CalibCornerSet, row) == 4, "");
static_assert(offsetof(CalibCornerSet, column) == 2052, "");
static_assert(offsetof(CalibCornerSet, worldY) == 4100, "");
static_assert(offsetof(CalibCornerSet, worldX) == 6148, "");

} // namespace velmorn

extern "C" {

// Quillet64. A handle is an opaque value of 8 bytes.
std::int32_t dcCreate(void** handle, const velmorn::DataCodeImageSize* size);
std::int32_t dcGetConfig(void* handle, velmorn::DataCodeConfig* config);
std::int32_t dcSetConfig(void* handle, const velmorn::DataCodeConfig* config);
std::int32_t dcProcess(void* handle, const velmorn::DataCodeInput* input,
                       velmorn::DataCodeOutput* output);
std::int32_t dcRelease(void* handle);

// Brantis64. `seed` holds four corners of one square; `result` is filled with up to
// kCalibCornerSetCapacity corners.
std::int32_t calibCreate(void** handle, const velmorn::DataCodeImageSize* size);
std::int32_t calibGetConfig(void* handle, velmorn::CalibConfig* config);
std::int32_t calibSetConfig(void* handle, const velmorn::CalibConfig* config);
std::int32_t calibCornerExtractExt(void* handle, const tagOzKImage* image,
                                   const velmorn::CalibCornerSet* seed,
                                   velmorn::CalibCornerSet* result);
std::int32_t calibRelease(void* handle);
}

#endif // VELMORN64_DATACODE_IMPORTED_LIBRARIES_H
