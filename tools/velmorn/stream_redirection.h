// Sends what is written to a stream elsewhere.
#ifndef VELMORN64_TOOLS_STREAM_REDIRECTION_H
#define VELMORN64_TOOLS_STREAM_REDIRECTION_H

#include <ostream>
#include <streambuf>

namespace velmorn::tool {

// Sends a stream to another buffer for as long as it lives.
class StreamRedirection {
 public:
  StreamRedirection(std::ostream& stream, std::streambuf& target)
      : stream_(stream), original_(stream.rdbuf(&target)) {}
  ~StreamRedirection() { stream_.rdbuf(original_); }
  StreamRedirection(const StreamRedirection&) = delete;
  StreamRedirection& operator=(const StreamRedirection&) = delete;

 private:
  std::ostream& stream_;
  std::streambuf* original_;
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_STREAM_REDIRECTION_H
