// The aerial view, sample by sample.
#include "depth/plain_aerial_view.h"

#include <cmath>
#include <cstdint>
#include <vector>

namespace velmorn {

void plainFalseColor(const unsigned short* depth, int width, int height, unsigned char* output) {
  std::vector<std::uint32_t> counts(65535);
  std::vector<unsigned char> e(65535);
  const std::int64_t cells = static_cast<std::int64_t>(width) * height;
  std::uint32_t total = 0;
  for (std::int64_t i = 0; i < cells; ++i)
    if (depth[i] < 65535) {
      ++counts[depth[i]];
      ++total;
    }
  std::uint32_t s = 0;
  for (std::size_t i = 0; i < 65535 && total > 0; ++i) {
    s += counts[i];
    e[i] = static_cast<unsigned char>(s * 255U / total);
  }
  for (std::int64_t i = 0; i < cells; ++i) {
    unsigned char* cell = output + 3 * i;
    cell[0] = cell[1] = cell[2] = 0;
    if (depth[i] == 65535) continue;
    const int k = e[depth[i]];
    cell[0] = static_cast<unsigned char>(k);
    cell[1] = static_cast<unsigned char>(k < 127.5 ? 2 * k : (-2 * k - 2) & 255);
    cell[2] = static_cast<unsigned char>(255 - k + 0.5);
  }
}

cv::Mat plainAerialView(const cv::Mat* depths, const cv::Mat* colors,
                        const tagOzKCamIntrinsic* intrinsics, const tagOzKCamExtrinsic* extrinsics,
                        int cameraCount, const tagOzKRect2Df32& region, float resolution) {
  const float x1 = region.x1, y1 = region.y1, x2 = region.x2, y2 = region.y2;
  const int W = static_cast<int>(std::trunc((x2 - x1) / resolution)) + 1;
  const int H = static_cast<int>(std::trunc((y2 - y1) / resolution)) + 1;
  std::vector<unsigned short> nearest(static_cast<std::size_t>(W) * static_cast<std::size_t>(H),
                                      65535);
  cv::Mat image(H, W, CV_8UC3, cv::Scalar::all(0));

  for (int k = 0; k < cameraCount; ++k) {
    const double* m = intrinsics[k].matrix;
    const float ifx = static_cast<float>(1.0 / m[0]), ify = static_cast<float>(1.0 / m[4]);
    const float cx = static_cast<float>(m[2]), cy = static_cast<float>(m[5]);
    float f[8] = {};
    for (int i = 0; k >= 1 && i < 8; ++i) f[i] = static_cast<float>(extrinsics[k].data[i]);
    for (int v = 0; v < depths[k].rows; ++v) {
      const unsigned short* depthRow = depths[k].ptr<unsigned short>(v);
      for (int u = 0; u < depths[k].cols; ++u) {
        const unsigned short d = depthRow[u];
        if (d == 0) continue;
        float X = (static_cast<float>(u) - cx) * ifx * static_cast<float>(d);
        float Y = (static_cast<float>(v) - cy) * ify * static_cast<float>(d);
        if (k >= 1) {
          const float X0 = X, Y0 = Y, D = static_cast<float>(d);
          X = f[0] * X0 + f[1] * Y0 + f[2] * D + f[3];
          Y = f[4] * X0 + f[5] * Y0 + f[6] * D + f[7];
        }
        if (!(x1 < X && X < x2 && y1 < Y && Y < y2)) continue;
        const int c = static_cast<int>((X - x1) / resolution);
        const int w = static_cast<int>((Y - y1) / resolution);
        const std::size_t cell =
            static_cast<std::size_t>(w) * static_cast<std::size_t>(W) + static_cast<std::size_t>(c);
        if (d >= nearest[cell]) continue;
        nearest[cell] = d;
        if (colors == nullptr) continue;
        const unsigned char* pixel = colors[k].ptr(v) + 3 * u;
        for (std::size_t i = 0; i < 3; ++i) image.data[3 * cell + i] = pixel[i];
      }
    }
  }
  if (colors == nullptr) plainFalseColor(nearest.data(), W, H, image.data);
  return image;
}

} // namespace velmorn
