// Stand-ins for the two imported libraries.
#include "datacode/fake_libraries.h"

#include <algorithm>
#include <cstring>

namespace velmorn::fake {
namespace {

struct Stage {
  std::vector<Shot> shots;
  std::vector<std::string> calls;
  std::vector<Record> records;
  DataCodeItem item{};
};

Stage stage;

void note(const char* name) { stage.calls.emplace_back(name); }

void note(const char* name, const void* handle, int expected) {
  const bool isRight = reinterpret_cast<std::intptr_t>(handle) == expected;
  stage.calls.push_back(name + std::string(isRight ? "" : " (wrong handle)"));
}

// An image starts with dcCreate.
const Shot& shot() { return stage.shots[std::min(stage.records.size(), stage.shots.size()) - 1]; }

Record& record() { return stage.records.back(); }

void fill(const Shot& shot, CalibCornerSet& result) {
  const std::size_t held = std::min<std::size_t>(shot.corners.size(), kCalibCornerSetCapacity);
  for (std::size_t i = 0; i < held; ++i) {
    result.column[i] = shot.corners[i].column;
    result.row[i] = shot.corners[i].row;
    result.worldX[i] = shot.corners[i].worldX;
    result.worldY[i] = shot.corners[i].worldY;
  }
  result.count = shot.count == -1000 ? static_cast<int>(shot.corners.size()) : shot.count;
}

} // namespace

void play(const std::vector<Shot>& shots) {
  stage = Stage();
  stage.shots = shots;
}

const std::vector<std::string>& calls() { return stage.calls; }
const std::vector<Record>& records() { return stage.records; }

} // namespace velmorn::fake

using namespace velmorn;
using namespace velmorn::fake;

std::int32_t dcCreate(void** handle, const DataCodeImageSize* size) {
  stage.records.emplace_back();
  note("dcCreate");
  record().readerSize = *size;
  *handle = reinterpret_cast<void*>(std::intptr_t{kReaderHandle});
  return shot().dcCreate;
}

std::int32_t dcGetConfig(void* handle, DataCodeConfig* config) {
  note("dcGetConfig", handle, kReaderHandle);
  std::memset(static_cast<void*>(config), kConfigByte, sizeof *config);
  return -77; // nobody asks
}

std::int32_t dcSetConfig(void* handle, const DataCodeConfig* config) {
  note("dcSetConfig", handle, kReaderHandle);
  std::memcpy(record().readerConfig.data(), config, sizeof *config);
  return -78;
}

std::int32_t dcProcess(void* handle, const DataCodeInput* input, DataCodeOutput* output) {
  note("dcProcess", handle, kReaderHandle);
  record().readerImage = input->image;
  record().image = *input->image;
  stage.item.content = shot().hasContent ? shot().content.c_str() : nullptr;
  stage.item.corners = shot().hasCorners ? shot().codeCorners.data() : nullptr;
  output->count = shot().codes;
  output->items = shot().hasItems ? &stage.item : nullptr;
  return shot().dcProcess;
}

std::int32_t dcRelease(void* handle) {
  note("dcRelease", handle, kReaderHandle);
  return shot().dcRelease;
}

std::int32_t calibCreate(void** handle, const DataCodeImageSize* size) {
  note("calibCreate");
  record().extractorSize = *size;
  *handle = reinterpret_cast<void*>(std::intptr_t{kExtractorHandle});
  return shot().calibCreate;
}

std::int32_t calibGetConfig(void* handle, CalibConfig* config) {
  note("calibGetConfig", handle, kExtractorHandle);
  std::memset(static_cast<void*>(config), kConfigByte, sizeof *config);
  return -79;
}

std::int32_t calibSetConfig(void* handle, const CalibConfig* config) {
  note("calibSetConfig", handle, kExtractorHandle);
  std::memcpy(record().extractorConfig.data(), config, sizeof *config);
  return -80;
}

std::int32_t calibCornerExtractExt(void* handle, const tagOzKImage* image,
                                   const CalibCornerSet* seed, CalibCornerSet* result) {
  note("calibCornerExtractExt", handle, kExtractorHandle);
  record().extractorImage = image;
  record().seed = *seed;
  fill(shot(), *result);
  return shot().calibCornerExtractExt;
}

std::int32_t calibRelease(void* handle) {
  note("calibRelease", handle, kExtractorHandle);
  return shot().calibRelease;
}
