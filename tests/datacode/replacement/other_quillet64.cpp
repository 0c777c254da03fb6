// Another reader: always the same code.
#include "datacode/imported_libraries.h"

namespace {

const std::int32_t corners[8] = {10, 40, 10, 20, 30, 20, 30, 40};
const velmorn::DataCodeItem item = {"3,5,20", {}, corners};

} // namespace

std::int32_t dcCreate(void** handle, const velmorn::DataCodeImageSize*) {
  *handle = nullptr;
  return 0;
}
std::int32_t dcGetConfig(void*, velmorn::DataCodeConfig*) { return 0; }
std::int32_t dcSetConfig(void*, const velmorn::DataCodeConfig*) { return 0; }
std::int32_t dcProcess(void*, const velmorn::DataCodeInput*, velmorn::DataCodeOutput* output) {
  output->count = 1;
  output->items = &item;
  return 0;
}
std::int32_t dcRelease(void*) { return 0; }
