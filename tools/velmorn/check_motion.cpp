// Whether the cameras of a run stood still and took the board for the same way up.
#include "velmorn/check_motion.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <set>
#include <vector>

#include "velmorn/pair_agreement.h"
#include "velmorn/pose.h"
#include "velmorn/round_numbers.h"
#include "velmorn/shot_geometry.h"
#include "velmorn/tool_error.h"

namespace velmorn::tool {
namespace {

// What a fit leaves, in squares: above the first the positions do not fit together at all, above
// the second and several times the best other pair's they fit worse than they should.
constexpr double kTooFarApart = 0.1;
constexpr double kFarApart = 0.005;
constexpr double kTimesTheOthers = 6;
constexpr double kTimesTheFit = 3; // of the result's own transforms against the best ones

struct Pair {
  const CameraRecord* a = nullptr;
  const CameraRecord* b = nullptr;
  PairAgreement found;

  bool has(const CameraRecord* camera) const { return a == camera || b == camera; }
};

using Pairs = std::vector<Pair>;
using PairTest = std::function<bool(const Pair&)>;

Pairs comparedPairs(const StitchRecord& run) {
  Pairs pairs;
  for (std::size_t i = 0; i < run.cameras.size(); ++i)
    for (std::size_t k = 0; k < i; ++k) {
      const Pair pair{&run.cameras[k], &run.cameras[i],
                      comparePair(run, run.cameras[k], run.cameras[i])};
      if (pair.found.positions.size() >= 2) pairs.push_back(pair);
    }
  return pairs;
}

Pairs thoseThat(const Pairs& pairs, const PairTest& test) {
  Pairs chosen;
  std::copy_if(pairs.begin(), pairs.end(), std::back_inserter(chosen), test);
  return chosen;
}

// The one camera that all bad pairs have in common, when it is in no good pair, or in more bad ones
// than any other.
const CameraRecord* suspect(const Pairs& pairs, const Pairs& bad, const StitchRecord& run) {
  std::vector<const CameraRecord*> common;
  for (const CameraRecord& camera : run.cameras)
    if (std::all_of(bad.begin(), bad.end(), [&](const Pair& pair) { return pair.has(&camera); }))
      common.push_back(&camera);
  if (common.size() == 1) return common.front();
  // One bad pair: it is the camera that no good pair speaks for.
  std::vector<const CameraRecord*> alone;
  for (const CameraRecord* camera : common)
    if (std::count_if(pairs.begin(), pairs.end(),
                      [&](const Pair& pair) { return pair.has(camera); }) == 1)
      alone.push_back(camera);
  return alone.size() == 1 ? alone.front() : nullptr;
}

// `camera "b"`, or the pairs when no single camera is to blame.
std::string subject(const CameraRecord* camera, const Pairs& bad) {
  if (camera != nullptr) return "camera " + inQuotes(camera->id);
  std::string text = "cameras ";
  for (const Pair& pair : bad)
    text +=
        (&pair == &bad.front() ? "" : ", ") + inQuotes(pair.a->id) + " and " + inQuotes(pair.b->id);
  return text;
}

// `"a" and "c"`: the others of the bad pairs.
std::string partners(const CameraRecord* camera, const Pairs& bad) {
  std::string text;
  for (const Pair& pair : bad)
    text += (text.empty() ? "" : " and ") + inQuotes(pair.a == camera ? pair.b->id : pair.a->id);
  return text;
}

std::string positionName(const CameraRecord& camera, std::size_t position) {
  return std::to_string(position + 1) + " (" + fileName(camera.shots[position].image) + ")";
}

std::string lengthText(double length) { return roughNumberText(length); }

Finding halfTurnFinding(const CameraRecord* camera, const Pairs& bad) {
  Finding finding;
  finding.weight = Weight::kProblem;
  finding.text =
      camera == nullptr
          ? subject(camera, bad) + " take the board for turned by half a turn to each other"
          : subject(camera, bad) + " takes the board for turned by half a turn, compared with " +
                partners(camera, bad);
  finding.text +=
      ": with two odd or two even numbers of inner corners the board looks the same "
      "after half a turn, and they count from different ends";
  finding.advice =
      "use a board with one odd and one even number of inner corners, such as 9x6, or "
      "take the images with the board the same way up in all cameras";
  return finding;
}

// The move as the suspect made it, in its own pair.
std::string moveText(const Pair& pair, const CameraRecord* camera) {
  const Move& move = *pair.found.move;
  const bool isA = camera == pair.a;
  const cv::Matx44d before = isA ? inversePose(move.aFromBBefore) : move.aFromBBefore;
  const cv::Matx44d after = isA ? inversePose(move.aFromBAfter) : move.aFromBAfter;
  const double distance = cv::norm(translationOf(after) - translationOf(before));
  const double degrees = rotationDegrees(inversePose(before) * after);
  return "by about " + lengthText(distance) + " and " + roughNumberText(degrees) + " degrees";
}

Finding moveFinding(const CameraRecord* camera, const Pairs& bad) {
  const Pair& pair = bad.front();
  const CameraRecord& shown = camera == nullptr ? *pair.a : *camera;
  const Move& move = *pair.found.move;
  Finding finding;
  finding.weight = Weight::kProblem;
  finding.text = camera == nullptr
                     ? "one of the " + subject(camera, {pair}) + " was moved"
                     : subject(camera, bad) + " was moved, as " + partners(camera, bad) + " saw it";
  finding.text += ": between board positions " + positionName(shown, move.lastBefore) + " and " +
                  positionName(shown, move.firstAfter) + ", " + moveText(pair, camera);
  finding.advice =
      "fix the cameras and take all images again, or leave out the images before (or "
      "after) the move";
  return finding;
}

// All pairs of `bad` have the same odd positions.
Finding oddFinding(const CameraRecord* camera, const Pairs& bad) {
  const Pair& pair = bad.front();
  const CameraRecord& shown = camera == nullptr ? *pair.a : *camera;
  std::string list;
  for (const std::size_t position : pair.found.odd)
    list += (list.empty() ? "" : ", ") + positionName(shown, position);
  const bool isOne = pair.found.odd.size() == 1;
  Finding finding;
  finding.weight = Weight::kProblem;
  finding.text = subject(camera, bad) + ": board position" + (isOne ? " " : "s ") + list +
                 (isOne ? " disagrees" : " disagree") + " with all others" +
                 (camera == nullptr ? "" : ", as " + partners(camera, bad) + " saw it") +
                 "; a camera or the board moved meanwhile, or these images do not belong together";
  finding.advice = "leave these images out in all cameras and stitch again";
  return finding;
}

// The least that any other pair leaves; a fault of one camera can spoil most of them.
double leastApart(const Pairs& pairs, const Pair* without) {
  double least = std::numeric_limits<double>::infinity();
  for (const Pair& pair : pairs)
    if (&pair != without) least = std::min(least, pair.found.apart);
  return least;
}

Finding apartFinding(const StitchRecord& run, const Pairs& bad, const CameraRecord* camera,
                     Weight weight) {
  double most = 0;
  for (const Pair& pair : bad) most = std::max(most, pair.found.apart);
  Finding finding;
  finding.weight = weight;
  finding.text =
      subject(camera, bad) +
      (camera == nullptr ? " do not agree" : " does not agree with " + partners(camera, bad)) +
      " about where the board is: their board positions are " + lengthText(most) +
      " apart under one transform, with squares of " + shortNumberText(run.square);
  finding.advice =
      "a camera or the board was moved while the images were taken, the images of one "
      "position do not belong together, or the intrinsics are another camera's";
  return finding;
}

// How far apart the boards are under the result's own places; nothing without both of them.
double apartInResult(const StitchRecord& run, const Pair& pair) {
  if (!pair.a->baseFromCam || !pair.b->baseFromCam) return 0;
  return apartUnder(run, *pair.a, *pair.b,
                    inversePose(*pair.a->baseFromCam) * *pair.b->baseFromCam);
}

Finding misplacedFinding(const StitchRecord& run, const CameraRecord* camera, const Pairs& bad) {
  double most = 0;
  for (const Pair& pair : bad) most = std::max(most, apartInResult(run, pair));
  Finding finding;
  finding.weight = Weight::kProblem;
  finding.text = subject(camera, bad) +
                 (camera == nullptr ? " do not stand to each other as the result says"
                                    : " does not stand where the result says, compared with " +
                                          partners(camera, bad)) +
                 ": its transforms leave the boards that they saw " + lengthText(most) +
                 " apart, with squares of " + shortNumberText(run.square);
  finding.advice = "stitch again; the result was changed, or is put together from several runs";
  return finding;
}

} // namespace

Findings checkMotion(const StitchRecord& run) {
  const Pairs pairs = comparedPairs(run);
  const auto isTurned = [](const Pair& pair) { return pair.found.isHalfTurned; };
  const auto isMoved = [](const Pair& pair) { return pair.found.move.has_value(); };
  const auto isApart = [&](const Pair& pair) {
    return !pair.found.isExplained() && pair.found.apart > kTooFarApart * run.square;
  };
  const auto isWorse = [&](const Pair& pair) {
    return !pair.found.isExplained() && !isApart(pair) &&
           pair.found.apart > kFarApart * run.square &&
           pair.found.apart > kTimesTheOthers * leastApart(pairs, &pair);
  };

  Findings findings;
  if (const Pairs bad = thoseThat(pairs, isTurned); !bad.empty())
    findings.push_back(halfTurnFinding(suspect(pairs, bad, run), bad));
  if (const Pairs bad = thoseThat(pairs, isMoved); !bad.empty())
    findings.push_back(moveFinding(suspect(pairs, bad, run), bad));
  std::set<std::vector<std::size_t>> oddLists;
  for (const Pair& pair : pairs)
    if (!pair.found.odd.empty()) oddLists.insert(pair.found.odd);
  for (const auto& odd : oddLists) {
    const Pairs bad = thoseThat(pairs, [&](const Pair& pair) { return pair.found.odd == odd; });
    findings.push_back(oddFinding(suspect(pairs, bad, run), bad));
  }
  if (const Pairs bad = thoseThat(pairs, isApart); !bad.empty())
    findings.push_back(apartFinding(run, bad, suspect(pairs, bad, run), Weight::kProblem));
  const auto isMisplaced = [&](const Pair& pair) {
    const double apart = apartInResult(run, pair);
    return apart > kTooFarApart * run.square && apart > kTimesTheFit * pair.found.apart;
  };
  if (const Pairs bad = thoseThat(pairs, isMisplaced); !bad.empty())
    findings.push_back(misplacedFinding(run, suspect(pairs, bad, run), bad));
  Pairs worse;
  for (const Pair& pair : pairs)
    if (isWorse(pair)) worse.push_back(pair);
  if (!worse.empty())
    findings.push_back(apartFinding(run, worse, suspect(pairs, worse, run), Weight::kCaution));
  return findings;
}

} // namespace velmorn::tool
