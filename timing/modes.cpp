#include "timing/modes.h"

#include <algorithm>
#include <iterator>

#include "base/bytes.h"
#include "timing/dtd.h"
#include "timing/tables.h"

namespace reedid {
namespace {

constexpr unsigned kVicWithEvenTotal = 39;  // CTA-861, table 3: 1250 lines, 625 in each field

// Rows of the DMT table that state a mode otherwise than VESA DMT 1.0 does.
constexpr unsigned kWithBorders[] = {4, 5};
constexpr uint8_t kDmtBorder = 8;
constexpr unsigned kInterlacedDmt = 15;
constexpr uint16_t kInterlacedVBlank = 24;
constexpr unsigned kFastDmt = 88;
constexpr uint32_t kFastDmtClock = 556188;
constexpr unsigned kFirst1400x1050 = 41, kLast1400x1050 = 43;  // their aspect is known all the same

// Established timings that no DMT identifier has: of IBM's and Apple's display adapters.
struct OldMode {
  uint8_t index;
  TimingRow row;
};
// clang-format off
//      clock  hact  hblk  hfp  hsy  vact  vbl vfp vsy h+ v+ i rate aspect
constexpr OldMode kOldModes[] = {
    {4,  { 30240,  640,  224,   64,  64,  480,  45,  3,  3, 0, 0, 0,  67, ASPECT_4_3}},
    {6,  { 35500,  720,  180,   18, 108,  400,  49, 12,  2, 0, 1, 0,  88, ASPECT_UNKNOWN}},
    {7,  { 28320,  720,  180,   18, 108,  400,  49, 21,  2, 0, 1, 0,  70, ASPECT_UNKNOWN}},
    {13, { 57284,  832,  320,   32,  64,  624,  43,  1,  3, 0, 0, 0,  75, ASPECT_4_3}},
    {16, {100000, 1152,  304,   48, 128,  870,  45,  3,  3, 1, 1, 0,  75, ASPECT_4_3}},
};
// clang-format on
constexpr unsigned kEst12Interlaced = 12;
constexpr unsigned kFirstEst3Code = 128;

// Four bits of established timings III that the library's own map reads otherwise.
constexpr unsigned kFirstOddEst3 = 12;
constexpr uint8_t kOddEst3[] = {25, 24, 23, 22};

// The standard timing code of each DMT identifier (VESA DMT 1.0, table 1-1), first byte high; ten a row. Where two modes
// share a format, the one with normal blanking has the code. 1360x768 has none; displays tell 1360x765 for it.
// clang-format off
constexpr uint16_t kStdCodes[kDmtRows] = {
    0,      0,      0x3119, 0,      0x3140, 0x314C, 0x314F, 0x3159, 0,      0x4540,  // 0
    0x454C, 0x454F, 0x4559, 0,      0,      0,      0x6140, 0x614A, 0x614F, 0x6159,  // 10
    0,      0x714F, 0,      0,      0,      0,      0,      0,      0x8100, 0x810F,  // 20
    0x8119, 0,      0x8140, 0x8159, 0,      0x8180, 0x818F, 0x8199, 0,      0x8BC0,  // 30
    0,      0,      0x9040, 0x904F, 0x9059, 0,      0,      0x9500, 0x950F, 0x9519,  // 40
    0,      0xA940, 0xA945, 0xA94A, 0xA94F, 0xA959, 0,      0,      0xB300, 0xB30F,  // 50
    0xB319, 0,      0xC140, 0xC14F, 0,      0xC940, 0xC94F, 0,      0,      0xD100,  // 60
    0xD10F, 0xD119, 0,      0xD140, 0xD14F, 0,      0,      0,      0,      0,       // 70
    0,      0,      0xD1C0, 0xA9C0, 0xE1C0, 0x81C0,                                  // 80
};
// clang-format on

bool SameTotals(const DtdTiming& t, const TimingRow& row) {
  return t.interlaced == row.interlaced && HTotal(t) == uint32_t{row.hactive} + row.hblank &&
         t.vactive == row.vactive && t.vblank == row.vblank;
}

Mode ModeOfRow(const TimingRow& row) {
  DtdTiming timing = {};
  FillFromRow(row, timing);
  return ModeOf(timing);
}

struct Aspect {
  uint8_t code, width, height;
};
// By the two bits of a standard timing.
constexpr Aspect kStdAspects[] = {{ASPECT_16_10, 16, 10}, {ASPECT_4_3, 4, 3}, {ASPECT_5_4, 5, 4}, {ASPECT_16_9, 16, 9}};
constexpr uint16_t kStdLeastWidth = 256, kStdMostWidth = 2288;  // the first byte is not 0
constexpr uint8_t kStdLeastRate = 60;
constexpr Aspect kSquare = {ASPECT_1_1, 1, 1};

bool CvtMode(const CvtTiming& request, Mode& mode) {
  DtdTiming timing;
  if (ExpandCvt(request, timing) != nullptr) return false;
  mode = ModeOf(timing);
  return true;
}

}  // namespace

Mode ModeOf(const DtdTiming& timing) {
  Mode mode;
  mode.timing = timing;
  const bool even = SameTotals(timing, kVicTable[kVicWithEvenTotal]);
  mode.vTotalHalfLines = 2 * VTotal(timing) + (timing.interlaced != 0 && !even ? 1 : 0);
  return mode;
}

void AddBorders(Mode& mode, uint8_t horizontal, uint8_t vertical) {
  DtdTiming& t = mode.timing;
  if (t.hfrontPorch + t.hsyncWidth + 2u * horizontal <= t.hblank) {
    mode.hBorder = horizontal;
    t.hfrontPorch = Low16(t.hfrontPorch + horizontal);
  }
  if (t.vfrontPorch + t.vsyncWidth + 2u * vertical <= t.vblank) {
    mode.vBorder = vertical;
    t.vfrontPorch = Low16(t.vfrontPorch + vertical);
  }
}

uint32_t RateOf(const Mode& mode) {
  const uint64_t total = uint64_t{HTotal(mode.timing)} * mode.vTotalHalfLines;
  if (total == 0) return 0;
  const uint64_t rate = (mode.timing.pixelClock * uint64_t{2000000} + total / 2) / total;
  return rate > UINT32_MAX ? 0 : static_cast<uint32_t>(rate);
}

bool VicMode(unsigned index, Mode& mode) {
  if (index == 0 || index >= kVicRows || index == kEmptyVicRow) return false;
  mode = ModeOfRow(kVicTable[index]);
  return true;
}

bool DmtMode(unsigned id, Mode& mode) {
  if (id == 0 || id >= kDmtRows) return false;
  DtdTiming timing = {};
  FillFromRow(kDmtTable[id], timing);
  const bool bordered = std::find(std::begin(kWithBorders), std::end(kWithBorders), id) != std::end(kWithBorders);
  if (bordered) {
    timing.hblank = Low16(timing.hblank + 2 * kDmtBorder);
    timing.vblank = Low16(timing.vblank + 2 * kDmtBorder);
  }
  if (id == kInterlacedDmt) {
    timing.interlaced = 1;
    timing.vblank = kInterlacedVBlank;
  }
  if (id == kFastDmt) timing.pixelClock = kFastDmtClock;
  if (id >= kFirst1400x1050 && id <= kLast1400x1050) timing.aspectRatio = ASPECT_4_3;
  mode = ModeOf(timing);
  if (bordered) AddBorders(mode, kDmtBorder, kDmtBorder);
  return true;
}

bool EstablishedMode(unsigned index, Mode& mode, uint8_t& id) {
  id = Low8(index == kEst12Interlaced ? kInterlacedDmt : Est12ToDmt(index));
  if (DmtMode(id, mode)) return true;
  for (const OldMode& old : kOldModes) {
    if (old.index != index) continue;
    mode = ModeOfRow(old.row);
    return true;
  }
  return false;
}

uint8_t Established3Dmt(unsigned bit) {
  const unsigned odd = bit - kFirstOddEst3;  // wraps for those before
  return odd < std::size(kOddEst3) ? kOddEst3[odd] : Low8(Est3ToDmt(kFirstEst3Code + bit));
}

bool StandardMode(const StdTiming& std, const StandardFormula& formula, Mode& mode, uint8_t& id) {
  const Aspect* aspect = std::find_if(std::begin(kStdAspects), std::end(kStdAspects),
                                      [&](const Aspect& a) { return a.code == std.aspectRatio; });
  const bool fits = std.hactive >= kStdLeastWidth && std.hactive <= kStdMostWidth && std.frameRate >= kStdLeastRate &&
                    std.frameRate < kStdLeastRate + 64;
  id = 0;
  if (std.valid == 0 || aspect == std::end(kStdAspects) || !fits) return false;
  const bool square = formula.squareAspect && aspect->code == ASPECT_16_10;
  const auto code = static_cast<unsigned>((std.hactive / 8 - 31) << 8 | (aspect - kStdAspects) << 6 |
                                          (std.frameRate - kStdLeastRate));
  const uint16_t* found = std::find(std::begin(kStdCodes) + 1, std::end(kStdCodes), code);
  if (!square && found != std::end(kStdCodes)) {
    id = Low8(found - kStdCodes);
    return DmtMode(id, mode);
  }
  if (square) aspect = &kSquare;
  CvtTiming request = {};
  request.aspectRatio = aspect->code;
  request.hactive = std.hactive;
  request.vactive = Low16(std.hactive * aspect->height / aspect->width);
  request.frameRate = std.frameRate;
  // Reduced blanking version 1 has no other rates.
  const bool reduced = formula.kind == StandardFormula::kCvtReduced && std.frameRate % 60 == 0;
  request.formula = reduced ? 1 : 0;
  const bool gtf = formula.kind == StandardFormula::kGtf;
  if (!(gtf ? GtfMode(request.hactive, request.vactive, request.frameRate, formula, mode) : CvtMode(request, mode))) {
    return false;
  }
  mode.timing.aspectRatio = aspect->code;
  return true;
}

}  // namespace reedid
