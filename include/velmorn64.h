// velmorn64: rigid transforms between depth cameras that look at one calibration board, and between
// a camera and the plane, platform or conveyor belt that it looks at; top-down views, averages and
// backgrounds of depth data.
//
// This is the library's only public header. A host needs nothing else: no other header of ours, and
// no OpenCV header unless it calls the one function that takes cv::Mat.
//
// Units      Lengths come out in the unit that the board's square size or the points were given
//            in, normally millimetres. Image coordinates are pixels, (0, 0) the centre of the
//            first pixel, x right, y down. Residuals are lengths; the angles that cross this
//            header are in degrees. Depth samples are 16-bit distances along z, 0 for no
//            measurement; their step is the length unit of what is computed from them.
// Frames     A camera frame has x right, y down and z along the line of sight. Transforms are
//            named target-from-source: a point p in the source frame is R p + T in the target
//            frame. Row r of R is then the target frame's axis r in source coordinates. The
//            direction of every output is stated with its function.
// Ownership  The library keeps no pointer after a call returns. The one thing that the caller has
//            to give back is the buffer of createAerialViewImg, by releaseAerialViewImg.
// Threads    No threads are started and no state is kept, so calls on different threads do not
//            disturb each other's results, with one exception: ozkCalRefPlaneExtrinsic reseeds and
//            draws from the C runtime's rand(), so two of its calls must not overlap, nor one of
//            them and any other use of rand(). Calls do share two things by name in the working
//            directory: "velmorn.log" and the folder "chessImgs/" (see ozkVelmornByChess).
// Errors     Nothing is thrown across this boundary. Functions return a status code from the table
//            below (two return nothing, ozkCalDepthImgSampleFactor returns its result); on anything
//            but kOzkSuccess the outputs keep what the caller had put there, unless the function
//            says otherwise.
// Messages   Long operations append time-stamped lines to "velmorn.log" in the working directory
//            (restarted when it has grown past 10 MiB; a log that cannot be written changes no
//            result) and write short lines to std::cout. A host that wants a quiet standard output
//            redirects std::cout for the duration of the call. One message of two functions goes
//            through printf instead; it is marked there.
#ifndef VELMORN64_H
#define VELMORN64_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#define VELMORN64_VERSION "0.1.0"

namespace cv {
class Mat; // OpenCV's matrix, named by one function below; its own header is opencv2/core.hpp
}

// Marks the exported functions. Define VELMORN64_STATIC to link the static archive instead of the
// dynamic library; VELMORN64_BUILDING is for the library's own build only.
#if defined(VELMORN64_STATIC)
#define VELMORN64_API
#elif defined(_WIN32)
#if defined(VELMORN64_BUILDING)
#define VELMORN64_API __declspec(dllexport)
#else
#define VELMORN64_API __declspec(dllimport)
#endif
#else
#define VELMORN64_API __attribute__((visibility("default")))
#endif

// ---------------------------------------------------------------------------------------------
// Constants
// ---------------------------------------------------------------------------------------------

// Most cameras in one stitching call; also the capacity of OzKStitchResult.
constexpr std::int32_t kMaxStitchCameras = 10;

// Status codes.
constexpr std::int32_t kOzkSuccess = 0;
// A computation failed (pose, rigid fit, matrix inverse, memory, anything that OpenCV refuses), or
// a stitching run could not link every camera to the base camera.
constexpr std::int32_t kOzkComputationFailed = -1;
// Further geometry failures of the extrinsic utilities.
constexpr std::int32_t kOzkGeometryFailed2 = -2;
constexpr std::int32_t kOzkGeometryFailed3 = -3;
// A camera that the data-code stitching could not link to the base camera.
constexpr std::int32_t kOzkUnlinkedCamera = -4;
// Image `type` not accepted.
constexpr std::int32_t kOzkBadImageType = -1102;
// Image `dataType` not accepted.
constexpr std::int32_t kOzkBadDataType = -1103;
// Wrong size or count: zero width or height, image sizes that differ, too few points, too few or
// too many cameras, missing or inconsistent board images, missing or malformed camera parameters;
// in the platform calibration also an image `type` not accepted.
constexpr std::int32_t kOzkBadSize = -1107;
// Image size, type or sample type not accepted by the averaging functions.
constexpr std::int32_t kOzkBadAverageInput = -1109;
// Null pointer given to one of two extrinsic utilities, which have a code of their own for it; the
// data-code stitching stopped at an image.
constexpr std::int32_t kOzkNullExtrinsic = -1110;
// A required pointer is null.
constexpr std::int32_t kOzkNullPointer = -1111;
// No data code in the image of a data-code board.
constexpr std::int32_t kOzkNoDataCode = -2800;
// Failures of changeExtrisicByNewXAxis: the new x axis has next to no length, the rotation cannot
// be inverted, the new x axis runs along the plane's normal.
constexpr std::int32_t kOzkXAxisTooShort = 321;
constexpr std::int32_t kOzkRotationNotInvertible = 322;
constexpr std::int32_t kOzkXAxisAlongNormal = 323;
// Failures of bulidDepthBackgroundByPointCloud: fewer points than asked for, the grid is wider or
// higher than allowed, the grid has no columns or no rows, no memory, no point in the region.
constexpr std::int32_t kOzkTooFewPoints = 321;
constexpr std::int32_t kOzkGridTooLarge = 322;
constexpr std::int32_t kOzkGridEmpty = 323;
constexpr std::int32_t kOzkNoGridMemory = 324;
constexpr std::int32_t kOzkNoPointInRegion = 325;

// Values of tagOzKImage::type.
constexpr std::uint32_t kOzkImageOneChannel = 256;           // grey or depth
constexpr std::uint32_t kOzkImageThreeChannels = 512;        // the library's own channel order
constexpr std::uint32_t kOzkImageRejected = 258;             // refused by the averaging functions
constexpr std::uint32_t kOzkImageThreeChannelsSwapped = 514; // first and third channel swapped

// Values of tagOzKImage::dataType.
constexpr std::uint32_t kOzkSample8U = 0;  // 8-bit unsigned samples
constexpr std::uint32_t kOzkSample16U = 5; // 16-bit unsigned samples (depth)

// ---------------------------------------------------------------------------------------------
// Records. Plain data, natural alignment on a 64-bit platform, little-endian; hosts pass arrays of
// them, so the layouts below are fixed to the byte.
// ---------------------------------------------------------------------------------------------

// A 2-D point.
struct tagOzKPoint2Df32 {
  float x; // pixels, or the unit stated with the function
  float y; // same unit as x
};

// A 3-D point in single precision.
struct tagOzKPoint3Df32 {
  float x; // length unit
  float y; // length unit
  float z; // length unit
};

// A 3-D point in double precision: where a line or a plane is given by points or coefficients.
struct tagOzKPoint3Df64 {
  double x; // length unit
  double y; // length unit
  double z; // length unit
};

// An axis-aligned rectangle: length units for a measuring region, pixels for an image rectangle.
// Width is x2 - x1, height is y2 - y1.
struct tagOzKRect2Df32 {
  float x1; // left edge
  float y1; // top edge
  float x2; // right edge
  float y2; // bottom edge
};

// A size, passed by value. For a chessboard: inner corners, as in OpenCV's pattern size.
struct tagOzKSize {
  std::int32_t width;  // columns; inner corners per row of the board
  std::int32_t height; // rows; inner corners per column of the board
};

// The camera matrix, 3x3 row-major: fx, 0, cx, 0, fy, cy, 0, 0, 1.
struct tagOzKCamIntrinsic {
  double matrix[9]; // pixels: [0] fx, [2] cx, [4] fy, [5] cy
};

// Lens distortion in OpenCV's order. Coefficients that a lens model does not have are 0.
struct tagOzKCamDistortion {
  double coeffs[12]; // no unit: k1, k2, p1, p2, k3, k4, k5, k6, s1, s2, s3, s4
};

// A rigid transform, 4x4 row-major [R T; 0 0 0 1]. Maps a point p of the source frame to
// R p + T in the target frame.
struct tagOzKCamExtrinsic {
  double data[16]; // [0..2], [4..6], [8..10] rows of R; [3], [7], [11] T in length units
};

// An image. Arrays of images are contiguous arrays of this whole record. The caller owns `data` of
// an image passed in and keeps it for the duration of the call; who owns it in an image that the
// library fills is stated with the function.
struct tagOzKImage {
  std::uint32_t type;          // kOzkImage... above
  std::uint32_t dataType;      // kOzkSample... above
  std::uint32_t width;         // columns, pixels
  std::uint32_t height;        // rows, pixels
  std::int32_t roiX0;          // region of interest, pixels: first column,
  std::int32_t roiY0;          // first row,
  std::int32_t roiX1;          // last column (inclusive),
  std::int32_t roiY1;          // last row (inclusive); not read by the library's own computations
  void* data;                  // rows one after another without a gap
  std::uint8_t reservedB[184]; // never read or written by the library
};

// What a stitching call found; written on success only.
struct OzKStitchResult {
  // One entry per camera, in the order of the caller's list; entries at and beyond cameraNum stay
  // as they were. Direction and the base camera's own entry: see ozkVelmornByChess.
  tagOzKCamExtrinsic camExtrinsic[kMaxStitchCameras];
  float camRTError[kMaxStitchCameras]; // mean residual of the camera's link, length unit; base: 0
  std::int32_t cameraNum;              // number of cameras of the call
  std::int32_t baseCamIdx;             // index of the base camera in the caller's list
};

// A fixed text buffer: a camera identifier or an image file path.
struct OzKStitchCstring {
  char str[512]; // NUL-terminated, at most 511 characters; read up to the first NUL
};

// A counted list of text buffers. The caller owns the buffers.
struct OzKStitchCstringList {
  OzKStitchCstring* strs; // first of `num` contiguous buffers
  std::int32_t num;       // number of entries
};

// ---------------------------------------------------------------------------------------------
// Rigid transform between two point sets
// ---------------------------------------------------------------------------------------------

// Fits the rotation and translation that carry the points `a` onto the points `b` with the least
// sum of squared distances (centroids and SVD; K. S. Arun, T. S. Huang, S. D. Blostein,
// "Least-squares fitting of two 3-D point sets", IEEE PAMI 9(5), 1987).
//
// a          n points in the source frame; not modified
// b          n points in the target frame, b[i] belongs to a[i], same length unit; not modified
// n          number of pairs, at least 3
// extrinsic  out. Elements 0..2 are row 0 of R, elements 3, 7, 11 are T and 12..15 are 0 0 0 1, of
//            bFromA: b = R a + T. Elements 4..6 and 8..10 are NOT rows 1 and 2 of R: they hold the
//            doubles that start 3 and 6 bytes into R's storage. Existing hosts depend on this
//            content. R's other rows cannot be recovered from it.
// error      out, may be null: mean distance between b[i] and R a[i] + T, length unit
//
// Points on one line or at one place are accepted; the rotation is then any orthogonal one that the
// decomposition gives. No messages.
// Returns kOzkSuccess; kOzkBadSize when a, b or extrinsic is null or n < 3; kOzkComputationFailed.
VELMORN64_API int ozkCalRTMatFrom3dPtTo3dPt(tagOzKPoint3Df32* a, tagOzKPoint3Df32* b, int n,
                                            tagOzKCamExtrinsic* extrinsic, float* error);

// ---------------------------------------------------------------------------------------------
// Reference plane
//
// A plane frame has its origin on the plane and its z axis along the plane's normal. The transform
// planeFromCam, called reference plane below, carries camera coordinates into it; its row 2 is the
// normal in camera coordinates.
// ---------------------------------------------------------------------------------------------

// Fits a plane to a point cloud of one camera, robustly against outliers, and gives the plane's
// frame: origin at the inliers' centroid, z axis along the normal and on the camera's side, x axis
// along the camera's x axis projected into the plane (opposite to it when the normal had to be
// turned), right-handed.
//
// points     n points in camera coordinates, any length unit that suits the fixed limits below;
//            not modified
// n          number of points, at least 3
// threshold  largest distance of an inlier from the plane, exclusive, in the points' unit; 0, a
//            negative value and NaN have no inliers
// extrinsic  out, planeFromCam
// error      out, may be null: mean distance of all n points, outliers included, from the plane
//
// Equal inputs give equal results: the samples come from rand() after srand(1), so rand() is
// reseeded (see Threads above). All axes are computed in single precision. Two limits are fixed and
// made for millimetres: samples of three points whose extents are all below 1e-4 are drawn again,
// and a covariance whose mixed terms are all below 1e-6 counts as axis-parallel, so clouds in
// metres that measure a millimetre or two are not fitted well. A plane whose normal is exactly the
// camera's y axis has no x axis by this construction: the extrinsic then holds NaN. Points that are
// NaN or infinite are never inliers; one is enough to make `error` NaN or infinite.
//
// Messages, log only: "malloc error.ptNum is N.needed memory is X MB",
//   "fitPlaneByRansacV2 failed.return value is CODE.ptNum is N."
// Memory: 13 bytes per point. When 12 of them cannot be had, the other one is not given back.
// Returns kOzkSuccess; kOzkNullPointer when points or extrinsic is null; kOzkComputationFailed when
// memory ran out, n < 3 (also negative), every sample is degenerate or there are no inliers;
// kOzkGeometryFailed2 when the camera's x axis is perpendicular to the plane (its projection is
// shorter than 1e-6).
VELMORN64_API int ozkCalRefPlaneExtrinsic(tagOzKPoint3Df32* points, int n, float threshold,
                                          tagOzKCamExtrinsic* extrinsic, float* error);

// Reads the plane out of a planeFromCam.
//
// ext          planeFromCam
// planePoint   out, camera coordinates: the plane frame's origin, -R^-1 T. Without meaning, and not
//              reported, when R cannot be inverted (|det R| < 1e-10)
// planeNormal  out, camera coordinates: row 2 of R as it is
//
// Nothing is written when one of the three is null. No messages.
VELMORN64_API void getPlaneModelFromExtrinsic(tagOzKCamExtrinsic* ext, tagOzKPoint3Df64* planePoint,
                                              tagOzKPoint3Df64* planeNormal);

// Intersects a line with a plane, all in one frame and length unit.
//
// linePoint    a point on the line
// lineDir      its direction, any length
// planePoint   a point on the plane
// planeNormal  its normal, any length
// out          out, the common point
//
// Message, by printf: "no intesection.line direction is (X,Y,Z).plane normal is (X,Y,Z)".
// Returns kOzkSuccess; kOzkComputationFailed with the message when |planeNormal . lineDir| < 1e-6,
// also for a line inside the plane; kOzkNullPointer when the lines meet and out is null.
VELMORN64_API int calLineAndPlaneIntesection(tagOzKPoint3Df64 linePoint, tagOzKPoint3Df64 lineDir,
                                             tagOzKPoint3Df64 planePoint,
                                             tagOzKPoint3Df64 planeNormal, tagOzKPoint3Df64* out);

// Gives a plane frame another x axis; its origin and its normal stay where they are.
//
// ext    planeFromCam
// xAxis  direction of the new x axis in camera coordinates, at least 0.0001 long; the part
//        perpendicular to the plane drops out
// out    out, newPlaneFromCam; may be the variable that ext was copied from
//
// With n the normal and x the unit vector along xAxis, the new rows are (n x x) x n, n x x and n.
// The first two are not brought to length 1: they are as long as the sine of the angle between x
// and n, so out is a rigid transform only for an xAxis within the plane. Hosts depend on it.
//
// Message, console: "matrixInverse failed".
// Returns kOzkSuccess; kOzkXAxisTooShort; kOzkRotationNotInvertible with the message
// (|det R| < 1e-10); kOzkXAxisAlongNormal when n x x is shorter than 0.0001.
VELMORN64_API int changeExtrisicByNewXAxis(tagOzKCamExtrinsic ext, tagOzKPoint3Df32 xAxis,
                                           tagOzKCamExtrinsic& out);

// Nudges or turns a plane frame, as an edit on its aerial image does.
//
// ext    in and out, planeFromCam
// step   how far to move, length unit
// angle  how far to turn, degrees
// mode   1 to 4 move, 5 turns by `angle`, 6 by -angle, any other value does nothing
//
// With s = step, the coordinates T = (x, y) change by:
//   where                   mode 1   mode 2   mode 3   mode 4
//   |R00| > |R01|, R00 > 0  y + s    y - s    x + s    x - s
//   |R00| > |R01|, R00 < 0  y - s    y + s    x - s    x + s
//   otherwise, R01 > 0      x + s    x - s    y - s    y + s
//   otherwise, R01 <= 0     x - s    x + s    y + s    y - s
// Modes 1 and 2 have the coordinates of modes 3 and 4 swapped; hosts depend on the pairing.
// A turn makes R to Q R and leaves T, where Q turns about the axis (R20, R21, R22) with 3.141592
// for pi. That is a turn about the plane's normal for a camera that looks straight at the plane,
// and about another axis for a tilted one; hosts depend on both.
//
// No messages. Returns kOzkSuccess; kOzkNullExtrinsic when ext is null.
VELMORN64_API int adjustExtrinsicOnAerialImg(tagOzKCamExtrinsic* ext, float step, float angle,
                                             int mode);

// ---------------------------------------------------------------------------------------------
// Platforms and conveyors
// ---------------------------------------------------------------------------------------------

// Finds where a camera stands over a platform from one image of a chessboard lying on it.
//
// image          types kOzkImageOneChannel, kOzkImageThreeChannels, kOzkImageThreeChannelsSwapped
//                with 8-bit samples (dataType is not read); not modified. A colour image is
//                searched in colour; the corners are refined in its grey form, the usual weighted
//                sum with the first channel of kOzkImageThreeChannelsSwapped as blue. The same
//                scene gives the same result in either colour type
// intrinsic      camera matrix, pixels
// distortion     lens distortion
// boardSize      inner corners per row and per column, each at least 3
// squareSize     side of a square; gives the result its length unit
// extrinsic      out, platformFromCam, see below
// offsetX, offsetY, offsetZ
//                added to T after everything else, length unit
// keepBoardAxes  true: the platform's frame is the board's, origin at the first inner corner, x
//                along the rows, y along the columns, z = x cross y. false: that frame turned by
//                half a turn about its x axis, so that y and z point the other way
//
// platformFromCam = turn * inverse(camFromBoard), then the offsets: a camera point p is R p + T in
// the platform's frame, and T is the camera's own place there.
//
// Messages, console: "find corners success" or "find corners failed"; "solvePnP error".
// Returns kOzkSuccess; kOzkNullPointer when image or extrinsic is null; kOzkBadSize for another
// image type, or a width or height of 0 or beyond the range of int; kOzkNullPointer when the
// image's data is null; kOzkComputationFailed with a message when there is no board or no pose, and
// without one when OpenCV refused an input (such as a board size below 3).
VELMORN64_API int ozkCalirateCamAndPlatform(tagOzKImage* image, tagOzKCamIntrinsic intrinsic,
                                            tagOzKCamDistortion distortion, tagOzKSize boardSize,
                                            float squareSize, tagOzKCamExtrinsic* extrinsic,
                                            float offsetX, float offsetY, float offsetZ,
                                            bool keepBoardAxes);

// Lays a platform's frame into the reference plane by two points of an aerial image.
//
// p1        pixel of the frame's origin
// p2        pixel on the frame's x axis
// platform  out, platformFromCam: x from p1 to p2, z the plane's normal turned to positive camera
//           z, y = z cross x; single precision
// refPlane  planeFromCam
// rect      region that the image covers, camera x and y, length unit
// width     columns of the image; taken as they are, 0 gives a result without meaning
// height    rows
//
// Messages, console: "error:refPlaneExtrinsic.data[10] is VALUE",
//   "error:the length of xAxis is zero"
// Returns kOzkSuccess; kOzkComputationFailed when the plane is nearly parallel to the line of sight
// (|R22| < 0.0001); kOzkGeometryFailed2 when the two points are closer than 0.0001; then, when
// platform is null, kOzkNullExtrinsic.
VELMORN64_API int ozkCalCamAndPlatformExtrinsic(tagOzKPoint2Df32 p1, tagOzKPoint2Df32 p2,
                                                tagOzKCamExtrinsic* platform,
                                                tagOzKCamExtrinsic refPlane, tagOzKRect2Df32 rect,
                                                int width, int height);

// Lays a conveyor's frame into the reference plane by two points of the camera image.
//
// refPlane   planeFromCam
// p1         pixel of the frame's origin, without lens distortion
// p2         pixel on the frame's x axis
// K          camera matrix; zero focal lengths give NaN
// direction  0: z axis to negative camera z; 1: to positive camera z; else: the plane's normal as
//            it is
// out        out, conveyorFromCam: x from p1 to p2, y = z cross x; elements 12 to 15 are those of
//            refPlane
//
// A line of sight along the plane (|normal . ray| < 1e-6) meets it nowhere: the plane's normal then
// stands in for the point and the result has no meaning. Hosts depend on the call going on.
//
// Message, by printf: "no intesection.line direction is (X,Y,Z).plane normal is (X,Y,Z)", with the
// line of sight, in that case.
// Returns kOzkSuccess; kOzkComputationFailed or kOzkGeometryFailed2 when the first or second line
// of sight has no direction, which no pixel and no camera matrix have given yet;
// kOzkGeometryFailed3 when the two points are closer than 1e-6; then, when out is null,
// kOzkNullPointer.
VELMORN64_API int calConveyorExtrinsicByImageLine(tagOzKCamExtrinsic refPlane, tagOzKPoint2Df32 p1,
                                                  tagOzKPoint2Df32 p2, tagOzKCamIntrinsic K,
                                                  int direction, tagOzKCamExtrinsic* out);

// ---------------------------------------------------------------------------------------------
// Stitching by chessboard
// ---------------------------------------------------------------------------------------------

// Computes the transform between every camera and one base camera from images of a chessboard.
// Image j of every camera shows the board in the same position j. Cameras that saw the board in at
// least `minImages` common positions are linked; the links form a tree whose root is the base.
//
// camIDs            2 to 10 identifiers, any text; their order is the order of the result
// chessImgPaths     per identifier the image files, equally many for every camera, any format
//                   that OpenCV reads; a file that cannot be read, differs in size from the
//                   camera's first readable one or shows no board only drops that position
// camIntrinsics     per identifier the camera matrix, pixels
// camDistortions    per identifier the lens distortion
// patternSize       inner corners per row and per column, each at least 3
// squareSize        side of a square; gives the result its length unit
// result            out, see below
// minImages         least number of images per camera, and of common positions for a link
// saveCornerImages  writes "chessImgs/corner-NNN-ID.bmp" with the corners drawn, NNN the image's
//                   index, into the working directory; a failure to write is not reported
// baseCamIdx        index of the base camera in camIDs; anything outside 0 to n-1 (such as -1)
//                   lets the library take the camera that gives the shallowest tree, the first of
//                   several
//
// Result, for camera i:
//   the base        elements 0, 4, 10 and 15 are 1, all others 0, which is not the identity matrix
//                   (existing hosts depend on it): treat the base entry as the identity. Error 0.
//   linked to the base directly
//                   camFromBase: maps a point in the base camera's frame into camera i's frame
//   linked through other cameras
//                   with parent p below the base: R = R(p) R(i), T = R(p) T(i) + T(p), where
//                   R(i), T(i) is camera i's camFromParent; repeated for p's own parents. This is
//                   not the composition of the two maps; hosts depend on it as it stands. Compose
//                   the pairwise links instead where that is wanted.
//   camRTError[i]   mean residual of the link to the camera's parent, length unit
//
// Messages, console and log unless one is named:
//   "find corner: PATH" console, then "success" or "failed" console, or
//   "load PATH failed" or "image size is error"
//   "the number of cameras should be greater than 2" log (fewer than two cameras were given)
//   "error: the number of cameras(N) is greater than 10" log
//   "chess image error"                    a camera without images, or with another number of them
//   "too few chess images"                 fewer images than minImages
//   "camera matrix or dist is error"       a camera without camera matrix or distortion
//   "solvePnP error" console, "solvePnP errorr" log; "calRTMatFrom3dPtTo3dPt failed"
//   "failed to get camera ID RT"           the camera could not be linked
//   "camreaIDs (ID,ID,...)", "inputCameraIdx=...", "calCameraRTByChessImgs success" log, and
//   "baseCamIdx=N" console without a line end, after success
//
// The square size and the camera parameters are taken as they are: 0, NaN or infinity in them gives
// a result without meaning, or kOzkComputationFailed.
//
// Returns kOzkSuccess; kOzkBadSize for a bad count of cameras or images or missing camera
// parameters, before any image is read; kOzkComputationFailed when a camera could not be linked or
// OpenCV refused an input (such as a pattern size below 3).
VELMORN64_API int ozkVelmornByChess(
    const std::vector<std::string>& camIDs,
    const std::map<std::string, std::vector<std::string>>& chessImgPaths,
    const std::map<std::string, tagOzKCamIntrinsic>& camIntrinsics,
    const std::map<std::string, tagOzKCamDistortion>& camDistortions, tagOzKSize patternSize,
    float squareSize, OzKStitchResult& result, int minImages, bool saveCornerImages,
    int baseCamIdx);

// ozkVelmornByChess for hosts that can only pass plain records.
//
// camIDs          camNum identifiers
// camNum          number of cameras, 2 to 10
// chessImgPaths   camNum lists. Camera i is given ONE path, entry number i of its own list's
// `strs`,
//                 `num` times over; the list's other entries are not read. Existing hosts pass
//                 their paths accordingly. A list must therefore hold at least i + 1 entries
//                 whenever `num` is positive.
// camIntrinsics   camNum camera matrices, entry i for camera i
// camDistortions  camNum distortions, entry i for camera i
// the rest        as for ozkVelmornByChess
//
// An identifier that occurs twice takes the later one's parameters and images and is listed twice.
// Returns kOzkNullPointer when one of the five pointers, or the `strs` of a list with entries, is
// null; otherwise as ozkVelmornByChess.
VELMORN64_API int ozkVelmornByChessCtype(const OzKStitchCstring* camIDs, int camNum,
                                         const OzKStitchCstringList* chessImgPaths,
                                         const tagOzKCamIntrinsic* camIntrinsics,
                                         const tagOzKCamDistortion* camDistortions,
                                         tagOzKSize patternSize, float squareSize,
                                         OzKStitchResult* result, int minImages,
                                         bool saveCornerImages, int baseCamIdx);

// ---------------------------------------------------------------------------------------------
// Stitching by data-code chessboard
//
// The board's white squares carry printed codes, each a text "a,b,s": the square's column and row,
// counted from 1, and the side of a square. The board's frame has its origin at the outer corner of
// square (1, 1), x along the columns, y down along the rows as printed; square (a, b) spans
// (a - 1) s to a s in x and (b - 1) s to b s in y. One readable code in an image places every
// corner found in it, so cameras that see different parts of one board can be stitched.
//
// Codes and corners are found by two further libraries, Quillet64 and Brantis64, which are loaded
// together with this one and can be replaced by others with the same functions.
// ---------------------------------------------------------------------------------------------

// Finds the corners of a data-code board in one image and their places on the board.
//
// image      8-bit image, handed to the two libraries as it is; those that come with this one take
//            type kOzkImageOneChannel with dataType kOzkSample8U
// imagePts   out, replaced: corners in pixels, at most 512. These are the extractor's corners less
//            half a pixel; with the extractor that comes along, (0, 0) is then the centre of the
//            first pixel
// worldPts   out, replaced: the same corners in the board's frame, in the unit of the codes; z = 0
//
// Only the first code that the reader reports is used. A text of another form is no error: numbers
// that cannot be read are 0. Numbers are read in the C runtime's current locale.
//
// Messages, log and console, the console's without what stands in brackets:
//   "finded code is TEXT", "parsed code content is (A,B),(S,S)"
//   "find data code failed"
//   "dcCreate failed.return value is CODE.imgSize(W,H)" log, "... .imgSize is (W,H)" console
//   "dcProcess failed.return value is CODE", also with calibCreate, calibCornerExtractExt,
//   dcRelease, calibRelease in place of dcProcess
// Returns kOzkSuccess, also without any corner; kOzkNullPointer when image is null; kOzkNoDataCode;
// what dcCreate, dcProcess, calibCreate or calibCornerExtractExt returned when it was not 0 (the
// library that comes along: docs/data-code.md); kOzkComputationFailed when memory ran out. After a
// failure the reader and the extractor that were made for the call are not given back.
VELMORN64_API int ozkFindDataCodeChessCornerPtAndWorldPt(tagOzKImage* image,
                                                         std::vector<tagOzKPoint2Df32>& imagePts,
                                                         std::vector<tagOzKPoint3Df32>& worldPts);

// Computes the transform between every camera and one base camera from images of a data-code board.
// Image k of every camera shows the board in the same position k; two cameras are linked by the
// first position in which both have a pose. The links form a tree whose root is the base.
//
// camIDs          2 to 10 identifiers; their order is the order of the result
// chessImgPaths   per identifier the image files, equally many for every camera, at least one; a
//                 file that gives no pose only drops that position
// intrinsics      per identifier the camera matrix, pixels
// distortions     per identifier the lens distortion
// result          out, see below
// saveCornerImgs  writes "chessImgs/corner-ID-K.bmp" with the corners drawn, K the image's index,
//                 into the working directory; a failure to write is not reported
// baseCamIdx      index of the base camera in camIDs; anything outside 0 to n-1 takes the camera
//                 with the shallowest tree, the first of several. A camera without any link has the
//                 shallowest tree of all
// minCornerNum    fewest corners of an image to be used; a negative number refuses every image.
//                 A pose needs 4 in any case
//
// Result, for camera i:
//   the base      as ozkVelmornByChess: elements 0, 4, 10 and 15 are 1; treat it as the identity
//   the others    baseFromCam: maps a point in camera i's frame into the base camera's frame, also
//                 through other cameras. This is the inverse direction of ozkVelmornByChess
//   camRTError    0 for every camera; this method has no residual
//
// Messages, console and log unless one is named, besides those of the corner search:
//   "the number of cameras should be greater than 2" log (fewer than two cameras were given)
//   "error: the number of cameras(N) is greater than 10" log
//   "chess image error", "too few chess images", "camera matrix or dist is error"
//   "findDataCodeChessCornerPtAndWorldPt failed.image path is PATH" log, with ".." on the console
//   "the number of finded corner is less than N.image path is PATH", N the number found
//   "solvePnP failed.image path is PATH" log, with ".." on the console
//   "ID camera RTmat is empty"
//   "baseCamIdx=N" console and "ozkVelmornByDataCodeChess success" log, after success
//
// Returns kOzkSuccess; kOzkBadSize for a bad count of cameras or images or missing camera
// parameters, before any image is read; kOzkNullExtrinsic when the corner search of an image
// returns that or -1303; kOzkUnlinkedCamera when a camera could not be linked, with the entries of
// the cameras before it written to `result`; kOzkComputationFailed when memory ran out.
// `chessImgPaths`, `intrinsics` and `distortions` are not modified.
VELMORN64_API int ozkVelmornByDataCodeChess(
    const std::vector<std::string>& camIDs,
    std::map<std::string, std::vector<std::string>>& chessImgPaths,
    std::map<std::string, tagOzKCamIntrinsic>& intrinsics,
    std::map<std::string, tagOzKCamDistortion>& distortions, OzKStitchResult& result,
    bool saveCornerImgs, int baseCamIdx, int minCornerNum);

// An older form, kept for its hosts: each camera has one pose, that of its last image that gave
// one, and every camera is linked to the base by these two poses, whether they belong to the same
// board position or not.
//
// The arguments are those of ozkVelmornByDataCodeChess, with these differences: a baseCamIdx
// outside 0 to n-1 counts as 0, there is no minCornerNum, and the corner images are
// "chessImgs/corner-ID.bmp", the last one remaining. The message after success is
// "calCameraRTByChessImgs success" (log).
//
// Returns as ozkVelmornByDataCodeChess, but kOzkComputationFailed when a camera has no pose at all,
// with `result` untouched.
VELMORN64_API int ozkVelmornByDataCodeChess_backup(
    const std::vector<std::string>& camIDs,
    std::map<std::string, std::vector<std::string>>& chessImgPaths,
    std::map<std::string, tagOzKCamIntrinsic>& intrinsics,
    std::map<std::string, tagOzKCamDistortion>& distortions, OzKStitchResult& result,
    bool saveCornerImgs, int baseCamIdx);

// ---------------------------------------------------------------------------------------------
// Aerial view: what depth cameras see, from above
//
// The grid lies in the x/y plane of the first camera's frame and covers a region of it, x1 <= x <=
// x2 and y1 <= y <= y2. At a resolution r (length units per cell) it has
//   trunc((x2 - x1) / r) + 1 columns and trunc((y2 - y1) / r) + 1 rows,
// computed in single precision: both edges of the region have a cell. A grid is too large when its
// cells cannot be numbered by an int, negative when the region is reversed by two cells or more;
// reversed by one to two cells it has 0 columns or rows, which is accepted and gives an image
// without pixels.
//
// An aerial image has type kOzkImageThreeChannels, three 8-bit samples a pixel, the rows without
// gaps: columns * rows * 3 bytes.
// ---------------------------------------------------------------------------------------------

// Makes an aerial image of a region, for ozkCvtDepthToAerialViewImg.
//
// region      the region, length unit
// resolution  length units per cell
// image       out: type, width, height and data are set, all other fields (dataType too) are left.
//             data is a new buffer that releaseAerialViewImg frees; its content is not initialised.
//             A buffer that was there before is not freed
//
// No messages. Returns kOzkSuccess; kOzkNullPointer when region or image is null; kOzkBadSize when
// the resolution is 0 or NaN, or the grid is negative or too large; kOzkComputationFailed when
// there is no memory: data is then null, the other three are set.
VELMORN64_API int createAerialViewImg(const tagOzKRect2Df32* region, float resolution,
                                      tagOzKImage* image);

// Frees the buffer of createAerialViewImg and sets `data` to null. Does nothing when image or its
// data is null, so calling it twice is harmless. Only for buffers of createAerialViewImg.
VELMORN64_API void releaseAerialViewImg(tagOzKImage* image);

// Four conversions between an image that spans a region exactly, such as an aerial image, and the
// region. A pixel is (x2 - x1) / imageWidth by (y2 - y1) / imageHeight length units, which is not
// an aerial image's resolution. Single precision; nothing is clamped; a region without width or
// height gives infinities or NaN where it divides.
//
// region       the region, length unit
// imageWidth, imageHeight             columns and rows of the image
// imageRect, measureRect, imagePoint  what is converted
// out          out, what it is converted to
//
// A rectangle given with x1 > x2 or y1 > y2 counts as the one with these two exchanged.
//
// No messages. All return kOzkSuccess; kOzkNullPointer when out is null; kOzkBadSize when
// imageWidth or imageHeight is 0; then kOzkNullPointer when region is null.

// Pixels to length units.
VELMORN64_API int ozkCvtImgRect2MesureRegion(const tagOzKRect2Df32* region, int imageWidth,
                                             int imageHeight, tagOzKRect2Df32 imageRect,
                                             tagOzKRect2Df32* out);

// Length units to pixels.
VELMORN64_API int ozkCvtMesureRegion2ImgRect(const tagOzKRect2Df32* region, int imageWidth,
                                             int imageHeight, tagOzKRect2Df32 measureRect,
                                             tagOzKRect2Df32* out);

// One point, pixels to length units.
VELMORN64_API int ozkCvtImgP2CamPt(const tagOzKRect2Df32* region, int imageWidth, int imageHeight,
                                   tagOzKPoint2Df32 imagePoint, tagOzKPoint2Df32* out);

// The same with z = 0.
VELMORN64_API int ozkCvtImgP2CamPt(const tagOzKRect2Df32* region, int imageWidth, int imageHeight,
                                   tagOzKPoint2Df32 imagePoint, tagOzKPoint3Df32* out);

// Renders the depth images of one or more cameras as an aerial image. Each cell shows the sample
// with the smallest depth that falls into it, of equal depths the first one in the order cameras,
// rows, columns. Depth is the sample's own value, along its own camera's line of sight, also for
// cameras that stand elsewhere; hosts depend on it.
//
// depthImages   cameraCount images, type kOzkImageOneChannel, dataType kOzkSample16U; sizes may
//               differ. A sample of 65535 is never shown
// colorImages   null, or cameraCount images of the depth images' sizes, 8-bit samples, type
//               kOzkImageThreeChannels, which is shown as it is, or kOzkImageThreeChannelsSwapped,
//               whose first and third channels are exchanged for it
// intrinsics    cameraCount camera matrices, pixels; lens distortion is not modelled
// extrinsics    cameraCount transforms firstFromCam, in the unit of the depth samples; entry 0 is
//               not read, of the others rows 0 and 1. May be null with one camera
// cameraCount   at least 1
// region        the region, in the unit of the depth samples; points on its border are left out
// resolution    length units per cell
// aerialImage   out: an image with the grid's width and height and a buffer for it, such as
//               createAerialViewImg makes; its type is not read. May share memory with the inputs
//
// With colour images a cell takes the colour of its sample. Without, the depths are spread over
// 256 steps e by a cumulative histogram over the cells (in 32-bit arithmetic, so that its running
// sum times 255 wraps around above 16.8 million covered cells), and a cell's samples are
//   e;  2 e below 127.5, else 510 - 2 e;  255 - e
// from near (third channel) to far (first channel). Cells without a sample are black in both.
//
// All positions are computed in single precision. Samples that come out NaN or infinite, as wrong
// intrinsics or extrinsics make them, fall into no cell.
//
// Messages, log only: "depth image dataType error", "depth image type error",
//   "depth image size is diffrent with color image", "color image dataType error",
//   "color image type error", "input aerialViewImg size error"
// Returns kOzkSuccess; kOzkNullPointer when depthImages, intrinsics, aerialImage or region is null,
// or extrinsics with more than one camera; kOzkBadSize when cameraCount < 1 or the resolution is
// not above 0; for each depth image kOzkBadDataType, then kOzkBadImageType, with the message, then
// kOzkNullPointer when it has pixels but no data; then for each colour image kOzkBadSize,
// kOzkBadDataType, kOzkBadImageType, kOzkNullPointer likewise; kOzkBadSize when the grid is
// negative or too large, and with the message when aerialImage has another size; kOzkNullPointer
// when it has no data; kOzkComputationFailed when memory ran out or OpenCV refused an input.
VELMORN64_API int ozkCvtDepthToAerialViewImg(const tagOzKImage* depthImages,
                                             const tagOzKImage* colorImages,
                                             const tagOzKCamIntrinsic* intrinsics,
                                             const tagOzKCamExtrinsic* extrinsics, int cameraCount,
                                             const tagOzKRect2Df32* region, float resolution,
                                             tagOzKImage* aerialImage);

// The same for hosts that use OpenCV themselves.
//
// depthImages  cameraCount matrices CV_16UC1
// colorImages  null, or cameraCount matrices CV_8UC3, at least as large as the depth images; their
//              three bytes are shown as they are
// aerialImage  out: made by this function, CV_8UC3, rows by columns of the grid
// the rest     as above
//
// The types are not compared with these; a matrix whose samples or pixels have another size in
// bytes, and a colour matrix that is too small, are kOzkBadSize. No messages.
// Returns kOzkSuccess; kOzkNullPointer, kOzkBadSize and kOzkComputationFailed as above.
VELMORN64_API int ozkCvtDepthToAerialViewImg(const cv::Mat* depthImages, const cv::Mat* colorImages,
                                             const tagOzKCamIntrinsic* intrinsics,
                                             const tagOzKCamExtrinsic* extrinsics, int cameraCount,
                                             const tagOzKRect2Df32* region, float resolution,
                                             cv::Mat* aerialImage);

// ---------------------------------------------------------------------------------------------
// Averages of bursts; sampling of depth images
// ---------------------------------------------------------------------------------------------

// Averages depth images of one scene, pixel by pixel. Samples of 0 do not count; a pixel that no
// image measured is 0. Means are cut off, not rounded.
//
// images   count images of one size, type kOzkImageOneChannel, dataType kOzkSample16U
// count    number of images, at least 1; a single one is copied
// average  out, width * height samples; must not share memory with the images
//
// Sums are kept in single precision, which is exact up to 256 images. Of a mean that rounding takes
// beyond 65535 the low 16 bits are stored.
//
// Messages, log only: "image size error", "image type or dataType error"
// Returns kOzkSuccess; kOzkNullPointer when images or average is null or count < 1; for the first
// image kOzkBadImageType, then kOzkBadDataType; kOzkNullPointer when it has pixels but no data;
// for the others, in their order, kOzkBadAverageInput with the first message when the size differs
// from the first image's, with the second when dataType or type does, and kOzkNullPointer likewise:
// in these cases average holds zeros; kOzkComputationFailed when memory ran out.
VELMORN64_API int ozkCalAverageDepthImage(tagOzKImage* images, int count, unsigned short* average);

// Averages 8-bit images of one scene, sample by sample. Samples of 0 count. Means are cut off.
//
// images   count images of one size, dataType kOzkSample8U, type kOzkImageOneChannel,
//          kOzkImageThreeChannels or kOzkImageThreeChannelsSwapped, all of one type
// count    number of images, at least 1; a single one is copied
// average  out, width * height samples, three times as many for the types with three channels;
//          must not share memory with the images
//
// Sums are kept in single precision, which is exact up to 65793 images.
//
// Messages and return values as for ozkCalAverageDepthImage.
VELMORN64_API int ozkCalAverageImage(tagOzKImage* images, int count, unsigned char* average);

// The side of what one pixel covers at a distance, in whole length units, rounded up.
//
// fieldOfViewDegrees  the camera's full angle of view along the counted pixels
// pixelCount          pixels along it
// distance            distance from the camera, length unit
//
// Single precision, with 3.1415926 for pi. Nothing is checked; a side that an int cannot hold, as
// for pixelCount 0, gives the smallest int. No messages. Returns the side, not a status code.
VELMORN64_API int ozkCalDepthImgSampleFactor(float fieldOfViewDegrees, int pixelCount,
                                             float distance);

// The rectangle that a camera's image covers at a distance.
//
// imageWidth    columns; from the centre of the first pixel to that of the last
// imageHeight   rows
// intrinsic     camera matrix, pixels
// workDistance  distance from the camera, length unit
// field         out, camera x and y, length unit
//
// The image size is not checked. x1 and y1 are at most 16777215, x2 and y2 at least -16777215, also
// when the field lies beyond; coordinates that come out NaN do not take part. No messages.
// Returns kOzkSuccess; kOzkNullPointer when intrinsic or field is null.
VELMORN64_API int ozkCalFieldSizeByWorkdistance(int imageWidth, int imageHeight,
                                                const tagOzKCamIntrinsic* intrinsic,
                                                float workDistance, tagOzKRect2Df32* field);

// ---------------------------------------------------------------------------------------------
// Depth background
// ---------------------------------------------------------------------------------------------

// Turns the point cloud of an empty scene into a height map without gaps. The grid covers a region
// of the x/y plane as an aerial image does. Each cell holds the lowest or highest z of its points;
// cells without a point are filled from their neighbours, step by step, and take the value of a
// nearest cell with points, counted in steps up, down, left and right.
//
// points         pointCount points, any order; points with NaN in x or y are left out, a z of NaN
//                stays in a cell only when it was the cell's first
// cellSize       length units per cell
// region         x1 <= x <= x2 and y1 <= y <= y2, inclusive
// background     out, gridWidth * gridHeight values, row after row (rows along y);
//                maxGridSize * maxGridSize values are always enough
// gridWidth      out, columns
// gridHeight     out, rows
// keepHighest    0: lowest z; else: highest z
// pointCount, minPointCount  number of points, in the region or not, and the least one
// maxGridSize    largest gridWidth and gridHeight
//
// When several neighbours have a value to give in the same step, the one below (larger y) goes
// first, then right, left, above.
//
// No messages. Returns kOzkSuccess; kOzkTooFewPoints; kOzkNullPointer when a pointer is null
// (points may be, without any); kOzkGridTooLarge; kOzkGridEmpty when the grid has no or negative
// columns or rows, or cellSize or region are NaN. Then gridWidth and gridHeight are written.
// kOzkNoGridMemory when memory ran out, background untouched; kOzkNoPointInRegion, background then
// holds zeros.
VELMORN64_API int bulidDepthBackgroundByPointCloud(tagOzKPoint3Df32* points, int pointCount,
                                                   float cellSize, tagOzKRect2Df32* region,
                                                   float* background, int* gridWidth,
                                                   int* gridHeight, int keepHighest,
                                                   int minPointCount, int maxGridSize);

// ---------------------------------------------------------------------------------------------
// The layouts, checked where they are used
// ---------------------------------------------------------------------------------------------

static_assert(sizeof(void*) == 8, "velmorn64 is for 64-bit platforms");

static_assert(sizeof(tagOzKPoint2Df32) == 8, "");
static_assert(offsetof(tagOzKPoint2Df32, x) == 0, "");
static_assert(offsetof(tagOzKPoint2Df32, y) == 4, "");

static_assert(sizeof(tagOzKPoint3Df32) == 12, "");
static_assert(offsetof(tagOzKPoint3Df32, x) == 0, "");
static_assert(offsetof(tagOzKPoint3Df32, y) == 4, "");
static_assert(offsetof(tagOzKPoint3Df32, z) == 8, "");

static_assert(sizeof(tagOzKPoint3Df64) == 24, "");
static_assert(offsetof(tagOzKPoint3Df64, x) == 0, "");
static_assert(offsetof(tagOzKPoint3Df64, y) == 8, "");
static_assert(offsetof(tagOzKPoint3Df64, z) == 16, "");

static_assert(sizeof(tagOzKRect2Df32) == 16, "");
static_assert(offsetof(tagOzKRect2Df32, x1) == 0, "");
static_assert(offsetof(tagOzKRect2Df32, y1) == 4, "");
static_assert(offsetof(tagOzKRect2Df32, x2) == 8, "");
static_assert(offsetof(tagOzKRect2Df32, y2) == 12, "");

static_assert(sizeof(tagOzKSize) == 8, "");
static_assert(offsetof(tagOzKSize, width) == 0, "");
static_assert(offsetof(tagOzKSize, height) == 4, "");

static_assert(sizeof(tagOzKCamIntrinsic) == 72, "");
static_assert(offsetof(tagOzKCamIntrinsic, matrix) == 0, "");

static_assert(sizeof(tagOzKCamDistortion) == 96, "");
static_assert(offsetof(tagOzKCamDistortion, coeffs) == 0, "");

static_assert(sizeof(tagOzKCamExtrinsic) == 128, "");
static_assert(offsetof(tagOzKCamExtrinsic, data) == 0, "");

static_assert(sizeof(tagOzKImage) == 224, "");
static_assert(offsetof(tagOzKImage, type) == 0, "");
static_assert(offsetof(tagOzKImage, dataType) == 4, "");
static_assert(offsetof(tagOzKImage, width) == 8, "");
static_assert(offsetof(tagOzKImage, height) == 12, "");
static_assert(offsetof(tagOzKImage, roiX0) == 16, "");
static_assert(offsetof(tagOzKImage, roiY0) == 20, "");
static_assert(offsetof(tagOzKImage, roiX1) == 24, "");
static_assert(offsetof(tagOzKImage, roiY1) == 28, "");
static_assert(offsetof(tagOzKImage, data) == 32, "");
static_assert(offsetof(tagOzKImage, reservedB) == 40, "");

static_assert(sizeof(OzKStitchResult) == 1328, "");
static_assert(offsetof(OzKStitchResult, camExtrinsic) == 0, "");
static_assert(offsetof(OzKStitchResult, camRTError) == 1280, "");
static_assert(offsetof(OzKStitchResult, cameraNum) == 1320, "");
static_assert(offsetof(OzKStitchResult, baseCamIdx) == 1324, "");

static_assert(sizeof(OzKStitchCstring) == 512, "");
static_assert(offsetof(OzKStitchCstring, str) == 0, "");

static_assert(sizeof(OzKStitchCstringList) == 16, "");
static_assert(offsetof(OzKStitchCstringList, strs) == 0, "");
static_assert(offsetof(OzKStitchCstringList, num) == 8, "");

#endif // VELMORN64_H
