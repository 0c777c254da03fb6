// Tests without memory, where the process's address space can be limited.
#ifndef VELMORN64_TESTS_SUPPORT_MEMORY_LIMIT_H
#define VELMORN64_TESTS_SUPPORT_MEMORY_LIMIT_H

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

// Allows the process this many bytes beyond what it has, while it lives.
class MemoryLimit {
 public:
  explicit MemoryLimit(rlim_t bytes) {
    getrlimit(RLIMIT_AS, &before_);
    std::ifstream sizes("/proc/self/statm");
    rlim_t pages = 0;
    sizes >> pages;
    rlimit limit = before_;
    limit.rlim_cur = 4096 * pages + bytes;
    setrlimit(RLIMIT_AS, &limit);
  }
  ~MemoryLimit() { setrlimit(RLIMIT_AS, &before_); }
  MemoryLimit(const MemoryLimit&) = delete;
  MemoryLimit& operator=(const MemoryLimit&) = delete;

 private:
  rlimit before_;
};

// While it lives the process gets no block of 256 KiB or more; smaller ones it may get.
class NoLargeMemory {
 public:
  NoLargeMemory() : held_(makeRoom()), limit_(0) {
    constexpr std::size_t kLarge = 256 << 10;
    while (held_.size() < held_.capacity()) {
      void* block = std::malloc(kLarge);
      if (block == nullptr) break;
      held_.push_back(block);
    }
  }
  ~NoLargeMemory() {
    for (void* block : held_) std::free(block);
  }

 private:
  static std::vector<void*> makeRoom() {
    std::vector<void*> room;
    room.reserve(100000);
    return room;
  }

  std::vector<void*> held_; // what was free within the process
  MemoryLimit limit_;
};

} // namespace velmorn
#endif

#endif // VELMORN64_TESTS_SUPPORT_MEMORY_LIMIT_H
