// Drops what is written to a standard stream, whoever writes it.
#ifndef VELMORN64_TOOLS_SILENCED_DESCRIPTOR_H
#define VELMORN64_TOOLS_SILENCED_DESCRIPTOR_H

namespace velmorn::tool {

constexpr int kStandardOutput = 1;
constexpr int kStandardError = 2;

// Sends a descriptor to nowhere for as long as it lives. What C's buffer of the stream still holds
// has to be flushed before, and again at the end.
class SilencedDescriptor {
 public:
  explicit SilencedDescriptor(int descriptor);
  ~SilencedDescriptor();
  SilencedDescriptor(const SilencedDescriptor&) = delete;
  SilencedDescriptor& operator=(const SilencedDescriptor&) = delete;

 private:
  int descriptor_;
  int previous_; // a second descriptor of where it went; -1 when there is none to come back to
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_SILENCED_DESCRIPTOR_H
