// Camera files: every form, and every refusal.
#include "velmorn/camera_file.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>

#include "support/temp_dir.h"
#include "tools/expect_tool_error.h"
#include "tools/rig_builder.h"

namespace velmorn::tool {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kCameraInfo =
    "image_width: 640\n"
    "image_height: 480\n"
    "camera_name: narrow_stereo\n"
    "camera_matrix:\n  rows: 3\n  cols: 3\n"
    "  data: [500, 0, 320, 0, 510, 240, 0, 0, 1]\n"
    "distortion_model: plumb_bob\n"
    "distortion_coefficients:\n  rows: 1\n  cols: 5\n"
    "  data: [0.1, -0.2, 1.0e-3, 0.002, 0.3]\n"
    "rectification_matrix:\n  rows: 3\n  cols: 3\n  data: [1, 0, 0, 0, 1, 0, 0, 0, 1]\n";

constexpr const char* kXml =
    "<?xml version=\"1.0\"?>\n<opencv_storage>\n"
    "<image_width>640</image_width>\n<image_height>480</image_height>\n"
    "<camera_matrix type_id=\"opencv-matrix\"><rows>3</rows><cols>3</cols><dt>d</dt>\n"
    "<data>500. 0. 320. 0. 510. 240. 0. 0. 1.</data></camera_matrix>\n"
    "<distortion_coefficients type_id=\"opencv-matrix\"><rows>5</rows><cols>1</cols><dt>d</dt>\n"
    "<data>0.1 -0.2 0.001 0.002 0.3</data></distortion_coefficients>\n</opencv_storage>\n";

constexpr const char* kJson =
    "{\n\"image_width\": 640, \"image_height\": 480,\n"
    "\"camera_matrix\": {\"type_id\": \"opencv-matrix\", \"rows\": 3, \"cols\": 3, \"dt\": \"d\",\n"
    "  \"data\": [500.0, 0.0, 320.0, 0.0, 510.0, 240.0, 0.0, 0.0, 1.0]},\n"
    "\"distortion_coefficients\": {\"type_id\": \"opencv-matrix\", \"rows\": 1, \"cols\": 5,\n"
    "  \"dt\": \"d\", \"data\": [0.1, -0.2, 0.001, 0.002, 0.3]}\n}\n";

// The text with its first `from` replaced.
std::string replaced(std::string text, const std::string& from, const std::string& to) {
  return text.replace(text.find(from), from.size(), to);
}

class CameraFile : public TempDirTest {
 protected:
  CameraModel read(const std::string& text) {
    writeFile("cam", text);
    return readCameraFile("cam");
  }
  std::string refusal(const std::string& text) {
    return toolError([&] { read(text); });
  }
};

void expectSample(const CameraModel& model) {
  EXPECT_THAT(model.intrinsic.matrix, ElementsAre(500, 0, 320, 0, 510, 240, 0, 0, 1));
  EXPECT_THAT(model.distortion.coeffs,
              ElementsAre(0.1, -0.2, 0.001, 0.002, 0.3, 0, 0, 0, 0, 0, 0, 0));
  EXPECT_EQ(model.imageSize, cv::Size(640, 480));
}

TEST_F(CameraFile, ReadsOpenCvYaml) { expectSample(read(cameraYaml())); }
TEST_F(CameraFile, ReadsOpenCvXml) { expectSample(read(kXml)); }
TEST_F(CameraFile, ReadsOpenCvJson) { expectSample(read(kJson)); }
TEST_F(CameraFile, ReadsRosCameraInfo) { expectSample(read(kCameraInfo)); }
TEST_F(CameraFile, ReadsWindowsLineEnds) {
  std::string text;
  for (const char* c = kCameraInfo; *c != '\0'; ++c)
    text += *c == '\n' ? "\r\n" : std::string(1, *c);
  expectSample(read(text));
}

TEST_F(CameraFile, ReadsBackWhatItWrites) {
  Calibration calibration;
  calibration.imageSize = cv::Size(640, 480);
  calibration.cameraMatrix = (cv::Mat_<double>(3, 3) << 501.25, 0, 1. / 3, 0, 500, 240, 0, 0, 1);
  calibration.distortion = (cv::Mat_<double>(1, 5) << 0.1, -0.2, 1e-17, 0.7 / 9, 3);
  calibration.reprojectionRms = 0.5;
  const std::string text = cameraFileText(calibration);
  EXPECT_THAT(text, StartsWith("%YAML:1.0"));
  EXPECT_THAT(text, HasSubstr("avg_reprojection_error: 5.0"));

  const CameraModel model = read(text);
  EXPECT_THAT(model.intrinsic.matrix, ElementsAre(501.25, 0, 1. / 3, 0, 500, 240, 0, 0, 1));
  EXPECT_THAT(model.distortion.coeffs,
              ElementsAre(0.1, -0.2, 1e-17, 0.7 / 9, 3, 0, 0, 0, 0, 0, 0, 0));
  EXPECT_EQ(model.imageSize, cv::Size(640, 480));
}

TEST_F(CameraFile, PadsShorterModels) {
  EXPECT_THAT(read(cameraYaml("1., 2., 3., 4.")).distortion.coeffs,
              ElementsAre(1, 2, 3, 4, 0, 0, 0, 0, 0, 0, 0, 0));
  EXPECT_THAT(read(cameraYaml("1., 2., 3., 4., 5., 6., 7., 8.")).distortion.coeffs,
              ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 0, 0, 0, 0));
  EXPECT_THAT(
      read(cameraYaml("1., 2., 3., 4., 5., 6., 7., 8., 9., 10., 11., 12.")).distortion.coeffs,
      ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12));
}

TEST_F(CameraFile, TakesFourteenCoefficientsWithoutTiltOnly) {
  const std::string twelve = "1., 2., 3., 4., 5., 6., 7., 8., 9., 10., 11., 12.";
  EXPECT_EQ(read(cameraYaml(twelve + ", 0., 0.")).distortion.coeffs[11], 12);
  EXPECT_THAT(refusal(cameraYaml(twelve + ", 0., 0.1")), HasSubstr("tilted sensor"));
}

TEST_F(CameraFile, RefusesOtherNumbersOfCoefficients) {
  for (const char* coefficients : {"1.", "1., 2., 3.", "1., 2., 3., 4., 5., 6."}) {
    EXPECT_THAT(refusal(cameraYaml(coefficients)),
                AllOf(StartsWith("cam: "), HasSubstr("4, 5, 8, 12 or 14 numbers")));
  }
}

TEST_F(CameraFile, RefusesOtherLensModels) {
  for (const char* model : {"equidistant", "fisheye", "kannala_brandt", "omni"}) {
    EXPECT_THAT(refusal(replaced(kCameraInfo, "plumb_bob", model)),
                AllOf(StartsWith("cam: "), HasSubstr(model), HasSubstr("not supported")));
  }
  EXPECT_THAT(refusal(cameraYaml() + "distortion_model: fisheye\n"), HasSubstr("not supported"));
}

TEST_F(CameraFile, RefusesMatricesThatAreNoCamera) {
  const std::string text = cameraYaml();
  EXPECT_THAT(refusal(replaced(text, "500.", "0.")), HasSubstr("above 0"));
  EXPECT_THAT(refusal(replaced(text, "510.", "-1.")), HasSubstr("above 0"));
  EXPECT_THAT(refusal(replaced(text, "500., 0.", "500., 0.5")), HasSubstr("fx 0 cx"));
  EXPECT_THAT(refusal(replaced(text, "0., 0., 1.", "0., 0., 2.")), HasSubstr("fx 0 cx"));
  EXPECT_THAT(refusal(replaced(text, "rows: 3\n   cols: 3", "rows: 9\n   cols: 1")),
              HasSubstr("9x1, not 3x3"));
  EXPECT_THAT(refusal(replaced(text, "0., 0., 1.", "0., 0.")), HasSubstr("rows times cols"));
}

TEST_F(CameraFile, RefusesNumbersThatAreNotFinite) {
  for (const char* number : {".Nan", ".Inf", "-.Inf"}) {
    EXPECT_THAT(refusal(replaced(cameraYaml(), "320.", number)), HasSubstr("not finite")) << number;
    EXPECT_THAT(refusal(replaced(cameraYaml(), "-0.2", number)), HasSubstr("not finite")) << number;
  }
  EXPECT_THAT(refusal(replaced(kCameraInfo, "320", ".nan")), HasSubstr("not finite"));
  EXPECT_THAT(refusal(replaced(kCameraInfo, "-0.2", ".inf")), HasSubstr("not finite"));
}

TEST_F(CameraFile, SaysWhatIsMissing) {
  EXPECT_THAT(refusal("%YAML:1.0\n---\nM1: 3\n"), HasSubstr("no matrix \"camera_matrix\""));
  EXPECT_THAT(refusal("image_width: 3\n"), HasSubstr("no matrix \"camera_matrix\""));
  EXPECT_THAT(refusal(replaced(cameraYaml(), "distortion_coefficients", "other")),
              HasSubstr("no matrix \"distortion_coefficients\""));
  EXPECT_THAT(refusal(replaced(kCameraInfo, "  data", "  values")), HasSubstr("no matrix"));
  EXPECT_THAT(refusal(replaced(kCameraInfo, "500", "wide")), HasSubstr("not readable as YAML"));
  EXPECT_THAT(refusal(replaced(cameraYaml(), "500.", "wide")), HasSubstr("no number"));
}

TEST_F(CameraFile, RefusesOtherFilesWithTheirName) {
  EXPECT_EQ(toolError([] { readCameraFile("missing.yml"); }), "no such file: missing.yml");
  const std::string garbage("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\xff\xfe", 18);
  for (const std::string& text : {std::string(), std::string("%YAML:1.0\n---\n"), std::string("{"),
                                  std::string("[1, 2]"), std::string("<?xml version=\"1.0\"?>"),
                                  std::string("{{{{"), std::string("a: [b"), garbage}) {
    const std::string refused = refusal(text);
    EXPECT_THAT(refused, StartsWith("cam: ")) << text;
  }
}

} // namespace
} // namespace velmorn::tool
