// Timings as people and as programs read them.
#pragma once

#include <string>

#include "reedid/offers.h"
#include "reedid/reedid.h"

namespace reedid::document {

// Where a timing stands tells what may become of it when the image is edited.
enum class TimingKind : uint8_t { kDetailed, kVic, kVic420, kFormula, kOther };

// One timing that an image lists.
struct TimingItem {
  TimingKind kind = TimingKind::kOther;
  unsigned id = 0;      // VIC (as CTA-861 counts) or DMT identifier, 0: none
  bool ycc420 = false;  // offered in YCbCr 4:2:0 only, so it needs half its clock
  DtdTiming timing = {};
};

// Hz; the field rate when interlaced. A field has half a line more than the descriptor says (EDID 1.4, 3.12), but for VIC 39.
double RefreshRate(const DtdTiming& timing);

// "16:9", "" when the code says none.
std::string AspectText(unsigned code);

// "1920x1080i"
std::string FormatText(const DtdTiming& timing);

// "3840x2160 60.000 Hz 594.000 MHz 16:9"
std::string TimingText(const DtdTiming& timing);

// "detailed timing", "VIC", ...
const char* KindName(TimingKind kind);

// The same, with the VIC in front where there is one: "97 (3840x2160 60.000 Hz 594.000 MHz 16:9)"
std::string ItemText(const TimingItem& item);

// VIC table indexes above 128 are the VICs 193 to 219.
unsigned CtaVic(unsigned index);
unsigned VicIndex(unsigned vic);

// "59.940"
std::string RateText(uint32_t millihertz);

// The items of a VIC (by table index), a DMT identifier, an established timing (as EstToMode counts), a standard timing, a formula:
// true modes, with borders in their blanking. Without such a mode, all counts are 0.
TimingItem VicItem(unsigned index, bool ycc420Only = false);
TimingItem DmtItem(unsigned id);
TimingItem EstablishedItem(unsigned code);
TimingItem StandardItem(const VesaBlock* model, const StdTiming& timing);
TimingItem FormulaItem(const CvtTiming& request);

// Rows without any active pixel: an identifier that is in no table, a formula that cannot be expanded.
bool IsKnown(const TimingItem& item);

}  // namespace reedid::document
