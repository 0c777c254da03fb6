// Another extractor: hands its seed back.
#include "datacode/imported_libraries.h"

std::int32_t calibCreate(void** handle, const velmorn::DataCodeImageSize*) {
  *handle = nullptr;
  return 0;
}
std::int32_t calibGetConfig(void*, velmorn::CalibConfig*) { return 0; }
std::int32_t calibSetConfig(void*, const velmorn::CalibConfig*) { return 0; }
std::int32_t calibCornerExtractExt(void*, const tagOzKImage*, const velmorn::CalibCornerSet* seed,
                                   velmorn::CalibCornerSet* result) {
  *result = *seed;
  return 0;
}
std::int32_t calibRelease(void*) { return 0; }
