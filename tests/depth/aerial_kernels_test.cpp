// Every form of the aerial view's searches against the plain one.
#include "depth/aerial_kernels.h"

#include <algorithm>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "depth/aerial_cells.h"
#include "depth/aerial_scenes.h"
#include "depth/depth_false_color.h"
#include "depth/plain_aerial_view.h"

namespace velmorn {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

struct Form {
  std::string name;
  const AerialKernels& kernels;
};

// The forms that this machine can run; the plain one checks the comparison itself.
std::vector<Form> runnableForms() {
  std::vector<Form> forms{{"plain", plainAerialKernels()}};
#if defined(VELMORN_X86_KERNELS)
  if (supportedVectorLevel() >= VectorLevel::kAvx2) forms.push_back({"AVX2", avx2AerialKernels()});
  if (supportedVectorLevel() >= VectorLevel::kAvx512)
    forms.push_back({"AVX-512", avx512AerialKernels()});
#endif
  return forms;
}

struct Samples {
  std::vector<std::uint16_t> depth;
  std::vector<float> columnFactors;
  CameraFactors camera{};
  AerialGrid grid{};
  float rowFactor = 0;
};

struct ListedSample {
  int offset, cell;
  std::uint16_t depth;
  bool operator==(const ListedSample& o) const {
    return offset == o.offset && cell == o.cell && depth == o.depth;
  }
};

// Lists through buffers of exactly the room that is promised; elements beyond must stay.
std::vector<ListedSample> list(const AerialKernels& kernels, const Samples& s) {
  const int n = static_cast<int>(s.depth.size());
  std::vector<Listed> samples(s.depth.size() + kListSlack);
  std::vector<std::int32_t> cells(s.depth.size() + kListSlack);
  const DepthStretch stretch{s.depth.data(), s.columnFactors.data(), n, s.rowFactor};
  const int length = kernels.listSamples(stretch, s.camera, s.grid, samples.data(), cells.data());
  EXPECT_LE(length, n);
  std::vector<ListedSample> listed;
  for (std::size_t i = 0; i < static_cast<std::size_t>(length); ++i)
    listed.push_back({static_cast<int>(offsetOf(samples[i])), cells[i], depthOf(samples[i])});
  return listed;
}

// Colours that tell pixels apart.
std::vector<unsigned char> pixelsFor(std::size_t n) {
  std::vector<unsigned char> bytes(3 * n);
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<unsigned char>(i * 37 % 251);
  return bytes;
}

// The keys that a form lists are those of the samples it lists, one by one.
void expectKeysOfList(const Form& form, const Samples& s,
                      const std::vector<ListedSample>& samples) {
  constexpr std::uint32_t kFirst = 0xABCDEF;
  const std::vector<unsigned char> pixels = pixelsFor(s.depth.size());
  std::vector<SampleKey> keys(s.depth.size() + kListSlack), expected;
  std::vector<std::int32_t> cells(s.depth.size() + kListSlack);
  const DepthStretch stretch{s.depth.data(), s.columnFactors.data(),
                             static_cast<int>(s.depth.size()), s.rowFactor};
  const int length = form.kernels.listKeys(stretch, {pixels.data(), kFirst}, s.camera, s.grid,
                                           keys.data(), cells.data());
  ASSERT_EQ(static_cast<std::size_t>(length), samples.size()) << form.name;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const auto offset = static_cast<std::size_t>(samples[i].offset);
    const unsigned char* p = &pixels[3 * offset];
    const SampleKey key = SampleKey{samples[i].depth} << 48 |
                          static_cast<SampleKey>(kFirst + offset) << 24 |
                          static_cast<SampleKey>(p[0] + 256 * p[1] + 65536 * p[2]);
    ASSERT_EQ(keys[i], key) << form.name << ", n " << s.depth.size() << ", element " << i;
    ASSERT_EQ(cells[i], samples[i].cell) << form.name << ", n " << s.depth.size();
  }
}

bool beats(const ListedSample& a, const ListedSample& b) {
  return a.depth != b.depth ? a.depth < b.depth : a.offset < b.offset;
}

// Is the sample beaten by the one beside it in the plain list?
bool isBeaten(const std::vector<ListedSample>& all, std::size_t i) {
  const auto beatenBy = [&](std::size_t k) {
    const bool isBeside = all[k].offset + 1 == all[i].offset || all[i].offset + 1 == all[k].offset;
    return isBeside && all[k].cell == all[i].cell && beats(all[k], all[i]);
  };
  return (i > 0 && beatenBy(i - 1)) || (i + 1 < all.size() && beatenBy(i + 1));
}

// The list holds every sample of the plain one in its order, but for some that are beaten.
void expectEquivalent(const Samples& s) {
  const std::vector<ListedSample> all = list(plainAerialKernels(), s);
  for (const Form& form : runnableForms()) {
    const std::vector<ListedSample> listed = list(form.kernels, s);
    std::size_t next = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
      if (next < listed.size() && listed[next] == all[i])
        ++next;
      else
        EXPECT_TRUE(isBeaten(all, i)) << form.name << ", n " << s.depth.size() << ", sample " << i;
    }
    EXPECT_EQ(next, listed.size()) << form.name << ", n " << s.depth.size();
    expectKeysOfList(form, s, listed);
  }
}

Samples randomSamples(int n, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> shake(-1, 1);
  Samples s;
  const float step = std::exp2(4 * shake(random)) / 1000;
  for (int i = 0; i < n; ++i) {
    const bool isMissing = random() % 7 == 0;
    s.depth.push_back(static_cast<std::uint16_t>(isMissing ? 0 : 1000 + random() % 4));
    s.columnFactors.push_back(step * static_cast<float>(i - n / 2));
  }
  s.rowFactor = shake(random) / 5;
  s.camera.isFirst = seed % 2 == 0;
  s.camera.r00 = 1 + shake(random) / 9;
  s.camera.r01 = shake(random) / 9;
  s.camera.r02 = shake(random) / 99;
  s.camera.t0 = 30 * shake(random);
  s.camera.r10 = shake(random) / 9;
  s.camera.r11 = 1 + shake(random) / 9;
  s.camera.r12 = shake(random) / 99;
  s.camera.t1 = 30 * shake(random);
  s.grid = {{-150, -160, 151, 159}, 3.7F, 82};
  return s;
}

TEST(AerialKernels, EverySmallLengthGivesThePlainList) {
  for (int n = 0; n <= 70; ++n)
    for (unsigned seed = 0; seed < 20; ++seed) expectEquivalent(randomSamples(n, seed));
}

TEST(AerialKernels, LongStretchesGiveThePlainList) {
  for (const int n : {511, 512, 1000, kMostListed})
    for (unsigned seed = 0; seed < 4; ++seed) expectEquivalent(randomSamples(n, seed));
}

TEST(AerialKernels, AwkwardFactorsGiveThePlainList) {
  for (const float awkward : {kNan, kInfinity, -kInfinity, 1e38F, -1e38F, 1e-45F, 0.0F}) {
    for (unsigned seed = 0; seed < 2; ++seed) {
      Samples s = randomSamples(53, seed);
      for (std::size_t i = 0; i < 53; i += 5) s.columnFactors[i] = awkward;
      expectEquivalent(s);
      s.rowFactor = awkward;
      expectEquivalent(s);
      s = randomSamples(53, seed);
      s.camera.r12 = awkward;
      expectEquivalent(s);
    }
  }
}

// Depths of all sizes, the largest have the upper bit set.
TEST(AerialKernels, EveryDepthKeepsItsValue) {
  Samples s = randomSamples(kMostListed, 2);
  s.grid = {{-1, -1, 1, 1}, 1, 3};
  s.rowFactor = 0;
  for (std::size_t i = 0; i < s.depth.size(); ++i) {
    s.depth[i] = static_cast<std::uint16_t>(65535 - 8 * i);
    s.columnFactors[i] = 0;
  }
  expectEquivalent(s);
}

// Equal cells, equal depths, gaps within a cell: the first of a group stays.
TEST(AerialKernels, WinnerOfEveryGroupIsListed) {
  Samples s;
  s.depth = {5, 5, 4, 4, 4, 0, 4, 9, 9, 3, 7, 7, 6, 6, 6, 6, 6, 2, 6, 2, 2, 8};
  s.columnFactors.assign(s.depth.size(), 0.001F);
  s.rowFactor = 0.001F;
  s.camera.isFirst = true;
  s.grid = {{0, 0, 10, 10}, 20, 1};
  expectEquivalent(s);
  for (const Form& form : runnableForms()) {
    ListedSample winner{0, 0, 65535};
    for (const ListedSample& sample : list(form.kernels, s))
      if (sample.depth < winner.depth) winner = sample;
    EXPECT_EQ(winner.offset, 17) << form.name;
  }
}

CameraFactors factorsOf(const AerialScene& s, std::size_t k) {
  const double* m = s.intrinsics[k].matrix;
  const double* e = s.extrinsics[k].data;
  const auto f = [](double value) { return static_cast<float>(value); };
  return {f(1 / m[0]), f(1 / m[4]), f(m[2]), f(m[5]), k == 0,  f(e[0]), f(e[1]),
          f(e[2]),     f(e[3]),     f(e[4]), f(e[5]), f(e[6]), f(e[7])};
}

// A scene's coloured view, its samples brought in row by row by one form.
cv::Mat viewByForm(const AerialKernels& kernels, const AerialScene& s, int gridWidth,
                   int gridHeight) {
  cv::Mat nearest(gridHeight, gridWidth, CV_16UC1), image(gridHeight, gridWidth, CV_8UC3);
  const AerialCells cells{nearest.ptr<std::uint16_t>(), image.data, nearest.total()};
  CellClearing clearing(cells, kernels);
  for (std::size_t k = 0; k < s.depths.size(); ++k) {
    const CameraFactors camera = factorsOf(s, k);
    const int width = s.depths[k].cols;
    std::vector<float> factors;
    for (int u = 0; u < width; ++u)
      factors.push_back((static_cast<float>(u) - camera.cx) * camera.ifx);
    for (int v = 0; v < s.depths[k].rows; ++v) {
      SampleList list;
      list.color = s.colors[k].ptr(v);
      const DepthStretch row{s.depths[k].ptr<std::uint16_t>(v), factors.data(), width,
                             (static_cast<float>(v) - camera.cy) * camera.ify};
      list.n = kernels.listSamples(row, camera, {s.region, s.resolution, gridWidth}, list.samples,
                                   list.cells);
      clearing.clearFor(list);
      fetchCells(list, cells);
      takeCells(list, cells);
    }
  }
  clearing.clearRest();
  return image;
}

TEST(AerialKernels, EveryFormGivesTheBytesOfThePlainView) {
  for (unsigned seed = 0; seed < 12; ++seed)
    for (const float resolution : {0.4F, 2.0F, 9.0F, 70.0F}) {
      AerialScene scene = floorScene(3, 100 + static_cast<int>(seed), 70, 0.1, seed);
      scene.region = {-410, -320, 500, 410};
      scene.resolution = resolution;
      const cv::Mat expected =
          plainAerialView(scene.depths.data(), scene.colors.data(), scene.intrinsics.data(),
                          scene.extrinsics.data(), 3, scene.region, resolution);
      for (const Form& form : runnableForms())
        EXPECT_TRUE(
            haveEqualBytes(viewByForm(form.kernels, scene, expected.cols, expected.rows), expected))
            << form.name << ", seed " << seed << ", resolution " << resolution;
    }
}

// Buffers of exactly the promised size, so that the sanitizers see what is written beyond.
TEST(AerialKernels, KeysShowTheirColors) {
  std::mt19937_64 random(6);
  for (const std::size_t n : {0U, 1U, 2U, 7U, 8U, 9U, 10U, 11U, 15U, 16U, 17U, 18U, 33U, 1000U}) {
    std::vector<SampleKey> keys(n);
    std::vector<unsigned char> expected;
    for (SampleKey& key : keys) {
      key = random() % 4 == 0 ? kEmptyKey : random();
      for (int byte = 0; byte < 3; ++byte)
        expected.push_back(static_cast<unsigned char>(key >> 8 * byte & 255));
    }
    for (const Form& form : runnableForms()) {
      std::vector<unsigned char> image(3 * n, 0xA5);
      form.kernels.showKeys(keys.data(), n, image.data());
      EXPECT_EQ(image, expected) << form.name << ", " << n << " keys";
    }
  }
}

TEST(AerialKernels, RangeOfCellsIsFound) {
  std::mt19937 random(5);
  for (int n = 1; n <= 70; ++n)
    for (int i = 0; i < 20; ++i) {
      std::vector<std::int32_t> cells(static_cast<std::size_t>(n));
      for (auto& cell : cells) cell = static_cast<std::int32_t>(random() & 0x7FFFFFFF);
      const auto expected = std::minmax_element(cells.begin(), cells.end());
      for (const Form& form : runnableForms()) {
        const CellRange range = form.kernels.findRange(cells.data(), n);
        EXPECT_EQ(range.first, *expected.first) << form.name << ", " << n;
        EXPECT_EQ(range.last, *expected.second) << form.name << ", " << n;
      }
    }
}

TEST(AerialKernels, CoveredCellsAreListed) {
  std::mt19937 random(3);
  for (const int n : {0, 1, 7, 8, 15, 16, 17, 31, 32, 33, 63, 65, 1000, kMostListed})
    for (const unsigned emptyIn100 : {0U, 50U, 97U, 100U}) {
      const unsigned depthEnd = n % 2 == 0 ? kEmptyCell : 1000;
      std::vector<std::uint16_t> depth(static_cast<std::size_t>(n));
      std::vector<Listed> expected;
      std::uint16_t depthBits = 0;
      for (int i = 0; i < n; ++i) {
        auto& cell = depth[static_cast<std::size_t>(i)];
        cell = random() % 100 < emptyIn100 ? kEmptyCell
                                           : static_cast<std::uint16_t>(random() % depthEnd);
        if (cell == kEmptyCell) continue;
        expected.push_back(listed(cell, i));
        depthBits |= cell;
      }
      for (const Form& form : runnableForms()) {
        std::vector<Listed> covered(depth.size() + kListSlack);
        const CoveredCells found = form.kernels.listCovered(depth.data(), n, covered.data());
        covered.resize(static_cast<std::size_t>(found.n));
        EXPECT_EQ(covered, expected) << form.name << ", " << n << " cells";
        EXPECT_EQ(found.depthBits, depthBits) << form.name << ", " << n << " cells";
      }
    }
}

} // namespace
} // namespace velmorn
