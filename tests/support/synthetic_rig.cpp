// Placing the cameras of a rig and the boards before them; corners and images from there.
#include "support/synthetic_rig.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include <opencv2/calib3d.hpp>
#include <opencv2/imgcodecs.hpp>

#include "support/matchers.h"

namespace velmorn {
namespace {

constexpr double kRadians = CV_PI / 180;

// Between neighbours on the arc, and at most across one group, so that all of it sees the board.
constexpr double kArcStep = 22 * kRadians;
constexpr double kArcOfGroup = 75 * kRadians;

constexpr double kSteepestView = 54 * kRadians; // off the board's normal
constexpr double kImageMargin = 8;              // pixels that the board stays away from the border

cv::Matx33d rotationAbout(const cv::Vec3d& axisTimesAngle) {
  cv::Matx33d rotation;
  cv::Rodrigues(axisTimesAngle, rotation);
  return rotation;
}

cv::Vec3d centreOf(const cv::Matx44d& camFromWorld) {
  const cv::Matx44d worldFromCam = inverseOf(camFromWorld);
  return {worldFromCam(0, 3), worldFromCam(1, 3), worldFromCam(2, 3)};
}

// Rows x, y, z of a frame whose z axis is `forward` and whose y axis points down (world y).
cv::Matx33d frameAlong(const cv::Vec3d& forward) {
  const cv::Vec3d z = cv::normalize(forward);
  const cv::Vec3d x = cv::normalize(cv::Vec3d(0, 1, 0).cross(z));
  const cv::Vec3d y = z.cross(x);
  return {x[0], x[1], x[2], y[0], y[1], y[2], z[0], z[1], z[2]};
}

double arcStep(const ViewGroups& groups) {
  int widest = 1;
  for (const std::vector<int>& group : groups) {
    const auto [first, last] = std::minmax_element(group.begin(), group.end());
    widest = std::max(widest, *last - *first);
  }
  return std::min(kArcStep, kArcOfGroup / widest);
}

// Camera i on the arc around the origin, looking at it.
cv::Matx44d placeCamera(int i, const RigOptions& options, cv::RNG& random) {
  const double middle = 0.5 * (options.cameraCount - 1);
  const double azimuth = (i - middle) * arcStep(options.groups);
  const double elevation = (i % 2 == 0 ? 9 : -8) * kRadians;
  const double distance = options.distance * (1 + 0.03 * (i * 7 % 3 - 1));
  const cv::Vec3d centre =
      distance * cv::Vec3d(std::sin(azimuth) * std::cos(elevation), std::sin(elevation),
                           -std::cos(azimuth) * std::cos(elevation));
  const cv::Vec3d roll(0, 0, random.uniform(-8.0, 8.0) * kRadians);
  const cv::Matx33d R = rotationAbout(roll) * frameAlong(-centre);
  return transformOf(R, -(R * centre));
}

// A board near the origin, turned towards the viewers' middle and then tilted.
cv::Matx44d sampleBoard(const cv::Vec3d& towardsBoard, const RigOptions& options, cv::RNG& random) {
  const double direction = random.uniform(0.0, 2 * CV_PI);
  const double tilt = random.uniform(5.0, 38.0) * kRadians;
  const cv::Vec3d tiltVector(tilt * std::cos(direction), tilt * std::sin(direction), 0);
  const cv::Vec3d roll(0, 0, random.uniform(-15.0, 15.0) * kRadians);
  const cv::Matx33d worldFromBoard =
      frameAlong(towardsBoard).t() * rotationAbout(tiltVector) * rotationAbout(roll);

  const BoardSpec& board = options.board;
  const cv::Vec3d middle(0.5 * (board.width - 1) * board.square,
                         0.5 * (board.height - 1) * board.square, 0);
  const double reach = 0.12 * options.distance;
  // In braces, where the numbers are drawn from left to right with every compiler.
  const cv::Vec3d place{random.uniform(-reach, reach), random.uniform(-reach, reach),
                        random.uniform(-reach, reach)};
  return transformOf(worldFromBoard, place - worldFromBoard * middle);
}

// The corners of the printed area, quiet zone included.
std::vector<cv::Point3f> outlineOf(const BoardSpec& board) {
  const auto low = static_cast<float>(-(1 + board.quietZone) * board.square);
  const auto right = static_cast<float>((board.width + board.quietZone) * board.square);
  const auto bottom = static_cast<float>((board.height + board.quietZone) * board.square);
  return {{low, low, 0}, {right, low, 0}, {right, bottom, 0}, {low, bottom, 0}};
}

bool seesBoard(const CameraModel& camera, const BoardSpec& board, const cv::Matx44d& camFromBoard) {
  const cv::Vec3d normal(camFromBoard(0, 2), camFromBoard(1, 2), camFromBoard(2, 2));
  const cv::Vec3d place(camFromBoard(0, 3), camFromBoard(1, 3), camFromBoard(2, 3));
  if (normal.dot(cv::normalize(place)) < std::cos(kSteepestView)) return false;
  const std::vector<cv::Point2f> pixels = projectPoints(camera, camFromBoard, outlineOf(board));
  return std::all_of(pixels.begin(), pixels.end(), [&](const cv::Point2f& pixel) {
    return pixel.x > kImageMargin && pixel.x < camera.imageSize.width - kImageMargin &&
           pixel.y > kImageMargin && pixel.y < camera.imageSize.height - kImageMargin;
  });
}

Shot placeBoard(const std::vector<int>& viewers, const SyntheticRig& rig, const RigOptions& options,
                cv::RNG& random) {
  constexpr int kAttempts = 20000;
  cv::Vec3d towardsBoard(0, 0, 0);
  for (const int viewer : viewers)
    towardsBoard -= cv::normalize(centreOf(rig.camFromWorld[static_cast<std::size_t>(viewer)]));
  for (int i = 0; i < kAttempts; ++i) {
    const Shot shot{sampleBoard(towardsBoard, options, random), viewers};
    const bool seen = std::all_of(viewers.begin(), viewers.end(), [&](int viewer) {
      const auto v = static_cast<std::size_t>(viewer);
      return seesBoard(rig.cameras[v], rig.board, rig.camFromWorld[v] * shot.worldFromBoard);
    });
    if (seen) return shot;
  }
  throw std::runtime_error("no board position that all cameras of a group see");
}

cv::Mat recordMatrix(int rows, int columns, const double* elements) {
  cv::Mat matrix(rows, columns, CV_64FC1);
  std::copy(elements, elements + rows * columns, matrix.ptr<double>());
  return matrix;
}

void writePng(const std::filesystem::path& path, const cv::Mat& image) {
  constexpr int kFast = 1;
  if (!cv::imwrite(path.string(), image, {cv::IMWRITE_PNG_COMPRESSION, kFast}))
    throw std::runtime_error("cannot write " + path.string());
}

// The files of one camera, named by its index because an identifier may hold anything.
std::vector<std::string> writeCameraImages(const SyntheticRig& rig, int camera,
                                           const std::filesystem::path& folder,
                                           ImageEffects effects) {
  const BoardRenderer renderer(rig.cameras[static_cast<std::size_t>(camera)]);
  const std::string prefix = "camera-" + std::to_string(camera) + "-";
  const std::filesystem::path empty = folder / (prefix + "empty.png");
  effects.seed += 1000 * static_cast<std::uint64_t>(camera);
  writePng(empty, renderer.renderEmpty(effects));
  std::vector<std::string> paths;
  for (int shot = 0; shot < static_cast<int>(rig.shots.size()); ++shot) {
    if (!rig.sees(camera, shot)) {
      paths.push_back(empty.string());
      continue;
    }
    ++effects.seed;
    const std::filesystem::path path = folder / (prefix + "shot-" + std::to_string(shot) + ".png");
    writePng(path, renderer.render(rig.board, rig.camFromBoard(camera, shot), effects));
    paths.push_back(path.string());
  }
  return paths;
}

} // namespace

ViewGroups rowGroups(int cameraCount) {
  std::vector<int> all;
  for (int i = 0; i < cameraCount; ++i) all.push_back(i);
  return {all};
}

ViewGroups chainGroups(int cameraCount) {
  ViewGroups groups;
  for (int i = 0; i + 1 < cameraCount; ++i) groups.push_back({i, i + 1});
  return groups;
}

ViewGroups diamondGroups(int cameraCount) {
  ViewGroups groups;
  for (int i = 1; i + 1 < cameraCount; ++i) {
    groups.push_back({0, i});
    groups.push_back({i, cameraCount - 1});
  }
  return groups;
}

bool SyntheticRig::sees(int camera, int shot) const {
  const std::vector<int>& viewers = shots[static_cast<std::size_t>(shot)].viewers;
  return std::find(viewers.begin(), viewers.end(), camera) != viewers.end();
}

cv::Matx44d SyntheticRig::camFromBoard(int camera, int shot) const {
  return camFromWorld[static_cast<std::size_t>(camera)] *
         shots[static_cast<std::size_t>(shot)].worldFromBoard;
}

cv::Matx44d SyntheticRig::camFromCam(int target, int source) const {
  return camFromWorld[static_cast<std::size_t>(target)] *
         inverseOf(camFromWorld[static_cast<std::size_t>(source)]);
}

std::map<std::string, tagOzKCamIntrinsic> SyntheticRig::intrinsicRecords() const {
  std::map<std::string, tagOzKCamIntrinsic> records;
  for (std::size_t i = 0; i < ids.size(); ++i) records[ids[i]] = cameras[i].intrinsicRecord();
  return records;
}

std::map<std::string, tagOzKCamDistortion> SyntheticRig::distortionRecords() const {
  std::map<std::string, tagOzKCamDistortion> records;
  for (std::size_t i = 0; i < ids.size(); ++i) records[ids[i]] = cameras[i].distortionRecord();
  return records;
}

MatrixMap SyntheticRig::intrinsicMatrices() const {
  MatrixMap matrices;
  for (const auto& [id, record] : intrinsicRecords())
    matrices[id] = recordMatrix(3, 3, record.matrix);
  return matrices;
}

MatrixMap SyntheticRig::distortionMatrices() const {
  MatrixMap matrices;
  for (const auto& [id, record] : distortionRecords())
    matrices[id] = recordMatrix(1, 12, record.coeffs);
  return matrices;
}

CornerMap SyntheticRig::cornerMap(double noiseSigma, std::uint64_t seed) const {
  cv::RNG random(seed);
  CornerMap corners;
  for (int camera = 0; camera < static_cast<int>(ids.size()); ++camera) {
    std::vector<std::vector<cv::Point2f>> lists(shots.size());
    for (int shot = 0; shot < static_cast<int>(shots.size()); ++shot) {
      if (!sees(camera, shot)) continue;
      auto& list = lists[static_cast<std::size_t>(shot)];
      list = projectCorners(cameras[static_cast<std::size_t>(camera)], board,
                            camFromBoard(camera, shot));
      for (cv::Point2f& corner : list) {
        corner.x += static_cast<float>(random.gaussian(noiseSigma));
        corner.y += static_cast<float>(random.gaussian(noiseSigma));
      }
    }
    corners[ids[static_cast<std::size_t>(camera)]] = lists;
  }
  return corners;
}

ImagePathMap SyntheticRig::writeImages(const std::filesystem::path& folder,
                                       const ImageEffects& effects) const {
  std::filesystem::create_directories(folder);
  ImagePathMap paths;
  for (int camera = 0; camera < static_cast<int>(ids.size()); ++camera)
    paths[ids[static_cast<std::size_t>(camera)]] =
        writeCameraImages(*this, camera, folder, effects);
  return paths;
}

SyntheticRig makeRig(const RigOptions& options) {
  cv::RNG random(options.seed);
  SyntheticRig rig;
  rig.board = options.board;
  rig.ids = options.ids;
  for (int i = 0; i < options.cameraCount; ++i) {
    if (options.ids.empty()) rig.ids.push_back("cam" + std::to_string(i));
    const double focal = options.focal * (1 + 0.01 * i);
    rig.cameras.push_back(options.distorted ? distortedCamera(options.imageSize, focal)
                                            : plainCamera(options.imageSize, focal));
    rig.camFromWorld.push_back(placeCamera(i, options, random));
  }
  for (const std::vector<int>& group : options.groups)
    for (int i = 0; i < options.shotsPerGroup; ++i)
      rig.shots.push_back(placeBoard(group, rig, options, random));
  return rig;
}

} // namespace velmorn
