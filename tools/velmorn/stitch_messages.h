// What the library says on the console during a stitching run.
#ifndef VELMORN64_TOOLS_STITCH_MESSAGES_H
#define VELMORN64_TOOLS_STITCH_MESSAGES_H

#include <cstddef>
#include <functional>
#include <map>
#include <streambuf>
#include <string>
#include <vector>

#include "stitching/stitching_types.h"

namespace velmorn::tool {

enum class ImageOutcome { kUnknown, kBoardFound, kNoBoard, kNotLoaded, kWrongSize };

// Per camera the outcome of each of its images.
using OutcomeMap = std::map<std::string, std::vector<ImageOutcome>>;

// One image that the library has finished with.
struct ImageReport {
  std::size_t number = 0; // from 1, over all cameras
  std::size_t total = 0;
  std::string camera;
  std::string path;
  ImageOutcome outcome = ImageOutcome::kUnknown;
  std::string detail; // what there is to say besides; may be empty
};

// Takes the place of the console and follows the search for the board image by image.
//
// The images and their order (cameras by id, then list order) are known beforehand, so every
// message is compared with the one text that can stand there: no file name, however odd, is taken
// for a message.
class StitchMessages : public std::streambuf {
 public:
  // `report` is called for every image in turn.
  StitchMessages(const ImagePathMap& images, std::function<void(const ImageReport&)> report);

  const OutcomeMap& outcomes() const { return outcomes_; }

  // True when every image was reported as expected.
  bool complete() const { return next_ == expected_.size(); }

  // What came after the last image, or from the first unexpected message on.
  const std::string& rest() const { return rest_; }

 protected:
  int_type overflow(int_type c) override;
  std::streamsize xsputn(const char* text, std::streamsize length) override;

 private:
  struct Expected {
    std::string camera;
    std::size_t index; // in the camera's list
    std::string path;
  };

  void take(const std::string& text);
  bool takeImage();
  void finish(const Expected& image, ImageOutcome outcome);

  std::vector<Expected> expected_;
  std::function<void(const ImageReport&)> report_;
  OutcomeMap outcomes_;
  std::size_t next_ = 0; // in expected_
  std::string pending_;  // the beginning of a message
  std::string rest_;
};

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_STITCH_MESSAGES_H
