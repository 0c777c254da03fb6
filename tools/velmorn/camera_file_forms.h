// The forms that camera files come in, read as they stand; camera_file.h checks what they say.
#ifndef VELMORN64_TOOLS_CAMERA_FILE_FORMS_H
#define VELMORN64_TOOLS_CAMERA_FILE_FORMS_H

#include <string>
#include <vector>

namespace velmorn::tool {

// A matrix as a file gives it; nothing about it is checked.
struct RawMatrix {
  int rows = 0;
  int cols = 0;
  std::vector<double> data; // row by row
};

// A camera as a file gives it.
struct RawCamera {
  int imageWidth = 0; // pixels, 0 when the file does not say
  int imageHeight = 0;
  RawMatrix cameraMatrix;
  std::string distortionModel; // empty when the file does not say
  RawMatrix distortion;
};

// True when the text is what cv::FileStorage reads: its YAML, XML or JSON.
bool isFileStorageText(const std::string& text);

// Both throw ToolError that says what is missing or not readable, without the file's name.
RawCamera readFileStorageForm(const std::string& text);
RawCamera readCameraInfoForm(const std::string& text); // ROS camera_info YAML

} // namespace velmorn::tool

#endif // VELMORN64_TOOLS_CAMERA_FILE_FORMS_H
