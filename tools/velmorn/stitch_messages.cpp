// What the library says on the console during a stitching run.
#include "velmorn/stitch_messages.h"

#include <array>
#include <utility>

namespace velmorn::tool {
namespace {

bool startsWith(const std::string& text, const std::string& head) {
  return text.compare(0, head.size(), head) == 0;
}

// The messages that can follow "find corner: PATH", one of them each time.
std::array<std::pair<std::string, ImageOutcome>, 4> outcomeTexts(const std::string& path) {
  return {{{"success\n", ImageOutcome::kBoardFound},
           {"failed\n", ImageOutcome::kNoBoard},
           {"load " + path + " failed\n", ImageOutcome::kNotLoaded},
           {"image size is error\n", ImageOutcome::kWrongSize}}};
}

} // namespace

StitchMessages::StitchMessages(const ImagePathMap& images,
                               std::function<void(const ImageReport&)> report)
    : report_(std::move(report)) {
  for (const auto& [camera, paths] : images) {
    outcomes_[camera].assign(paths.size(), ImageOutcome::kUnknown);
    for (std::size_t j = 0; j < paths.size(); ++j) expected_.push_back({camera, j, paths[j]});
  }
}

StitchMessages::int_type StitchMessages::overflow(int_type c) {
  if (!traits_type::eq_int_type(c, traits_type::eof())) {
    take(std::string(1, traits_type::to_char_type(c)));
  }
  return traits_type::not_eof(c);
}

std::streamsize StitchMessages::xsputn(const char* text, std::streamsize length) {
  take(std::string(text, static_cast<std::size_t>(length)));
  return length;
}

void StitchMessages::take(const std::string& text) {
  if (complete() || !rest_.empty()) {
    rest_ += text;
    return;
  }
  pending_ += text;
  while (!complete() && takeImage()) {
  }
  if (complete()) rest_ += std::exchange(pending_, "");
}

// Takes the next image's messages off `pending_` when they are there in full. Text that cannot
// become them ends the following of the images.
bool StitchMessages::takeImage() {
  const Expected& image = expected_[next_];
  bool possible = false;
  for (const auto& [text, outcome] : outcomeTexts(image.path)) {
    const std::string message = "find corner: " + image.path + "\n" + text;
    if (startsWith(pending_, message)) {
      pending_.erase(0, message.size());
      finish(image, outcome);
      return true;
    }
    possible = possible || startsWith(message, pending_);
  }
  if (!possible) rest_ = std::exchange(pending_, "");
  return false;
}

void StitchMessages::finish(const Expected& image, ImageOutcome outcome) {
  outcomes_[image.camera][image.index] = outcome;
  ++next_;
  report_({next_, expected_.size(), image.camera, image.path, outcome, ""});
}

} // namespace velmorn::tool
