// The display range limits descriptor (EDID 1.4, 3.10.3.3, table 3.26), and the timings that it must hold.
#include <fmt/format.h>

#include <cmath>

#include "document/check/draft.h"
#include "document/check/image_view.h"
#include "document/check/range_repair.h"
#include "document/check/report.h"

namespace reedid::document::check {
namespace {

constexpr unsigned kGtf = 0, kNoFormula = 1, kSecondaryGtf = 2, kCvt = 4;

std::string LimitsText(const RangeLimits& range) {
  return fmt::format("{}-{} Hz, {}-{} kHz, {} MHz", range.vMin, range.vMax, range.hMin, range.hMax, range.maxClock);
}

std::string MissText(const Timing& timing, const RangeLimits& range) {
  return fmt::format("{}x{} at {:.2f} Hz, {:.2f} kHz, {:.2f} MHz; limits {}", timing.hActive, timing.FrameLines(),
                     timing.Rate(), timing.LineRate(), timing.Mhz(), LimitsText(range));
}

void RangeLimitsMissing(const ImageView& view, Report& report) {
  if (view.range || (view.minor != 3 && !(view.minor >= 4 && view.continuous()))) return;
  report.Add(view.PlaceAt(0x36), view.minor == 3 ? "an EDID 1.3" : "a display of continuous frequency");
}

void RangeMinOverMax(const ImageView& view, Report& report) {
  if (!view.range || (view.range->vMin <= view.range->vMax && view.range->hMin <= view.range->hMax)) return;
  report.Add(PlaceOf(view, view.range->slot), LimitsText(*view.range));
}

void ReportMisses(const ImageView& view, Report& report, bool first) {
  if (!view.range) return;
  for (const DetailedTiming& dtd : view.dtds) {
    if (dtd.isFirst != first || !dtd.HasPlausibleClock() || !view.range->Misses(dtd)) continue;
    report.Add(dtd.place, MissText(dtd, *view.range)).Mend(Repair::kAsk, WidenedLimits(view));
  }
}

void PreferredOutside(const ImageView& view, Report& report) {
  ReportMisses(view, report, true);
}

void DtdOutside(const ImageView& view, Report& report) {
  ReportMisses(view, report, false);
}

void VicOutside(const ImageView& view, Report& report) {
  std::string vics;
  const Svd* first = nullptr;
  for (const Svd& svd : view.svds) {
    if (!view.range || !svd.timing || !view.range->Misses(*svd.timing)) continue;
    if (first == nullptr) first = &svd;
    vics += fmt::format("{}{}", vics.empty() ? "" : ", ", svd.vic);
  }
  if (first != nullptr)
    report.Add(first->dataBlock->place, fmt::format("VIC {}; limits {}", vics, LimitsText(*view.range)));
}

void RangeSaturated(const ImageView& view, Report& report) {
  if (!view.range || view.minor < 4) return;
  const Bytes& bytes = view.range->slot.bytes;
  double rate = 0, lineRate = 0;
  for (const DetailedTiming& dtd : view.dtds) {
    if (!dtd.HasPlausibleClock() || !view.range->Misses(dtd)) continue;
    rate = std::max(rate, dtd.Rate());
    lineRate = std::max(lineRate, dtd.LineRate());
  }
  const bool rateIs = bytes[6] == 0xFF && (bytes[4] & 2) == 0 && rate > 256;
  const bool lineRateIs = bytes[8] == 0xFF && (bytes[4] & 8) == 0 && lineRate > 256;
  if (!rateIs && !lineRateIs) return;
  std::string values = rateIs ? fmt::format("255 Hz and no offset, a timing has {:.2f} Hz", rate)
                              : fmt::format("255 kHz and no offset, a timing has {:.2f} kHz", lineRate);
  report.Add(PlaceOf(view, view.range->slot), values).Mend(Repair::kSafe, OffsetLimits(view, rateIs, lineRateIs));
}

void RangeClass(const ImageView& view, Report& report) {
  if (!view.range) return;
  const unsigned formula = view.range->formula;
  const bool known =
      formula == kGtf || formula == kSecondaryGtf || (view.minor >= 4 && (formula == kNoFormula || formula == kCvt));
  if (known) return;
  report.Add(PlaceOf(view, view.range->slot), fmt::format("formula code {:02x} in an EDID 1.{}", formula, view.minor))
      .Mend(Repair::kSafe, FormulaReplaced(view, view.minor < 4 ? kGtf : kNoFormula));
}

void RangeNotContinuous(const ImageView& view, Report& report) {
  if (!view.range || view.minor < 4 || view.continuous()) return;
  const unsigned formula = view.range->formula;
  if (formula != kGtf && formula != kSecondaryGtf && formula != kCvt) return;
  std::vector<Patch> changes;
  if (formula != kCvt) changes = FormulaReplaced(view, kNoFormula);
  report
      .Add(PlaceOf(view, view.range->slot),
           fmt::format("formula code {:02x}, features {:02x} with bit 0 clear", formula, view.image[0x18]))
      .Mend(Repair::kSafe, std::move(changes));
}

void RangePadding(const ImageView& view, Report& report) {
  if (!view.range || view.range->formula > kNoFormula) return;
  std::vector<Patch> changes = FormulaReplaced(view, view.range->formula);
  if (changes.empty()) return;
  report
      .Add(PlaceOf(view, view.range->slot), fmt::format("formula code {:02x} and bytes behind it", view.range->formula))
      .Mend(Repair::kSafe, std::move(changes));
}

bool CvtFieldsAreWrong(const Bytes& b) {
  return (b[14] & 7) != 0 || (b[15] & 7) != 0 || (b[16] & 0x0F) != 0 || b[15] >> 5 > 4 || b[17] == 0;
}

void RangeFormulaFields(const ImageView& view, Report& report) {
  if (!view.range) return;
  const Bytes& b = view.range->slot.bytes;
  const auto add = [&](std::string values) { report.Add(PlaceOf(view, view.range->slot), std::move(values)); };
  if (view.minor >= 4) {
    if (b[9] == 0) add("no maximum pixel clock");
    if ((b[4] & 0xF0) != 0 || (b[4] & 3) == 1 || (b[4] >> 2 & 3) == 1) add(fmt::format("offset flags {:02x}", b[4]));
    if (b[10] == kCvt && CvtFieldsAreWrong(b)) {
      add(fmt::format("CVT fields {:02x} {:02x} {:02x} {:02x}", b[14], b[15], b[16], b[17]));
    }
  }
  if (b[10] == kSecondaryGtf && (b[11] != 0 || b.From(12).AllZero())) add("fields of the secondary GTF curve");
}

constexpr Severity kNote = Severity::kNote, kWarning = Severity::kWarning, kError = Severity::kError;
constexpr RuleGroup kGroup = RuleGroup::kLimits;
constexpr RuleScope kEdid = RuleScope::kEdid;

constexpr Rule kRules[] = {
    {"preferred-outside-range-limits", kError, kGroup, kEdid, "EDID 1.4, 3.10.1 and 3.10.3.3",
     "Sources that filter timings by the limits drop the panel's own one.",
     "The preferred timing's rate, line rate or clock lies outside the display range limits, by more than 1 Hz, 1 kHz "
     "or "
     "5 MHz of rounding. Limits that are equal for the line rate mark a variable refresh rate and have no lower bound; "
     "before EDID 1.4 a maximum of FF has no upper one.",
     "Widen the limits, or correct the timing.", PreferredOutside},
    {"dtd-outside-range-limits", kWarning, kGroup, kEdid, "EDID 1.4, 3.10.3.3, table 3.26",
     "Sources that filter timings by the limits do not offer this one.",
     "A detailed timing other than the preferred one has a rate, line rate or clock outside the display range limits, "
     "by "
     "more than 1 Hz, 1 kHz or 5 MHz of rounding.",
     "Widen the limits, or take the timing out.", DtdOutside},
    {"vic-outside-range-limits", kNote, kGroup, kEdid, "EDID 1.4, 3.10.3.3",
     "Computers that filter by the limits hide formats which players and consoles use.",
     "A format of the video blocks has a rate, line rate or clock outside the display range limits. The limits were "
     "often "
     "written for the computer's timings alone.",
     "Widen the limits to hold the formats that the display shows.", VicOutside},
    {"range-limits-missing", kWarning, kGroup, kEdid, "E-EDID A.1 (EDID 1.3); EDID 1.4, 3.10.3.3",
     "Sources cannot make timings of their own, and some fall back to a few known ones.",
     "EDID 1.3 asks for a display range limits descriptor, EDID 1.4 for displays that say that they run at any "
     "frequency "
     "(bit 0 of the features byte).",
     "Add the descriptor, or in EDID 1.4 clear the bit.", RangeLimitsMissing},
    {"range-min-over-max", kError, kGroup, kEdid, "EDID 1.4, 3.10.3.3",
     "No timing lies within such limits: a source that minds them shows nothing.",
     "A minimum of the display range limits is above its maximum, offsets counted.", "Correct the limits.",
     RangeMinOverMax},
    {"range-saturated", kWarning, kGroup, kEdid, "EDID 1.4, 3.10.3.3, table 3.26",
     "The fast timings, which the display was bought for, fall outside the limits.",
     "A maximum stands at 255, which in EDID 1.4 is a plain 255, while a timing of the same EDID goes higher. Byte 4 "
     "of the "
     "descriptor has offsets of 255 for it.",
     "Set the offset flag and state the rest above 255.", RangeSaturated},
    {"range-class", kWarning, kGroup, kEdid, "EDID 1.4, 3.10.3.3, table 3.26",
     "A source does not know which formula it may use, and whether the bytes behind mean anything.",
     "Byte 10 of the descriptor names the formula: 00, 01, 02 or 04, and of these 00 and 02 alone before EDID 1.4.",
     "Write 01 (limits only; before 1.4: 00) and no formula data.", RangeClass},
    {"range-formula-not-continuous", kWarning, kGroup, kEdid, "EDID 1.4, 3.10.3.3",
     "A source may compute timings by a formula for a display that takes only those it lists.",
     "The descriptor names a formula (GTF or CVT), but bit 0 of the features byte says that the display has no "
     "continuous "
     "frequency. Where GTF is the leftover of a template, 01 tells the truth; CVT may be meant.",
     "Write 01 (limits only) or set bit 0.", RangeNotContinuous},
    {"range-padding", kWarning, kGroup, kEdid, "EDID 1.4, 3.10.3.3, table 3.26",
     "Readers may take the bytes for parameters of a formula.",
     "Without formula data the descriptor ends with a line feed and six spaces.", "Write 0A 20 20 20 20 20 20.",
     RangePadding},
    {"range-formula-fields", kWarning, kGroup, kEdid, "EDID 1.4, 3.10.3.3, tables 3.26 and 3.28",
     "Timings that a source computes from such fields are not those of the display.",
     "In EDID 1.4 the maximum clock is 0, a reserved bit of the offset flags is set or a minimum has an offset without "
     "its maximum; CVT's fields have reserved bits set, name an unknown aspect or no preferred rate; or the secondary "
     "GTF "
     "curve has no parameters.",
     "Fill in the fields by the table.", RangeFormulaFields},
};

}  // namespace

std::span<const Rule> LimitRules() {
  return kRules;
}

}  // namespace reedid::document::check
