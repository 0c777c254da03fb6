// Tests without memory, where the process's address space can be limited.
#ifndef VELMORN64_TESTS_DEPTH_MEMORY_LIMIT_H
#define VELMORN64_TESTS_DEPTH_MEMORY_LIMIT_H

// The sanitizers' own mappings do not fit into a limited address space.
#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__)
#if defined(__has_feature)
#if !__has_feature(address_sanitizer)
#define VELMORN_MEMORY_CAN_BE_LIMITED
#endif
#else
#define VELMORN_MEMORY_CAN_BE_LIMITED
#endif
#endif

#if defined(VELMORN_MEMORY_CAN_BE_LIMITED)
#include <sys/resource.h>

#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <vector>

namespace velmorn {

// While it lives the process gets no block of 256 KiB or more; smaller ones it may get.
class NoLargeMemory {
 public:
  NoLargeMemory() {
    held_.reserve(100000);
    getrlimit(RLIMIT_AS, &before_);
    std::ifstream sizes("/proc/self/statm");
    rlim_t pages = 0;
    sizes >> pages;
    rlimit limit = before_;
    limit.rlim_cur = 4096 * pages;
    setrlimit(RLIMIT_AS, &limit);
    constexpr std::size_t kLarge = 256 << 10;
    while (held_.size() < held_.capacity()) {
      void* block = std::malloc(kLarge);
      if (block == nullptr) break;
      held_.push_back(block);
    }
  }
  ~NoLargeMemory() {
    setrlimit(RLIMIT_AS, &before_);
    for (void* block : held_) std::free(block);
  }
  NoLargeMemory(const NoLargeMemory&) = delete;
  NoLargeMemory& operator=(const NoLargeMemory&) = delete;

 private:
  rlimit before_;
  std::vector<void*> held_; // what was free within the process
};

} // namespace velmorn
#endif

#endif // VELMORN64_TESTS_DEPTH_MEMORY_LIMIT_H
