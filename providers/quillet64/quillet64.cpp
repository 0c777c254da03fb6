// The reader's C functions. They return 0, also without a code, or a code of provider_boundary.h;
// nothing is written then.
#include <cmath>
#include <cstdint>
#include <memory>

#include "common/provider_boundary.h"
#include "datacode/imported_libraries.h"
#include "quillet64/code_reader.h"

namespace {

using velmorn::provider::guarded;
using velmorn::provider::isUsable;
using velmorn::provider::kBadArgument;
using velmorn::provider::kBadImage;

// What a handle stands for; the output's pointers lead into it.
struct Reader {
  velmorn::DataCodeImageSize size{};
  velmorn::DataCodeConfig config{};
  std::string text;
  std::int32_t corners[8] = {};
  velmorn::DataCodeItem item{};
};

void keep(const velmorn::quillet::FoundCode& code, Reader& reader) {
  reader.text = code.text;
  for (std::size_t k = 0; k < 4; ++k) {
    reader.corners[2 * k] = static_cast<std::int32_t>(std::lround(code.squareCorners[k].x));
    reader.corners[2 * k + 1] = static_cast<std::int32_t>(std::lround(code.squareCorners[k].y));
  }
  reader.item.content = reader.text.c_str();
  reader.item.corners = reader.corners;
}

std::int32_t process(Reader& reader, const velmorn::DataCodeInput& input,
                     velmorn::DataCodeOutput& output) {
  if (!isUsable(input.image, reader.size)) return kBadImage;
  const cv::Mat grey(reader.size.height, reader.size.width, CV_8UC1, input.image->data);
  const auto code = velmorn::quillet::findCode(grey);
  if (code) keep(*code, reader);
  output.count = code ? 1 : 0;
  output.items = code ? &reader.item : nullptr;
  return 0;
}

} // namespace

std::int32_t dcCreate(void** handle, const velmorn::DataCodeImageSize* size) {
  return guarded([&] {
    if (handle == nullptr || size == nullptr) return kBadArgument;
    if (size->width < 1 || size->height < 1) return kBadImage;
    auto reader = std::make_unique<Reader>();
    reader->size = *size;
    *handle = reader.release();
    return std::int32_t{0};
  });
}

std::int32_t dcGetConfig(void* handle, velmorn::DataCodeConfig* config) {
  if (handle == nullptr || config == nullptr) return kBadArgument;
  *config = static_cast<Reader*>(handle)->config;
  return 0;
}

std::int32_t dcSetConfig(void* handle, const velmorn::DataCodeConfig* config) {
  if (handle == nullptr || config == nullptr) return kBadArgument;
  static_cast<Reader*>(handle)->config = *config;
  return 0;
}

std::int32_t dcProcess(void* handle, const velmorn::DataCodeInput* input,
                       velmorn::DataCodeOutput* output) {
  return guarded([&] {
    if (handle == nullptr || input == nullptr || output == nullptr) return kBadArgument;
    return process(*static_cast<Reader*>(handle), *input, *output);
  });
}

std::int32_t dcRelease(void* handle) {
  if (handle == nullptr) return kBadArgument;
  delete static_cast<Reader*>(handle);
  return 0;
}
