// Formats of CTA extensions: video identification codes, native ones, and those in YCbCr 4:2:0.
#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "document/check/draft.h"
#include "document/check/image_view.h"
#include "document/check/report.h"
#include "document/check/y420_repair.h"

namespace reedid::document::check {
namespace {

constexpr unsigned kY420From = 590000;  // kHz; slower formats need no 4:2:0

void VdbMissing(const ImageView& view, Report& report) {
  if (view.hdmi && view.svds.empty()) report.Add(view.hdmi->block->place, "no video block");
}

void VgaMissing(const ImageView& view, Report& report) {
  if (view.ctas.empty() || (view.image[0x23] & 0x20) != 0 || view.ListsVic(1)) return;
  Draft draft(view);
  if (!view.range || !view.range->Misses(*TimingOfVic(1))) draft[0x23] |= 0x20;
  report.Add(view.PlaceAt(0x23), "640x480 is neither an established timing nor VIC 1")
      .Mend(Repair::kSafe, draft.Changes());
}

void NativeMixed(const ImageView& view, Report& report) {
  std::set<std::pair<unsigned, unsigned>> progressive, interlaced;
  const auto take = [&](const Timing& timing) {
    (timing.interlaced ? interlaced : progressive).insert({timing.hActive, timing.vActive});
  };
  const size_t count = std::min<size_t>(view.CtaFlags() & 0x0F, view.dtds.size());
  for (size_t i = 0; i < count; ++i) take(view.dtds[i]);
  for (const Svd& svd : view.svds) {
    if (svd.native && svd.timing) take(*svd.timing);
  }
  if (progressive.size() <= 1 && (!progressive.empty() || interlaced.empty())) return;
  std::string sizes;
  for (const auto& [width, height] : progressive)
    sizes += fmt::format("{}{}x{}", sizes.empty() ? "" : ", ", width, height);
  report.Add(view.PlaceAt(view.ctas.front().at + 3),
             progressive.empty() ? "interlaced formats alone are native" : "native are " + sizes);
}

// The code that may go without moving a code that something counts: the last ones of the last video block.
bool CanGo(const ImageView& view, const Svd& svd) {
  const bool isY420 = svd.dataBlock->kind == kY420Video;
  if (svd.dataBlock->L() == (isY420 ? 2u : 1u)) return false;
  if (isY420 || !view.VideoCodesAreCounted()) return true;
  const auto isBehind = [&](const Svd& other) { return other.at > svd.at; };
  if (std::ranges::any_of(view.svds, [&](const Svd& other) { return isBehind(other) && other.vic != 0; })) return false;
  if (svd.dataBlock != view.svds.back().dataBlock) return false;
  return std::ranges::none_of(view.dataBlocks, [&](const DataBlock& block) {
    if (block.kind != kY420Map || block.L() <= 1) return false;
    for (size_t n = view.svds.size() - 1; n < (block.bytes.size() - 2) * 8; ++n) {
      if (MapMarks(block, n)) return true;
    }
    return false;
  });
}

void SvdUnknown(const ImageView& view, Report& report) {
  for (const std::vector<Svd>* list : {&view.svds, &view.y420Svds}) {
    for (const Svd& svd : *list) {
      if (svd.timing) continue;
      Draft draft(view);
      const size_t payloadAt = svd.dataBlock->kind == kY420Video ? 2 : 1;
      if (svd.vic == 0 && CanGo(view, svd)) draft.CutListByte(*svd.dataBlock, payloadAt, svd.at);
      Place place = svd.dataBlock->place;
      place.at = svd.at;
      place.byte = static_cast<unsigned>(svd.at % kBlockSize);
      report.Add(place, fmt::format("code {}", svd.code)).Mend(Repair::kAsk, draft.Changes());
    }
  }
}

void VicDuplicate(const ImageView& view, Report& report) {
  for (const std::vector<Svd>* list : {&view.svds, &view.y420Svds}) {
    for (auto svd = list->begin(); svd != list->end(); ++svd) {
      const auto first = std::find_if(list->begin(), svd, [&](const Svd& other) { return other.vic == svd->vic; });
      if (svd->vic == 0 || first == svd) continue;
      Draft draft(view);
      if (!view.VideoCodesAreCounted()) {
        if (svd->native) draft[first->at] |= 0x80;
        draft.CutListByte(*svd->dataBlock, svd->dataBlock->kind == kY420Video ? 2 : 1, svd->at);
      }
      Place place = svd->dataBlock->place;
      place.at = svd->at;
      place.byte = static_cast<unsigned>(svd->at % kBlockSize);
      report.Add(place, fmt::format("VIC {} again", svd->vic)).Mend(Repair::kAsk, draft.Changes());
    }
  }
}

void NativeCountOverDtds(const ImageView& view, Report& report) {
  if ((view.CtaFlags() & 0x0F) <= view.dtds.size()) return;
  Draft draft(view);
  for (const CtaBlock& cta : view.ctas) {
    draft[cta.at + 3] = static_cast<uint8_t>((cta.flags & 0xF0) | view.dtds.size());
  }
  report
      .Add(view.PlaceAt(view.ctas.front().at + 3),
           fmt::format("{} native timings of {}", view.CtaFlags() & 0x0F, view.dtds.size()))
      .Mend(Repair::kSafe, draft.Changes());
}

void Y420AlsoRegular(const ImageView& view, Report& report) {
  for (const Svd& svd : view.y420Svds) {
    if (svd.vic != 0 && view.ListsVic(svd.vic)) report.Add(svd.dataBlock->place, fmt::format("VIC {}", svd.vic));
  }
}

void Y420RateLow(const ImageView& view, Report& report) {
  const auto isSlow = [](const Svd& svd) { return svd.timing && svd.timing->clock < kY420From; };
  for (const Svd& svd : view.y420Svds) {
    if (isSlow(svd)) report.Add(svd.dataBlock->place, fmt::format("VIC {}, {:.2f} MHz", svd.vic, svd.timing->Mhz()));
  }
  for (const DataBlock& map : view.dataBlocks) {
    if (map.kind != kY420Map) continue;
    std::string vics;
    for (size_t n = 0; n < view.svds.size(); ++n) {
      if (MapMarks(map, n) && isSlow(view.svds[n]))
        vics += fmt::format("{}{}", vics.empty() ? "" : ", ", view.svds[n].vic);
    }
    if (vics.empty()) continue;
    const auto drop = [&](size_t n) { return n >= view.svds.size() || isSlow(view.svds[n]); };
    report.Add(map.place, fmt::format("VIC {} marked", vics)).Mend(Repair::kAsk, ClearMapBits(view, map, drop));
  }
}

void Y420MapRule(const ImageView& view, Report& report) {
  for (const DataBlock& map : view.dataBlocks) {
    if (map.kind != kY420Map || map.L() <= 1) continue;
    const bool isEmpty = map.bytes.From(2).AllZero();
    bool isPast = false;
    for (size_t n = view.svds.size(); n < (map.bytes.size() - 2) * 8; ++n) isPast = isPast || MapMarks(map, n);
    if (!isEmpty && !isPast) continue;
    const auto drop = [&](size_t n) { return n >= view.svds.size(); };
    Finding& finding =
        report.Add(map.place, isEmpty ? std::string("a map without a mark")
                                      : fmt::format("a mark behind the last of {} codes", view.svds.size()));
    if (isEmpty) finding.severity = Severity::kNote;
    finding.Mend(Repair::kSafe, ClearMapBits(view, map, drop));
  }
}

constexpr Severity kNote = Severity::kNote, kWarning = Severity::kWarning, kError = Severity::kError;
constexpr RuleGroup kGroup = RuleGroup::kTimings;
constexpr RuleScope kEdid = RuleScope::kEdid;

constexpr Rule kRules[] = {
    {"vdb-missing", kWarning, kGroup, kEdid, "CTA-861-I, 7.5.1; HDMI 1.4b, 8.3",
     "Players and consoles choose among video codes only, and find none.",
     "The display has an HDMI block but lists no video format by its identification code.",
     "Add a video block with the formats of its timings, and VIC 1.", VdbMissing},
    {"vga-missing", kWarning, kGroup, kEdid, "CTA-861-I, 4", "640x480 at 60 Hz is what a source falls back to.",
     "Every display with a CTA extension shows 640x480 at 60 Hz and says so, as an established timing or as VIC 1. It "
     "is "
     "offered as a repair only where the range limits hold it.",
     "Set bit 5 of byte 35 of the base block, or list VIC 1.", VgaMissing},
    {"svd-unknown", kWarning, kGroup, kEdid, "CTA-861-I, 4 and 7.5.1",
     "A source skips the code, and some skip the rest of the list.",
     "A video block holds code 0, 128, 254 or 255, which are reserved, or a VIC to which no format belongs yet. Where "
     "a map "
     "or a 3D list counts the codes, only those at the end can go without moving the others.",
     "Take the code out.", SvdUnknown},
    {"vic-duplicate", kWarning, kGroup, kEdid, "CTA-861-I, 7.5.1",
     "A place in the list is wasted, and lists that count its codes become hard to read.",
     "A format is listed twice, as a regular one or among those that are taken in 4:2:0 only. The native mark does not "
     "make "
     "it another one.",
     "Take the later one out.", VicDuplicate},
    {"native-mixed", kNote, kGroup, kEdid, "CTA-861-I, 7.2.2",
     "A source that looks for the panel's own format finds two.",
     "The formats marked native, the first detailed timings by the count in the CTA header and the codes with the "
     "native "
     "mark, have more than one size, or are interlaced only. A panel has one size.",
     "Mark the panel's own size only.", NativeMixed},
    {"native-count-over-dtds", kWarning, kGroup, kEdid, "CTA-861-I, 7.3.3",
     "A source counts timings as native that do not exist.",
     "The CTA header states more native detailed timings than the image has detailed timings.",
     "State the number that there is.", NativeCountOverDtds},
    {"y420-map", kError, kGroup, kEdid, "CTA-861-I, 7.5.11",
     "A source may take a bit for another format and send 4:2:0 that the display cannot show.",
     "The 4:2:0 capability map marks a code behind the end of the list of video codes; the list and the map are of "
     "different ages. A map that marks nothing is only worth a note.",
     "Clear the marks, and take the map out when it marks nothing.", Y420MapRule},
    {"y420-rate-low", kWarning, kGroup, kEdid, "HDMI 2.1; CTA-861-I, 7.5.10 and 7.5.11",
     "HDMI has 4:2:0 for formats from 590 MHz on; what a sink does with it below was never tested.",
     "A format slower than 590 MHz, such as 3840x2160 at 30 Hz, is listed or marked as one that can be taken in YCbCr "
     "4:2:0.",
     "Mark the formats at 50 Hz and above only.", Y420RateLow},
    {"y420-vic-also-regular", kError, kGroup, kEdid, "CTA-861-I, 7.5.10",
     "One block says that the format needs 4:2:0, the other that it does not: sources choose differently.",
     "A format stands in the block of those that are taken in 4:2:0 only, and in a regular video block too.",
     "List it once; what can be taken both ways belongs into the map.", Y420AlsoRegular},
};

}  // namespace

std::span<const Rule> VideoRules() {
  return kRules;
}

}  // namespace reedid::document::check
