// Coordinated Video Timings (VESA CVT 1.2): standard blanking, reduced blanking versions 1 and 2.
//
//                       standard          reduced 1         reduced 2
// clock step            250 kHz           250 kHz           1 kHz
// character cell        8                 8                 1
// vertical sync         by aspect         by aspect         8
// vertical front porch  3                 3                 what is left (1 at least)
// vertical back porch   what is left      what is left      6
// vertical blanking     sync and back     460 us at least   460 us at least
//                       porch 550 us
// horizontal blanking   by duty cycle     160               80
// horizontal sync       8 % of the total  32                32
// polarity h, v         -, +              +, -              +, -

#include <algorithm>
#include <cmath>

#include "base/bytes.h"
#include "base/log.h"
#include "base/pinned.h"
#include "timing/modes.h"
#include "timing/tables.h"

namespace reedid {
namespace {

PIN_FIELDS(CvtTiming, 0, 1, formula, aspectRatio);
PIN_FIELDS(CvtTiming, 2, 2, hactive, frameRate);
PIN_FIELDS(CvtTiming, 6, 1, interlaced, preferred, ycc420, flagA, flagB);
PIN_FIELDS(CvtTiming, 12, 2, vactive);
PIN_FIELDS(CvtTiming, 14, 1, extraBits42, extraBits75);
PIN_SIZE(CvtTiming, 16);

enum Formula : uint8_t { kStandard = 0, kReduced1 = 1, kReduced2 = 2 };

constexpr uint32_t kMinVBackPorch = 6;
constexpr uint32_t kVFrontPorch = 3;
constexpr uint32_t kMinVFrontPorchV2 = 1;
constexpr uint32_t kVSyncV2 = 8;
constexpr uint32_t kReducedHSync = 32;
constexpr double kMinVSyncAndBackPorch = 550;    // us
constexpr double kMinReducedVBlank = 460;        // us
constexpr uint64_t kFractionalRatePpm = 999001;  // 1000/1001

// What the formula works on; counts are of one field when interlaced.
struct Work {
  uint32_t cell = 0;
  uint8_t aspect = ASPECT_UNKNOWN;
  uint32_t vsync = 0;
  uint32_t lines = 0;
  uint32_t halfLine = 0;  // 1 when interlaced: a field has half a line more than its count
};

// What it yields; wide, because a request can ask for more than a record holds.
struct Result {
  double clock = 0;  // kHz
  double vblank = 0;
  uint32_t vfrontPorch = kVFrontPorch;
  uint32_t hblank = 0;
  uint32_t hsync = kReducedHSync;
};

struct AspectRule {
  uint32_t width, height;
  uint8_t aspect;
  uint8_t vsync;
};

// The vertical sync width tells the aspect, so that a display can know it from the signal.
constexpr AspectRule kAspectRules[] = {
    {4, 3, ASPECT_4_3, 4}, {16, 9, ASPECT_16_9, 5}, {16, 10, ASPECT_16_10, 6},
    {5, 4, ASPECT_5_4, 7}, {15, 9, ASPECT_5_3, 7},
};
constexpr uint8_t kVSyncOfOtherAspects = 10;

// Lines of the frame. Widths are whole cells: 1360 comes from 768 lines, which the division would not give back.
uint32_t FrameLines(const CvtTiming& request) {
  if (request.vactive != 0) return request.vactive;
  if (request.aspectRatio == ASPECT_16_9 && request.hactive == 1360) return 768;
  return static_cast<uint32_t>(static_cast<float>(request.hactive) / kAspectRatios[request.aspectRatio]);
}

const AspectRule* DetectAspect(uint32_t hactive, uint32_t lines, uint32_t cell) {
  for (const AspectRule& rule : kAspectRules) {
    if (lines * rule.width / (rule.height * cell) * cell == hactive) return &rule;
  }
  return nullptr;
}

Work Plan(const CvtTiming& request) {
  const bool v2 = request.formula == kReduced2;
  const uint32_t frameLines = FrameLines(request);
  Work work;
  work.cell = v2 ? 1 : 8;
  const AspectRule* rule = DetectAspect(request.hactive, frameLines, work.cell);
  work.aspect = rule != nullptr ? rule->aspect : request.aspectRatio;
  work.vsync = v2 ? kVSyncV2 : rule != nullptr ? rule->vsync : kVSyncOfOtherAspects;
  work.halfLine = request.interlaced != 0 ? 1 : 0;
  work.lines = frameLines >> work.halfLine;
  return work;
}

Result StandardBlanking(const CvtTiming& request, const Work& work) {
  Result result;
  const double hactive = request.hactive;
  const double period = (1.0 / request.frameRate - kMinVSyncAndBackPorch / 1000000) /
                        (work.lines + kVFrontPorch + 0.5 * work.halfLine) * 1000000;  // us
  const double syncAndBackPorch =
      std::max(std::floor(kMinVSyncAndBackPorch / period) + 1, static_cast<double>(work.vsync + kMinVBackPorch));
  const double duty = std::max(30 - 300 * period / 1000, 20.0);  // percent
  const uint32_t cells = 2 * work.cell;
  result.vblank = syncAndBackPorch + kVFrontPorch;
  result.hblank = static_cast<uint32_t>(std::floor(hactive * duty / (100 - duty) / cells)) * cells;
  const double htotal = hactive + result.hblank;
  result.hsync = static_cast<uint32_t>(std::floor(htotal * 0.08 / work.cell)) * work.cell;
  result.clock = std::floor(htotal / period / 0.25) * 250;
  return result;
}

// The clock of a reduced timing: rate * total is whole in Hz (in half Hz when interlaced), so that one division rounds.
double ReducedClock(const CvtTiming& request, const Work& work, const Result& result) {
  const uint64_t stepKHz = request.formula == kReduced2 ? 1 : 250;
  const auto halfLines = 2 * (uint64_t{work.lines} + static_cast<uint64_t>(result.vblank)) + work.halfLine;
  const uint64_t halfHz = request.frameRate * (uint64_t{request.hactive} + result.hblank) * halfLines;
  // NOLINTNEXTLINE(bugprone-integer-division): whole kHz, as all clocks
  if (halfHz / 2000 > UINT32_MAX) return static_cast<double>(halfHz / 2000);  // more than a record holds
  const uint64_t steps =
      request.flagA != 0 ? halfHz * kFractionalRatePpm / (stepKHz * 2000 * 1000000) : halfHz / (stepKHz * 2000);
  return static_cast<double>(steps * stepKHz);
}

Result ReducedBlanking(const CvtTiming& request, const Work& work) {
  const bool v2 = request.formula == kReduced2;
  Result result;
  const double period = (1000000.0 / request.frameRate - kMinReducedVBlank) / work.lines;  // us
  const uint32_t minLines = (v2 ? kMinVFrontPorchV2 : kVFrontPorch) + work.vsync + kMinVBackPorch;
  result.vblank = std::max(std::floor(kMinReducedVBlank / period) + 1, static_cast<double>(minLines));
  if (result.vblank > UINT16_MAX) return {};
  if (v2) result.vfrontPorch = static_cast<uint32_t>(result.vblank) - kMinVBackPorch - work.vsync;
  result.hblank = v2 ? 80 : 160;
  result.clock = ReducedClock(request, work, result);
  return result;
}

bool FitsRecord(const Result& result) {
  return result.clock <= UINT32_MAX && result.vblank > 0 && result.vblank <= UINT16_MAX;
}

void Fill(const CvtTiming& request, const Work& work, const Result& result, DtdTiming& out) {
  const bool standard = request.formula == kStandard;
  out.pixelClock = static_cast<uint32_t>(result.clock);
  out.hactive = request.hactive;
  out.hblank = Low16(result.hblank);
  out.hsyncWidth = Low16(result.hsync);
  out.hfrontPorch = Low16(result.hblank / 2 - result.hsync);
  out.vactive = Low16(work.lines);
  out.vblank = static_cast<uint16_t>(result.vblank);
  out.vfrontPorch = Low16(result.vfrontPorch);
  out.vsyncWidth = Low16(work.vsync);
  out.hsyncPositive = standard ? 0 : 1;
  out.vsyncPositive = standard ? 1 : 0;
  out.aspectRatio = work.aspect;
  out.interlaced = Low8(work.halfLine);
  const double total = (uint32_t{out.hactive} + result.hblank) * (work.lines + result.vblank + 0.5 * work.halfLine);
  out.frameRate = Low8(std::llround(result.clock * 1000 / total));
}

}  // namespace

const char* ExpandCvt(const CvtTiming& request, DtdTiming& out) {
  constexpr const char* kInvalid = "invalid parameters";
  out = {};
  if (request.hactive == 0 || request.frameRate == 0 ||
      (request.vactive == 0 && request.aspectRatio >= ASPECT_UNKNOWN)) {
    return kInvalid;
  }
  if (request.formula > kReduced2) return "Not support CVT 1.3 now.";
  if (request.formula == kReduced1 && request.frameRate % 60 != 0) {
    return "Refresh rate must be multiple of 60hz according to CVT 1.1 specifications for reduced blanking.";
  }
  if (request.formula != kReduced2 && request.flagA != 0) return "Only CVT 1.2 support 1000/1001.";

  const bool standard = request.formula == kStandard;
  const Work work = Plan(request);
  const double minBlankTime = standard ? kMinVSyncAndBackPorch : kMinReducedVBlank;
  if (work.lines == 0 || request.frameRate * minBlankTime >= 1000000) return kInvalid;
  const Result result = standard ? StandardBlanking(request, work) : ReducedBlanking(request, work);
  if (!FitsRecord(result)) return kInvalid;
  Fill(request, work, result, out);
  return nullptr;
}

}  // namespace reedid

using namespace reedid;

int32_t Cvt2ToDtd(const CvtTiming* request, DtdTiming* out) {
  if (request == nullptr || out == nullptr) return REEDID_ERR("invalid parameters");
  const char* refusal = ExpandCvt(*request, *out);
  return refusal == nullptr ? 0 : REEDID_ERR("%s", refusal);
}
