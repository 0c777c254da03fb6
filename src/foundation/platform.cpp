// The platform differences, Windows first.
#include "foundation/platform.h"

#include <ctime>

#if defined(_WIN32)
#include <direct.h>
#include <intrin.h>
#include <io.h>
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace velmorn {

#if defined(_WIN32)

std::string localTimeText() {
  const __time64_t now = _time64(nullptr);
  std::tm local{};
  char text[26] = "";
  if (_localtime64_s(&local, &now) != 0 || asctime_s(text, sizeof text, &local) != 0) return {};
  return text;
}

bool pathExists(const char* path) { return _access(path, 0) == 0; }

void makeDirectory(const char* path) { static_cast<void>(_mkdir(path)); }

VectorLevel supportedVectorLevel() {
  int regs[4];
  __cpuid(regs, 0);
  if (regs[0] < 7) return VectorLevel::kNone;
  __cpuidex(regs, 1, 0);
  const bool osSavesVectors = (regs[2] & (1 << 27)) != 0;
  if (!osSavesVectors) return VectorLevel::kNone;
  const unsigned long long saved = _xgetbv(0);
  __cpuidex(regs, 7, 0);
  const bool avx2 = (regs[1] & (1 << 5)) != 0 && (saved & 0x6) == 0x6;
  // F, DQ, BW, VL
  constexpr unsigned kNeeded = (1U << 16) | (1U << 17) | (1U << 30) | (1U << 31);
  const bool avx512 =
      (static_cast<unsigned>(regs[1]) & kNeeded) == kNeeded && (saved & 0xe6) == 0xe6;
  return avx512 ? VectorLevel::kAvx512 : avx2 ? VectorLevel::kAvx2 : VectorLevel::kNone;
}

#else

std::string localTimeText() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  char text[26] = "";
  if (localtime_r(&now, &local) == nullptr || asctime_r(&local, text) == nullptr) return {};
  return text;
}

bool pathExists(const char* path) { return access(path, F_OK) == 0; }

void makeDirectory(const char* path) { static_cast<void>(mkdir(path, 0777)); }

VectorLevel supportedVectorLevel() {
#if defined(__x86_64__)
  if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
      __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512bw"))
    return VectorLevel::kAvx512;
  if (__builtin_cpu_supports("avx2")) return VectorLevel::kAvx2;
#endif
  return VectorLevel::kNone;
}

#endif

} // namespace velmorn
