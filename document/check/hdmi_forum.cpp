// The HDMI Forum blocks (HDMI 2.1, 10.3): sink capability and extension override.
#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "document/check/draft.h"
#include "document/check/image_view.h"
#include "document/check/report.h"

namespace reedid::document::check {
namespace {

// HDMI VICs and the VICs of the same formats.
constexpr std::pair<unsigned, unsigned> kUhdVics[] = {{1, 95}, {2, 94}, {3, 93}, {4, 98}};

bool IsSink(const DataBlock& block) {
  return block.IsVendor(REEDID_OUI_HDMI_FORUM) || block.kind == kSinkCapability;
}

void BlockShape(const ImageView& view, Report& report) {
  if (!view.sink) return;
  const SinkCapability& sink = *view.sink;
  const auto add = [&](std::string values) { report.Add(sink.block->place, std::move(values)); };
  if (!view.hdmi) add("no HDMI 1.4b block");
  if (std::ranges::count_if(view.dataBlocks, IsSink) > 1) add("more than one");
  if (sink.Byte(1) != 1) add(fmt::format("version {}", sink.Byte(1)));
  const unsigned count = sink.Count();
  const bool cutInDsc = (count == 8 || count == 9) && (sink.Byte(8) & 0x80) != 0;
  if (count < 4 || count == 6 || cutInDsc) add(fmt::format("{} bytes of payload", count));
}

void TmdsRate(const ImageView& view, Report& report) {
  if (!view.sink || view.sink->maxTmds() == 0) return;
  const unsigned rate = view.sink->maxTmds(), low = view.hdmi ? view.hdmi->maxTmds : 0;
  if (rate > 340 && rate <= 600 && rate >= low) return;
  Draft draft(view);
  if (rate <= 340) draft[view.sink->At(2)] = 0;
  report.Add(view.sink->block->place, fmt::format("{} MHz, {} MHz in the HDMI block", rate, low))
      .Mend(Repair::kSafe, draft.Changes());
}

void ScdcMissing(const ImageView& view, Report& report) {
  if (!view.sink) return;
  const SinkCapability& sink = *view.sink;
  const unsigned flags = sink.Byte(3);
  const bool needed = sink.maxTmds() > 340 || sink.frlRate() != 0 || (flags & 0x48) != 0;
  if ((flags & 0x80) != 0 || !needed) return;
  report.Add(sink.block->place,
             fmt::format("flags {:02x}, {} MHz, fixed rate link {}", flags, sink.maxTmds(), sink.frlRate()));
}

bool IsDscInconsistent(const SinkCapability& sink) {
  const unsigned dsc = sink.Byte(8), dscRate = sink.Byte(9) >> 4, slices = sink.Byte(9) & 0x0F;
  const bool announced = (dsc & 0x80) != 0;
  const bool lacks = announced && (sink.frlRate() == 0 || dscRate == 0 || slices == 0 || (sink.Byte(10) & 0x3F) == 0);
  const bool left = !announced && ((dsc & 0x4F) != 0 || sink.Byte(9) != 0 || sink.Byte(10) != 0);
  return lacks || left || dscRate > 6 || dscRate > sink.frlRate() || slices > 7;
}

void FrlDsc(const ImageView& view, Report& report) {
  if (!view.sink) return;
  const SinkCapability& sink = *view.sink;
  const unsigned rate = sink.frlRate(), tmds = sink.maxTmds();
  if (rate > 6 || (rate == 1 && tmds < 300) || (rate >= 2 && rate <= 6 && tmds < 600)) {
    report.Add(sink.block->place, fmt::format("fixed rate link {}, {} MHz of TMDS", rate, tmds));
  }
  if (!IsDscInconsistent(sink)) return;
  report.Add(sink.block->place, fmt::format("compression {:02x} {:02x} {:02x}, fixed rate link {}", sink.Byte(8),
                                            sink.Byte(9), sink.Byte(10), rate));
}

void Vrr(const ImageView& view, Report& report) {
  if (!view.sink) return;
  const SinkCapability& sink = *view.sink;
  const unsigned min = sink.Byte(6) & 0x3F, max = (sink.Byte(6) & 0xC0) << 2 | sink.Byte(7);
  if (min > 48 || (max != 0 && (min == 0 || max < 100 || max < min))) {
    report.Add(sink.block->place, fmt::format("variable refresh {}-{} Hz", min, max));
  }
  if ((sink.Byte(5) & 0x10) == 0) return;
  Draft draft(view);
  draft[sink.At(5)] &= 0xEF;
  Finding& finding = report.Add(sink.block->place, fmt::format("flags {:02x}, bit 4 is no longer used", sink.Byte(5)));
  finding.severity = Severity::kNote;
  finding.Mend(Repair::kSafe, draft.Changes());
}

void DeepWithoutY420(const ImageView& view, Report& report) {
  if (!view.sink || (view.sink->Byte(4) & 7) == 0 || view.First(kY420Video) || view.First(kY420Map)) return;
  report.Add(view.sink->block->place, fmt::format("flags {:02x}, bits 2-0 set", view.sink->Byte(4)));
}

void VicPairs(const ImageView& view, Report& report) {
  if (!view.sink) return;
  bool listsUhd = false;
  for (const auto& [hdmiVic, vic] : kUhdVics) {
    const bool isListed = view.ListsVic(vic);
    listsUhd = listsUhd || isListed;
    if (isListed || !view.hdmi || std::ranges::find(view.hdmi->vics, hdmiVic) == view.hdmi->vics.end()) continue;
    report.Add(view.hdmi->block->place, fmt::format("HDMI VIC {} without VIC {}", hdmiVic, vic));
  }
  if ((view.sink->Byte(4) & 8) != 0 && !listsUhd) report.Add(view.sink->block->place, "UHD_VIC is set, none is listed");
}

void Eeodb(const ImageView& view, Report& report) {
  if (view.extensionOverride == nullptr) return;
  const DataBlock& block = *view.extensionOverride;
  const auto add = [&](std::string values) { report.Add(block.place, std::move(values)); };
  if (view.image[0x7E] != 1) add(fmt::format("byte 126 of the base block is {} and not 1", view.image[0x7E]));
  if (block.at != kBlockSize + 4) add("not the first data block of block 1");
  if (block.L() != 2) add(fmt::format("{} bytes of payload", block.L()));
  const unsigned count = block.bytes[2];
  if (count < 2 || count != view.blockCount - 1)
    add(fmt::format("{} extensions, there are {}", count, view.blockCount - 1));
}

constexpr Severity kNote = Severity::kNote, kError = Severity::kError;
constexpr RuleGroup kGroup = RuleGroup::kHdmi;
constexpr RuleScope kEdid = RuleScope::kEdid;

constexpr Rule kRules[] = {
    {"hf-block-shape", kError, kGroup, kEdid, "HDMI 2.1b, 10.3.2, table 10-7",
     "Sources fall back to HDMI 1.4 or read fields that are not there.",
     "The HDMI Forum block stands without the HDMI 1.4b block or twice, its version is not 1, or it ends in the middle "
     "of "
     "the variable refresh rates or of the compression fields.",
     "Write the block once, behind the HDMI block, up to the end of a group of fields.", BlockShape},
    {"hf-tmds-rate", kError, kGroup, kEdid, "HDMI 2.1, 10.3.2",
     "Sources take the lower of two clocks, or one that TMDS does not have.",
     "The HDMI Forum block states a TMDS rate that is not between 340 and 600 MHz, or lower than that of the HDMI "
     "block. "
     "Up to 340 MHz it states 0.",
     "State 0 up to 340 MHz, else the rate that the receiver takes.", TmdsRate},
    {"hf-scdc-missing", kError, kGroup, kEdid, "HDMI 2.1, 10.3.2",
     "Without the status channel a source cannot turn scrambling on, and shows nothing above 340 MHz.",
     "The block announces more than 340 MHz, a fixed rate link, scrambling below 340 MHz or read requests, but not the "
     "status and control channel (SCDC) that all of them use.",
     "Set SCDC_Present if the display has it; else take the rest out.", ScdcMissing},
    {"hf-frl-dsc-inconsistent", kError, kGroup, kEdid, "HDMI 2.1b, 10.3.2, table 10-7",
     "Link training or compression starts with values that cannot be met.",
     "The fixed rate link code is above 6, or the TMDS rate that must come with it is too low; compression (DSC) is "
     "announced without link, slices or chunk size, or fields are set without it, or it is faster than the link.",
     "Fill in the link and compression fields together.", FrlDsc},
    {"hf-vrr", kError, kGroup, kEdid, "HDMI 2.1b, 10.3.2, table 10-7",
     "Sources turn variable refresh off, or run it outside of what the panel follows.",
     "The lowest rate is above 48 Hz, or missing while a highest is stated; or the highest is below 100 Hz or below "
     "the "
     "lowest. The bit for cinema rates is no longer used and worth a note only.",
     "State at most 48 Hz and at least 100 Hz, or 0 for the base timing's rate.", Vrr},
    {"hf-y420-deep-without-y420", kNote, kGroup, kEdid, "HDMI 2.1, 10.3.2",
     "It shows that a list of 4:2:0 formats was lost.",
     "Deep colour in YCbCr 4:2:0 is announced, but no format is listed that can be taken in 4:2:0.",
     "List the formats, or clear the three bits.", DeepWithoutY420},
    {"hdmi-vic-pairs", kNote, kGroup, kEdid, "HDMI 2.1, 10.3",
     "Sources of HDMI 2.0 use the VIC, older ones the HDMI VIC: one of them misses the format.",
     "A display of HDMI 2.0 or later lists a 4K format by its HDMI VIC and not by its VIC (93, 94, 95, 98), or says "
     "that it "
     "takes those VICs and lists none.",
     "List both numbers.", VicPairs},
    {"eeodb-inconsistent", kError, kGroup, kEdid, "HDMI 2.1, 10.3.6",
     "Old sources read one extension, new ones a number that is not true.",
     "The extension override block gives the true number of extensions to sources that know it. It stands first in "
     "block 1, "
     "holds two bytes and a number from 2 on, and byte 126 of the base block stays at 1 for all others.",
     "Write 1 into byte 126 and the number of extensions into the block.", Eeodb},
};

}  // namespace

std::span<const Rule> HdmiForumRules() {
  return kRules;
}

}  // namespace reedid::document::check
