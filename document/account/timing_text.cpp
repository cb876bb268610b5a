#include "document/account/timing_text.h"

#include <fmt/format.h>

namespace reedid::document {

namespace {

TimingItem OtherItem(int32_t result, const OfferedTiming& mode) {
  return result == 0 ? TimingItem{TimingKind::kOther, mode.dmt, false, mode.timing} : TimingItem{};
}

}  // namespace

double RefreshRate(const DtdTiming& t) {
  const bool halfLine = t.interlaced != 0 && !(t.hactive == 1920 && t.vactive == 540 && t.vblank == 85);
  const double lines = t.vactive + t.vblank + (halfLine ? 0.5 : 0.0);
  const double pixels = t.hactive + t.hblank;
  return pixels > 0 && lines > 0 ? t.pixelClock * 1000.0 / (pixels * lines) : 0.0;
}

std::string RateText(uint32_t millihertz) {
  return fmt::format("{}.{:03}", millihertz / 1000, millihertz % 1000);
}

std::string AspectText(unsigned code) {
  static constexpr const char* kAspects[] = {"1:1", "5:4", "4:3", "15:9", "16:9", "16:10", "64:27", "256:135"};
  return code < std::size(kAspects) ? kAspects[code] : "";
}

std::string FormatText(const DtdTiming& t) {
  return fmt::format("{}x{}{}", t.hactive, t.vactive * (t.interlaced ? 2 : 1), t.interlaced ? "i" : "");
}

std::string TimingText(const DtdTiming& t) {
  const std::string aspect = AspectText(t.aspectRatio);
  return fmt::format("{} {:.3f} Hz {:.3f} MHz{}{}", FormatText(t), RefreshRate(t), t.pixelClock / 1000.0,
                     aspect.empty() ? "" : " ", aspect);
}

const char* KindName(TimingKind kind) {
  static constexpr const char* kNames[] = {"detailed timing", "VIC", "4:2:0 VIC", "formula timing", "timing"};
  return kNames[static_cast<size_t>(kind)];
}

std::string ItemText(const TimingItem& item) {
  std::string text = TimingText(item.timing);
  const bool isVic = item.kind == TimingKind::kVic || item.kind == TimingKind::kVic420;
  return isVic ? fmt::format("{} ({})", item.id, text) : text;
}

unsigned CtaVic(unsigned index) {
  return index > 128 ? index + 64 : index;
}

unsigned VicIndex(unsigned vic) {
  return vic > 192 ? vic - 64 : vic;
}

TimingItem VicItem(unsigned index, bool ycc420Only) {
  TimingItem item = {ycc420Only ? TimingKind::kVic420 : TimingKind::kVic, CtaVic(index), ycc420Only, {}};
  if (OfferedTiming mode; VicToMode(item.id, &mode) == 0) item.timing = mode.timing;
  return item;
}

TimingItem DmtItem(unsigned id) {
  OfferedTiming mode;
  return OtherItem(DmtToMode(id, &mode), mode);
}

TimingItem EstablishedItem(unsigned code) {
  OfferedTiming mode;
  return OtherItem(EstToMode(code, &mode), mode);
}

TimingItem StandardItem(const VesaBlock* model, const StdTiming& timing) {
  OfferedTiming mode;
  return OtherItem(StdToMode(model, &timing, &mode), mode);
}

TimingItem FormulaItem(const CvtTiming& request) {
  TimingItem item = {TimingKind::kFormula, 0, request.ycc420 != 0, {}};
  const DtdTiming& t = item.timing;
  // Formats of a few pixels leave the formula without a clock or a sync pulse: there is no such timing.
  if (Cvt2ToDtd(&request, &item.timing) != 0 || t.pixelClock == 0 || t.hsyncWidth == 0) item.timing = {};
  return item;
}

bool IsKnown(const TimingItem& item) {
  return item.timing.hactive != 0 && item.timing.vactive != 0;
}

}  // namespace reedid::document
