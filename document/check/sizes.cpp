// Image sizes: of the base block, of timings, of DisplayID, which all speak of the same panel.
#include <fmt/format.h>

#include <cmath>

#include "document/check/image_view.h"
#include "document/check/report.h"

namespace reedid::document::check {
namespace {

constexpr unsigned kPlay = 10;    // mm that rounding to centimetres may cost
constexpr unsigned kSmall = 100;  // mm; below it a number is rather a ratio

bool IsOverDisplay(const ImageView& view, const DetailedTiming& dtd) {
  return view.SizeIsKnown() && dtd.HasPlausibleClock() && dtd.HasSize() &&
         (dtd.width >= view.largestWidth + kPlay || dtd.height >= view.largestHeight + kPlay);
}

std::string SizesText(const ImageView& view, const DetailedTiming& dtd) {
  return fmt::format("timing {}: {} x {} mm, display {} x {} mm", dtd.number, dtd.width, dtd.height, view.largestWidth,
                     view.largestHeight);
}

void SizeOverDisplay(const ImageView& view, Report& report) {
  for (const DetailedTiming& dtd : view.dtds) {
    if (IsOverDisplay(view, dtd)) report.Add(dtd.place, SizesText(view, dtd));
  }
}

bool IsLargeFirst(const DetailedTiming& dtd) {
  return dtd.isFirst && dtd.HasPlausibleClock() && dtd.width >= kSmall && dtd.height >= kSmall;
}

void PreferredBelowDisplay(const ImageView& view, Report& report) {
  for (const DetailedTiming& dtd : view.dtds) {
    if (!IsLargeFirst(dtd) || view.sizeIsRatio) continue;
    if (dtd.width + kPlay > view.largestWidth || dtd.height + kPlay > view.largestHeight) continue;
    report.Add(dtd.place, SizesText(view, dtd));
  }
}

void PreferredAspect(const ImageView& view, Report& report) {
  for (const DetailedTiming& dtd : view.dtds) {
    if (!IsLargeFirst(dtd) || dtd.hActive == 0 || dtd.vActive == 0) continue;
    const double size = static_cast<double>(dtd.width) / dtd.height;
    const double pixels = static_cast<double>(dtd.hActive) / dtd.FrameLines();
    if (size / pixels >= 0.90 && size / pixels <= 1.10) continue;
    report.Add(dtd.place, fmt::format("{} x {} mm ({:.2f}:1) for {}x{} ({:.2f}:1)", dtd.width, dtd.height, size,
                                      dtd.hActive, dtd.FrameLines(), pixels));
  }
}

void SizeIsARatio(const ImageView& view, Report& report) {
  if (view.width != 0 && (view.width < kSmall || view.height < kSmall)) {
    report.Add(view.PlaceAt(0x15), fmt::format("{} x {} mm", view.width, view.height));
  }
  if (!view.SizeIsKnown() || view.largestWidth < kSmall || view.largestHeight < kSmall) return;
  const auto isSmall = [](unsigned mm) { return mm >= 1 && mm < kSmall; };
  for (const DetailedTiming& dtd : view.dtds) {
    if (!dtd.HasPlausibleClock() || IsOverDisplay(view, dtd) || (!isSmall(dtd.width) && !isSmall(dtd.height))) continue;
    report.Add(dtd.place, SizesText(view, dtd));
  }
}

void SizeOneSided(const ImageView& view, Report& report) {
  const bool toldNowhere =
      !view.otherSize && (view.minor < 4 ? view.width == 0 : view.image[0x15] == 0 && view.image[0x16] == 0);
  for (const DetailedTiming& dtd : view.dtds) {
    if (!dtd.HasPlausibleClock()) continue;
    const bool tellsNone = view.SizeIsKnown() && !dtd.HasSize();
    const bool tellsAlone = toldNowhere && (dtd.width != 0 || dtd.height != 0);
    if (tellsNone || tellsAlone) report.Add(dtd.place, SizesText(view, dtd));
  }
}

constexpr Severity kNote = Severity::kNote, kWarning = Severity::kWarning;
constexpr RuleGroup kGroup = RuleGroup::kTimings;
constexpr RuleScope kEdid = RuleScope::kEdid;

constexpr Rule kRules[] = {
    {"dtd-size-over-display", kWarning, kGroup, kEdid, "EDID 1.4, 3.6.2 and 3.10.2",
     "Desktops scale letters by the size of the timing, and make them too large or too small.",
     "A detailed timing states an image that is a centimetre or more larger than the display, by the largest size that "
     "the base block, DisplayID or the native resolution block tell. An EDID whose HDMI block says that the size is a "
     "ratio is left out.",
     "State the size of the visible image in millimetres.", SizeOverDisplay},
    {"preferred-size-below-display", kWarning, kGroup, kEdid, "EDID 1.4, 3.6.2 and 3.10.2",
     "Desktops take the smaller size for the panel's and draw everything too small.",
     "The preferred timing fills the panel, but its image size is a centimetre or more below the display's in both "
     "directions.",
     "Give the preferred timing the panel's size.", PreferredBelowDisplay},
    {"preferred-aspect", kNote, kGroup, kEdid, "EDID 1.4, 3.10.2",
     "Either the size or the timing is another display's, or pixels are not square, which few sources honour.",
     "Width by height in millimetres and in pixels differ by more than a tenth for the preferred timing. Other timings "
     "may "
     "be scaled and are left out.",
     "Check size and timing against the panel's data sheet.", PreferredAspect},
    {"size-is-a-ratio", kWarning, kGroup, kEdid, "EDID 1.4, 3.6.2 and 3.10.2",
     "A television of 16 by 9 millimetres gets letters of a metre.",
     "A size below ten centimetres, such as 16 x 9 or 160 x 90, is mostly a ratio written into a field for a size: in "
     "the "
     "base block, or in a timing of a display that states a larger size elsewhere.",
     "State the true size; in EDID 1.4 a ratio has a form of its own in the base block.", SizeIsARatio},
    {"dtd-size-one-sided", kNote, kGroup, kEdid, "EDID 1.4, 3.6.2 and 3.10.2",
     "Sources find two answers to how large the display is, and which they take differs.",
     "The display states its size, but a timing states none; or a timing states a size, and the display nowhere. A "
     "projector, whose image has no size, states none in both places.",
     "Tell the size in both places or in none.", SizeOneSided},
};

}  // namespace

std::span<const Rule> SizeRules() {
  return kRules;
}

}  // namespace reedid::document::check
