// The HDMI 1.4b vendor block (HDMI 1.4b, 8.3.2, table 8-16) and what follows from it.
#include <fmt/format.h>

#include <algorithm>
#include <functional>

#include "document/check/draft.h"
#include "document/check/image_view.h"
#include "document/check/report.h"

namespace reedid::document::check {
namespace {

constexpr unsigned kDeep48 = 0x40, kDeep36 = 0x20, kDeep30 = 0x10, kDeepY444 = 0x08;

void HdmiIdentity(const ImageView& view, Report& report) {
  const unsigned input = view.image[0x14];
  const bool saysHdmi = view.minor >= 4 && view.digital && ((input & 0x0F) == 2 || (input & 0x0F) == 3);
  if (saysHdmi && !view.hdmi) {
    report.Add(view.PlaceAt(0x14), fmt::format("input {:02x} (HDMI) and no HDMI block", input));
  } else if (!view.digital && view.hdmi) {
    report.Add(view.PlaceAt(0x14), fmt::format("input {:02x} (analog) and an HDMI block", input));
  }
}

void OnDisplayPort(const ImageView& view, Report& report) {
  const unsigned input = view.image[0x14];
  if (view.minor < 4 || !view.digital || (input & 0x0F) != 5 || !view.hdmi) return;
  report.Add(view.PlaceAt(0x14), fmt::format("input {:02x} (DisplayPort) and an HDMI block", input));
}

void PhysAddr(const ImageView& view, Report& report) {
  if (!view.hdmi || view.hdmi->block->L() < 5) return;
  const unsigned address = view.hdmi->block->bytes[4] << 8 | view.hdmi->block->bytes[5];
  bool ended = false, isWrong = address == 0 || address == 0xFFFF;
  for (const unsigned shift : {12u, 8u, 4u, 0u}) {
    const unsigned digit = address >> shift & 0x0F;
    isWrong = isWrong || (ended && digit != 0);
    ended = ended || digit == 0;
  }
  if (!isWrong) return;
  Place place = view.PlaceAt(view.hdmi->block->at + 4);
  place.dataBlock = view.hdmi->block->index;
  report.Add(place,
             fmt::format("{:x}.{:x}.{:x}.{:x}", address >> 12, address >> 8 & 15, address >> 4 & 15, address & 15));
}

void TmdsUnset(const ImageView& view, Report& report) {
  if (!view.hdmi || view.sink || view.hdmi->maxTmds != 0) return;
  const auto isFast = [](const Timing& timing) { return timing.clock > 165000; };
  const bool fastDtd = std::ranges::any_of(view.dtds, isFast);
  const bool fastVic =
      std::ranges::any_of(view.svds, [&](const Svd& svd) { return svd.timing && isFast(*svd.timing); });
  const bool deep = (view.hdmi->flags & 0x79) != 0;
  if (!fastDtd && !fastVic && !deep) return;
  report.Add(view.hdmi->block->place, fmt::format("no clock stated, but {}", fastDtd   ? "a timing above 165 MHz"
                                                                             : fastVic ? "a format above 165 MHz"
                                                                                       : "deep colour or dual link"));
}

void TmdsOver340(const ImageView& view, Report& report) {
  if (!view.hdmi || view.hdmi->maxTmds <= 340) return;
  Draft draft(view);
  if (view.sink && (view.sink->maxTmds() > 340 || view.sink->frlRate() != 0)) draft[view.hdmi->block->at + 7] = 68;
  report.Add(view.hdmi->block->place, fmt::format("{} MHz", view.hdmi->maxTmds)).Mend(Repair::kSafe, draft.Changes());
}

// The clock that a link of TMDS carries; 0 without a limit.
unsigned TmdsLimit(const ImageView& view) {
  const unsigned high = view.sink ? view.sink->maxTmds() : 0;
  return (high != 0 ? high : view.hdmi->maxTmds) * 1000;
}

void TimingOverTmds(const ImageView& view, Report& report) {
  if (!view.hdmi || (view.sink && view.sink->frlRate() != 0)) return;
  const unsigned limit = TmdsLimit(view);
  const auto add = [&](const Place& place, const std::string& what, unsigned clock) {
    if (limit == 0 || clock <= limit) return;
    report.Add(place, fmt::format("{} has {:.2f} MHz, the limit is {} MHz", what, clock / 1000.0, limit / 1000));
  };
  for (const DetailedTiming& dtd : view.dtds) {
    if (dtd.HasPlausibleClock()) add(dtd.place, fmt::format("timing {}", dtd.number), dtd.clock);
  }
  for (const Svd& svd : view.svds) {
    if (svd.timing) add(svd.dataBlock->place, fmt::format("VIC {}", svd.vic), svd.timing->clock);
  }
  for (const Svd& svd : view.y420Svds) {
    if (svd.timing) add(svd.dataBlock->place, fmt::format("VIC {} in 4:2:0", svd.vic), svd.timing->clock / 2);
  }
  for (const SectionTiming& timing : view.sectionTimings) add(timing.place, "a DisplayID timing", timing.clock);
}

void DeepColorBits(const ImageView& view, Report& report) {
  if (!view.hdmi) return;
  const unsigned flags = view.hdmi->flags;
  const bool no36 = (flags & (kDeep48 | kDeep30)) != 0 && (flags & kDeep36) == 0;
  const bool noDepth = (flags & kDeepY444) != 0 && (flags & (kDeep48 | kDeep36 | kDeep30)) == 0;
  if (no36 || noDepth) report.Add(view.hdmi->block->place, fmt::format("flags {:02x}", flags));
}

// The list behind the structures and the mask: an order and a structure, and from structure 8 on a detail.
void Check3dList(const ImageView& view, const Bytes& list, const std::function<void(std::string)>& add) {
  for (size_t at = 0; at < list.size(); ++at) {
    const unsigned order = list[at] >> 4, structure = list[at] & 0x0F;
    if (order >= view.svds.size()) add(fmt::format("a 3D format of code {} of {}", order + 1, view.svds.size()));
    if (structure == 7 || structure > 8) add(fmt::format("3D structure {}", structure));
    if (structure < 8 || ++at >= list.size()) continue;
    const unsigned detail = list[at] >> 4;
    if ((detail >= 2 && detail <= 5) || detail > 10) add(fmt::format("3D detail {}", detail));
  }
}

void Fields3d(const ImageView& view, Report& report) {
  if (!view.hdmi || !view.hdmi->hasVideo) return;
  const HdmiBlock& hdmi = *view.hdmi;
  const auto add = [&](std::string values) { report.Add(hdmi.block->place, std::move(values)); };
  for (const uint8_t vic : hdmi.vics) {
    if (vic < 1 || vic > 4) add(fmt::format("HDMI VIC {}", vic));
  }
  if (!hdmi.has3d && (hdmi.multi3d != 0 || hdmi.part3d.size() != 0)) add("3D formats, but no 3D");
  const bool hasMask = hdmi.multi3d == 2, hasStructures = hasMask || hdmi.multi3d == 1;
  if (hasMask) {
    const unsigned mask = hdmi.part3d[2] << 8 | hdmi.part3d[3];
    if (view.svds.size() < 16 && mask >> view.svds.size() != 0) {
      add(fmt::format("3D mask {:04x} for {} codes", mask, view.svds.size()));
    }
  }
  Check3dList(view, hdmi.part3d.From(hasMask ? 4 : hasStructures ? 2 : 0), add);
}

void BlockOrder(const ImageView& view, Report& report) {
  if (!view.hdmi) return;
  const DataBlock& hdmi = *view.hdmi->block;
  if (hdmi.cta != 0) report.Add(hdmi.place, "not in the first CTA extension");
  if (!view.sink) return;
  const DataBlock& sink = *view.sink->block;
  if (sink.cta == hdmi.cta && sink.index == hdmi.index + 1) return;
  Draft draft(view);
  if (sink.cta == hdmi.cta) {
    const auto moved = view.image.span();
    const size_t behind = hdmi.at + hdmi.bytes.size(), end = sink.at + sink.bytes.size();
    size_t at = std::min(behind, sink.at);
    const auto copy = [&](size_t from, size_t to) {
      while (from < to) draft[at++] = moved[from++];
    };
    if (sink.at > hdmi.at) {
      copy(sink.at, end);
      copy(behind, sink.at);
    } else {
      copy(end, behind);
      copy(sink.at, end);
    }
  }
  report.Add(sink.place, fmt::format("the HDMI block is data block {} of block {}", hdmi.index, hdmi.place.block))
      .Mend(Repair::kSafe, draft.Changes());
}

constexpr Severity kNote = Severity::kNote, kWarning = Severity::kWarning, kError = Severity::kError;
constexpr RuleGroup kGroup = RuleGroup::kHdmi;
constexpr RuleScope kEdid = RuleScope::kEdid;

constexpr Rule kRules[] = {
    {"hdmi-identity", kError, kGroup, kEdid, "EDID 1.4, 3.6.1; HDMI 1.4b, 8.3",
     "Without the HDMI block a source takes the display for DVI and sends no sound.",
     "The base block says that the input is HDMI, and no HDMI vendor block stands in a CTA extension; or the input is "
     "analog, which HDMI never is, and the block is there.",
     "Add the HDMI block (reedid to-hdmi), or correct the input byte.", HdmiIdentity},
    {"hdmi-vsdb-on-displayport", kNote, kGroup, kEdid, "EDID 1.4, 3.6.1; HDMI 1.4b, 8.3.2",
     "It mostly shows that two sockets share one EDID, with the limits of one of them.",
     "The base block says that the input is DisplayPort, and an HDMI vendor block is there all the same.",
     "Give each socket an EDID of its own.", OnDisplayPort},
    {"hdmi-phys-addr", kError, kGroup, kEdid, "HDMI 1.4b, 8.7",
     "CEC needs the address: without a valid one remote controls and input switching fail.",
     "The physical address is 0.0.0.0, which is the television's own, or F.F.F.F, or a digit follows a 0.",
     "Set the address of the socket (reedid phys), such as 1.0.0.0.", PhysAddr},
    {"hdmi-tmds-unset", kError, kGroup, kEdid, "HDMI 1.4b, 8.3.2, table 8-16",
     "Some sources then stop at 165 MHz: no 1440p, no 4K, no deep colour.",
     "The HDMI block states no maximum TMDS clock, no HDMI Forum block states one either, and the display lists "
     "timings "
     "above 165 MHz, deep colour or dual link.",
     "State the clock that the receiver takes.", TmdsUnset},
    {"hdmi-tmds-over-340", kWarning, kGroup, kEdid, "HDMI 1.4b, 8.3.2; HDMI 2.1, 10.3.2",
     "Sources of HDMI 1.4 may send faster than the receiver takes without scrambling.",
     "The HDMI block states more than 340 MHz. What HDMI 2.0 added above stands in the HDMI Forum block.",
     "State 340 MHz, and the rest in the HDMI Forum block.", TmdsOver340},
    {"hdmi-timing-over-tmds", kError, kGroup, kEdid, "HDMI 1.4b, 8.3.2; HDMI 2.1, 10.3.2",
     "A source shows black, or hides a format that the box promises.",
     "A timing or format needs a higher TMDS clock than the HDMI blocks allow. Formats in 4:2:0 only count with half "
     "their "
     "clock; a display with a fixed rate link is not limited by it.",
     "Lower the timings (reedid limit), or state the clock that the receiver takes.", TimingOverTmds},
    {"hdmi-deep-color-bits", kNote, kGroup, kEdid, "HDMI 1.4b, 6.2.4 and 8.3.2",
     "Sources that ask for 36 bits first find no deep colour.",
     "30 or 48 bits are announced without 36 bits, which every deep colour display takes; or YCbCr 4:4:4 in deep "
     "colour "
     "without any depth.",
     "Announce 36 bits too, or nothing.", DeepColorBits},
    {"hdmi-3d-fields", kWarning, kGroup, kEdid, "HDMI 1.4b, 8.3.2",
     "Sources offer 3D formats that the display does not have.",
     "The HDMI block lists an HDMI VIC other than 1 to 4, 3D formats while it says that there is no 3D, a reserved 3D "
     "structure or detail, or a 3D format for a video code behind the end of the list.",
     "Correct the lists, or take 3D out.", Fields3d},
    {"hdmi-block-order", kWarning, kGroup, kEdid, "HDMI 1.4b, 8.3; HDMI 2.1, 10.3.2",
     "Sources that look in the first extension only, or right behind the HDMI block, miss one of the two.",
     "The HDMI block does not stand in the first CTA extension, or the HDMI Forum block does not follow it at once.",
     "Put the HDMI Forum block right behind the HDMI block, both into the first CTA extension.", BlockOrder},
};

}  // namespace

std::span<const Rule> HdmiRules() {
  return kRules;
}

}  // namespace reedid::document::check
