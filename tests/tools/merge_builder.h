// Jobs of merged clouds for tests: small enough to be worked out by hand.
#ifndef VELMORN64_TESTS_TOOLS_MERGE_BUILDER_H
#define VELMORN64_TESTS_TOOLS_MERGE_BUILDER_H

#include <filesystem>
#include <vector>

#include <nlohmann/json.hpp>

#include "velmorn/camera_cloud.h"

namespace velmorn::tool {

// A job of the cameras "a" and "b" of aerial_builder.h, without further keys. In the base's frame
// the five pixels of "a", at depth 100, are (5, 4..8, 107), those of "b", at depth 50, are
// (5, 6.2 6.7 7.2 7.7 8.2, 57).
nlohmann::json twoCameraMergeJob();

// Writes "row.yml", "a.png", "b.png" and "result.json", which twoCameraMergeJob names. The result
// file has intrinsics of "b": those of the camera file.
void writeTwoCameraMergeFiles(const std::filesystem::path& folder);

// Sets "baseFromCam" of one of its cameras, 0 or 1, in a result file.
void setBaseFromCam(const std::filesystem::path& resultFile, std::size_t camera,
                    const nlohmann::json& rows);

// Reads a merged cloud with PCL. Throws when it is none.
std::vector<CloudPoint> readMergedCloud(const std::filesystem::path& path);

} // namespace velmorn::tool

#endif // VELMORN64_TESTS_TOOLS_MERGE_BUILDER_H
