// Detailed and standard timings, and the preferred one among them.
#include <fmt/format.h>

#include "document/check/draft.h"
#include "document/check/image_view.h"
#include "document/check/report.h"

namespace reedid::document::check {
namespace {

void PreferredTimingMissing(const ImageView& view, Report& report) {
  const Slot& slot = view.slots[0];
  if (slot.isDtd || !view.firstIsPreferred()) return;
  report.Add(PlaceOf(view, slot), fmt::format("the first slot holds descriptor {:02x}", slot.tag));
}

void PreferredBitClear(const ImageView& view, Report& report) {
  if (view.minor != 3 || view.firstIsPreferred()) return;
  Draft draft(view);
  if (view.slots[0].isDtd) draft[0x18] |= 2;
  report.Add(view.PlaceAt(0x18), fmt::format("features {:02x}, bit 1 clear", view.image[0x18]))
      .Mend(Repair::kSafe, draft.Changes());
}

std::string BlankingText(const Timing& timing) {
  return fmt::format("{}x{}: front porch and sync {} + {} of {} pixels, {} + {} of {} lines", timing.hActive,
                     timing.FrameLines(), timing.hFront, timing.hSync, timing.hBlank, timing.vFront, timing.vSync,
                     timing.vBlank);
}

void SyncBeyondBlanking(const ImageView& view, Report& report) {
  for (const DetailedTiming& dtd : view.dtds) {
    if (dtd.HasTotals() && dtd.SyncBeyondBlanking()) report.Add(dtd.place, BlankingText(dtd));
  }
  for (const SectionTiming& timing : view.sectionTimings) {
    if (timing.SyncBeyondBlanking()) report.Add(timing.place, BlankingText(timing));
  }
}

void ZeroPorch(const ImageView& view, Report& report) {
  const auto noBackPorch = [](const Timing& timing) {
    return timing.hFront + timing.hSync == timing.hBlank || timing.vFront + timing.vSync == timing.vBlank;
  };
  for (const DetailedTiming& dtd : view.dtds) {
    if (!dtd.HasTotals() || dtd.SyncBeyondBlanking()) continue;
    const bool isZero = dtd.hFront == 0 || dtd.hSync == 0 || dtd.vSync == 0 || (dtd.vFront == 0 && !dtd.interlaced);
    if (isZero || noBackPorch(dtd)) report.Add(dtd.place, BlankingText(dtd));
  }
  for (const SectionTiming& timing : view.sectionTimings) {
    if (!timing.SyncBeyondBlanking() && noBackPorch(timing)) report.Add(timing.place, BlankingText(timing));
  }
}

void Implausible(const ImageView& view, Report& report) {
  for (const DetailedTiming& dtd : view.dtds) {
    if (!dtd.HasTotals()) {
      report.Add(dtd.place,
                 fmt::format("{} + {} pixels, {} + {} lines", dtd.hActive, dtd.hBlank, dtd.vActive, dtd.vBlank));
    } else if (dtd.Rate() < 10 || dtd.Rate() > 700 || dtd.clock < 5000) {
      report.Add(dtd.place,
                 fmt::format("{}x{} at {:.2f} Hz, {:.2f} MHz", dtd.hActive, dtd.FrameLines(), dtd.Rate(), dtd.Mhz()));
    }
  }
}

void DtdAfterDescriptor(const ImageView& view, Report& report) {
  const Slot* descriptor = nullptr;
  const Slot* late = nullptr;
  for (const Slot& slot : view.slots) {
    if (!slot.isDtd && descriptor == nullptr) descriptor = &slot;
    if (slot.isDtd && descriptor != nullptr && late == nullptr) late = &slot;
  }
  if (late == nullptr) return;
  Draft draft(view);
  if (view.slots[0].isDtd) {
    size_t at = view.slots[0].at;
    for (const bool isDtd : {true, false}) {
      for (const Slot& slot : view.slots) {
        if (slot.isDtd != isDtd) continue;
        for (const uint8_t byte : slot.bytes) draft[at++] = byte;
      }
    }
  }
  report
      .Add(PlaceOf(view, *late), fmt::format("behind descriptor {:02x} in slot {}", descriptor->tag, descriptor->index))
      .Mend(Repair::kSafe, draft.Changes());
}

void StandardTimingUnusedCode(const ImageView& view, Report& report) {
  for (size_t at = 0x26; at < 0x36; at += 2) {
    const unsigned first = view.image[at], second = view.image[at + 1];
    if (first != 0 && (first != 1 || second == 1)) continue;
    Draft draft(view);
    draft.Write(at, {1, 1});
    report.Add(view.PlaceAt(at), fmt::format("{:02x} {:02x}", first, second)).Mend(Repair::kSafe, draft.Changes());
  }
}

constexpr Severity kWarning = Severity::kWarning, kError = Severity::kError;
constexpr RuleGroup kGroup = RuleGroup::kTimings;
constexpr RuleScope kEdid = RuleScope::kEdid;

constexpr Rule kRules[] = {
    {"preferred-timing-missing", kError, kGroup, kEdid, "EDID 1.4, 3.10.1",
     "A source has no timing to begin with, and may start at 640x480.",
     "The first descriptor slot is not a detailed timing, although the EDID says that the preferred timing stands "
     "there: "
     "by bit 1 of the features byte before EDID 1.4, and always from 1.4 on.",
     "Put the display's own timing into the first slot.", PreferredTimingMissing},
    {"preferred-bit-clear", kWarning, kGroup, kEdid, "E-EDID A.1 (EDID 1.3)",
     "A source need not take the first timing for the best one.",
     "EDID 1.3 wants bit 1 of the features byte set, which says that the first detailed timing is the preferred one.",
     "Set bit 1 of the features byte.", PreferredBitClear},
    {"dtd-implausible", kError, kGroup, kEdid, "EDID 1.4, 3.10.2",
     "A source that tries the timing shows nothing, or divides by zero.",
     "A detailed timing has no active pixels or lines or no blanking, or its rate is below 10 Hz or above 700 Hz, or "
     "its "
     "clock is below 5 MHz. Such bytes are mostly no timing at all.",
     "Correct the timing or make the slot a dummy descriptor.", Implausible},
    {"dtd-sync-beyond-blanking", kError, kGroup, RuleScope::kAny, "EDID 1.4, 3.10.2, table 3.21; DisplayID 1.3, 4.4.1",
     "Hardware cannot make such a signal: sources refuse the timing or send a broken one.",
     "Front porch and sync together are longer than the blanking that holds them, in pixels or in lines. DisplayID's "
     "types "
     "I and VII are held to it too.",
     "Correct the porch, the sync width or the blanking.", SyncBeyondBlanking},
    {"dtd-zero-porch", kWarning, kGroup, RuleScope::kAny, "EDID 1.4, 3.10.2",
     "Receivers need the porches to find the picture's edges; some lose lines or refuse.",
     "A front porch, a sync pulse or a back porch has no length. Interlaced timings may do without a vertical front "
     "porch.",
     "Take the porches of the panel's data sheet or of CVT.", ZeroPorch},
    {"dtd-after-descriptor", kWarning, kGroup, kEdid, "EDID 1.4, 3.10",
     "A reader that stops at the first descriptor does not see the timing.",
     "In the base block detailed timings come first and display descriptors behind them; here a timing stands behind a "
     "descriptor.",
     "Move the timings in front, in their order.", DtdAfterDescriptor},
    {"standard-timing-unused-code", kWarning, kGroup, kEdid, "EDID 1.4, 3.9",
     "Readers take the two bytes for a timing that the display does not have.",
     "A standard timing that is not used is written 01 01. Here an entry begins with 00, which is reserved, or holds "
     "01 "
     "with something else behind it, a width of 256 pixels.",
     "Write 01 01.", StandardTimingUnusedCode},
};

}  // namespace

std::span<const Rule> TimingRules() {
  return kRules;
}

}  // namespace reedid::document::check
