#include "document/account/timing_lists.h"

#include <fmt/format.h>

#include <utility>
#include <vector>

#include "document/account/records.h"

namespace reedid::document {
void AddStandard(const VesaBlock& model, std::span<const StdTiming> timings, const ByteSource& at, Node& node) {
  SourceBytes unused;
  for (unsigned i = 0; i < timings.size(); ++i) {
    const StdTiming& timing = timings[i];
    SourceBytes from = at(2 * i, 2);
    if (!timing.valid) {
      unused.Add(from);
      continue;
    }
    const std::string name = fmt::format("Timing {}", i + 1);
    const TimingItem item = StandardItem(&model, timing);
    if (IsKnown(item)) {
      node.AddTiming(name, item, "", std::move(from));
    } else {
      node.Add(name, fmt::format("{} pixels {} Hz, no timing", timing.hactive, timing.frameRate), std::move(from));
    }
  }
  if (!unused.empty()) node.Add("Unused", "", std::move(unused));
}

void AddTimingCodes(const TimingCodeRecord& record, const ByteSource& payload, Node& node) {
  static constexpr const char* kHdmiVics[] = {"3840x2160 30 Hz", "3840x2160 25 Hz", "3840x2160 24 Hz",
                                              "4096x2160 24 Hz"};
  for (unsigned i = 0; i < record.codeCount; ++i) {
    const unsigned code = record.codes[i];
    if (record.codeType == 0) {
      node.AddTiming(fmt::format("DMT {:#04x}", code), DmtItem(code), "", payload(i));
    } else if (record.codeType == 1) {
      node.AddTiming(fmt::format("VIC {}", code), VicItem(VicIndex(code)), "", payload(i));
    } else {
      const char* text = code >= 1 && code <= std::size(kHdmiVics) ? kHdmiVics[code - 1] : "reserved";
      node.Add(fmt::format("HDMI VIC {}", code), text, payload(i));
    }
  }
}

void AddFormulas(std::span<const CvtTiming> timings, size_t size, const ByteSource& payload, Node& node) {
  static constexpr const char* kFormulas[] = {"CVT", "CVT reduced", "CVT reduced v2", "reserved formula"};
  node.record = {{"timings", std::vector<CvtTiming>(timings.begin(), timings.end())}};
  for (size_t i = 0; i < timings.size(); ++i) {
    const CvtTiming& timing = timings[i];
    if (timing.hactive == 0) continue;
    const TimingItem item = FormulaItem(timing);
    const std::string name = kFormulas[timing.formula & 3];
    SourceBytes from = payload(i * size, size);
    if (!IsKnown(item)) {
      node.Add(name, fmt::format("{} pixels {} Hz, cannot be expanded", timing.hactive, timing.frameRate),
               std::move(from));
      continue;
    }
    const char* more = timing.preferred != 0 ? ", preferred" : timing.ycc420 != 0 ? ", YCbCr 4:2:0" : "";
    node.AddTiming(name, item, more, std::move(from));
  }
}

}  // namespace reedid::document
