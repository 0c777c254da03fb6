// Corners of a data-code board: the calls into the two imported libraries, and their outcome.
#include "datacode/data_code_corners.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "datacode/code_content.h"
#include "datacode/imported_libraries.h"
#include "foundation/boundary.h"
#include "foundation/log.h"
#include "foundation/truncation.h"

namespace velmorn {
namespace {

DataCodeImageSize sizeOf(const tagOzKImage& image) {
  return {static_cast<std::int32_t>(image.width), static_cast<std::int32_t>(image.height)};
}

// "NAME failed.return value is CODE", to the log and to the console.
void reportFailure(const std::string& function, int code) {
  const std::string text = function + " failed.return value is " + std::to_string(code) + "\n";
  writeLog(kLogPath, "%s", text.c_str());
  printConsole(text);
}

// The log's text and the console's differ by two characters.
void reportCreateFailure(int code, const DataCodeImageSize& size) {
  writeLog(kLogPath, "dcCreate failed.return value is %d.imgSize(%d,%d)\n", code, size.width,
           size.height);
  printConsole("dcCreate failed.return value is " + std::to_string(code) + ".imgSize is (" +
               std::to_string(size.width) + "," + std::to_string(size.height) + ")\n");
}

void reportContent(const char* text) {
  writeLog(kLogPath, "finded code is %s\n", text);
  printConsole("finded code is " + std::string(text) + "\n");
}

// The square size stands twice in the message.
void reportParsed(const CodeContent& code) {
  const double s = static_cast<double>(code.squareSize);
  char text[256]; // no float takes more than 47 characters
  std::snprintf(text, sizeof text, "parsed code content is (%d,%d),(%f,%f)\n", code.a, code.b, s,
                s);
  writeLog(kLogPath, "%s", text);
  printConsole(text);
}

// The three values and their places are the reader's own affair.
void configureReader(void* reader) {
  DataCodeConfig config{};
  dcGetConfig(reader, &config);
  config.field0 = 1;
  config.field56 = 30;
  config.field68 = 2;
  dcSetConfig(reader, &config);
}

void configureExtractor(void* extractor, float squareSize) {
  CalibConfig config{};
  calibGetConfig(extractor, &config);
  config.squareSizeA = config.squareSizeB = truncatedToInt(static_cast<double>(squareSize));
  calibSetConfig(extractor, &config);
}

// The first code, or nothing. An item without text or corners is none.
const DataCodeItem* firstCode(const DataCodeOutput& output) {
  if (output.count < 1 || output.items == nullptr) return nullptr;
  const DataCodeItem& first = output.items[0];
  return first.content == nullptr || first.corners == nullptr ? nullptr : &first;
}

// Makes a reader and lets it work. The reader stays, also after a failure.
int readCode(const tagOzKImage* image, void*& reader, DataCodeOutput& output) {
  const DataCodeImageSize size = sizeOf(*image);
  int status = dcCreate(&reader, &size);
  if (status != 0) {
    reportCreateFailure(status, size);
    return status;
  }
  configureReader(reader);
  DataCodeInput input{};
  input.image = image;
  status = dcProcess(reader, &input, &output);
  if (status != 0) reportFailure("dcProcess", status);
  return status;
}

// Makes an extractor and lets it work. The extractor stays, also after a failure.
int extractCorners(const tagOzKImage* image, float squareSize, const CalibCornerSet& seed,
                   void*& extractor, CalibCornerSet& result) {
  const DataCodeImageSize size = sizeOf(*image);
  int status = calibCreate(&extractor, &size);
  if (status != 0) {
    reportFailure("calibCreate", status);
    return status;
  }
  configureExtractor(extractor, squareSize);
  status = calibCornerExtractExt(extractor, image, &seed, &result);
  if (status != 0) reportFailure("calibCornerExtractExt", status);
  return status;
}

// Every corner is moved by half a pixel, the seeds never. Hosts depend on it.
float lessHalfAPixel(float coordinate) {
  return static_cast<float>(static_cast<double>(coordinate) - 0.5);
}

// A count that the record cannot hold is cut to what it holds.
void takeCorners(const CalibCornerSet& result, std::vector<cv::Point2f>& imagePts,
                 std::vector<cv::Point3f>& worldPts) {
  const int count = std::min<int>(result.count, kCalibCornerSetCapacity);
  imagePts.clear();
  worldPts.clear();
  for (int i = 0; i < count; ++i) {
    imagePts.emplace_back(lessHalfAPixel(result.column[i]), lessHalfAPixel(result.row[i]));
    worldPts.emplace_back(result.worldX[i], result.worldY[i], 0.0F);
  }
}

void release(void* reader, void* extractor) {
  int status = dcRelease(reader);
  if (status != 0) reportFailure("dcRelease", status);
  status = calibRelease(extractor);
  if (status != 0) reportFailure("calibRelease", status);
}

} // namespace

// A failure in between leaves the handles made so far to the libraries: the host's other handles
// must not be disturbed by a library that has just failed.
int findDataCodeChessCornerPtAndWorldPt(const tagOzKImage* image,
                                        std::vector<cv::Point2f>& imagePts,
                                        std::vector<cv::Point3f>& worldPts) {
  void* reader = nullptr;
  DataCodeOutput output{};
  int status = readCode(image, reader, output);
  if (status != 0) return status;

  const DataCodeItem* item = firstCode(output);
  if (item == nullptr) {
    writeLog(kLogPath, "find data code failed\n");
    printConsole("find data code failed\n");
    return kOzkNoDataCode;
  }
  reportContent(item->content);
  const CodeContent code = parseCodeContent(item->content);
  reportParsed(code);

  const CalibCornerSet seed = seedFromCode(code, item->corners);
  void* extractor = nullptr;
  CalibCornerSet result{};
  status = extractCorners(image, code.squareSize, seed, extractor, result);
  if (status != 0) return status;

  takeCorners(result, imagePts, worldPts);
  release(reader, extractor);
  return kOzkSuccess;
}

namespace {

int findCorners(const tagOzKImage* image, std::vector<tagOzKPoint2Df32>& imagePts,
                std::vector<tagOzKPoint3Df32>& worldPts) {
  if (image == nullptr) return kOzkNullPointer;
  std::vector<cv::Point2f> inImage;
  std::vector<cv::Point3f> onBoard;
  const int status = findDataCodeChessCornerPtAndWorldPt(image, inImage, onBoard);
  if (status != kOzkSuccess) return status;

  std::vector<tagOzKPoint2Df32> pixels;
  std::vector<tagOzKPoint3Df32> places;
  for (const cv::Point2f& p : inImage) pixels.push_back({p.x, p.y});
  for (const cv::Point3f& p : onBoard) places.push_back({p.x, p.y, p.z});
  imagePts.swap(pixels);
  worldPts.swap(places);
  return kOzkSuccess;
}

} // namespace
} // namespace velmorn

int ozkFindDataCodeChessCornerPtAndWorldPt(tagOzKImage* image,
                                           std::vector<tagOzKPoint2Df32>& imagePts,
                                           std::vector<tagOzKPoint3Df32>& worldPts) {
  return velmorn::guarded([&] { return velmorn::findCorners(image, imagePts, worldPts); });
}
