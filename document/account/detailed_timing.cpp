#include "document/account/detailed_timing.h"

#include <fmt/format.h>

#include <utility>

namespace reedid::document {
namespace {

std::string SyncText(const DtdSlot& slot) {
  const unsigned bits = slot.bytes[17];
  if ((bits & 0x18) == 0x18)
    return fmt::format("digital separate, horizontal {}, vertical {}", bits & 2 ? '+' : '-', bits & 4 ? '+' : '-');
  if ((bits & 0x18) == 0x10) return fmt::format("digital composite, horizontal {}", bits & 2 ? '+' : '-');
  return (bits & 0x08) != 0 ? "bipolar analog composite" : "analog composite";
}

void AddPorches(const char* name, const unsigned (&t)[4], SourceBytes from, Node& node) {
  const auto [active, blank, front, sync] = t;
  if (front + sync > blank) {
    const std::string text = fmt::format("front porch {} and sync {} exceed the blanking {}", front, sync, blank);
    node.Add(name, text, std::move(from)).isFault = true;
    return;
  }
  node.Add(name,
           fmt::format("front porch {}, sync {}, back porch {}, blanking {}, total {}", front, sync,
                       blank - front - sync, blank, active + blank),
           std::move(from));
}

}  // namespace

Node DescribeTiming(const std::string& title, const TimingItem& item, TimingBytes from) {
  const DtdTiming& t = item.timing;
  Node node;
  node.title = fmt::format("{}: {}", title, TimingText(t));
  node.label = title;
  node.isTiming = true;
  node.bytes = std::move(from.title);
  AddPorches("Horizontal", {t.hactive, t.hblank, t.hfrontPorch, t.hsyncWidth}, std::move(from.horizontal), node);
  AddPorches(t.interlaced ? "Vertical (field)" : "Vertical", {t.vactive, t.vblank, t.vfrontPorch, t.vsyncWidth},
             std::move(from.vertical), node);
  for (Field& field : node.fields) field.isTiming = true;
  node.timings.push_back(item);
  return node;
}

// EDID 1.4, table 3.21.
Node DescribeDtd(const std::string& title, const DtdSlot& slot, const ByteSource& at) {
  TimingItem item = {TimingKind::kDetailed, 0, false, {}};
  const DtdTiming& t = item.timing;
  if (VESA_GetDTD(&slot, &item.timing) != 0) {
    Node node;
    node.title = title;
    node.AddBytes("Bytes", at.All());
    return node;
  }
  Node node = DescribeTiming(title, item, {at(0, 2), at({2, 3, 4, 8, 9, 11}), at({5, 6, 7, 10, 11})});
  node.Add("Sync", SyncText(slot), at(17));
  if (t.hImageSize != 0 || t.vImageSize != 0) {
    node.Add("Image size", fmt::format("{} x {} mm", t.hImageSize, t.vImageSize), at(12, 3));
  }
  if (slot.bytes[15] != 0 || slot.bytes[16] != 0) {
    node.Add("Border", fmt::format("{} pixels, {} lines", slot.bytes[15], slot.bytes[16]), at(15, 2));
  }
  node.AddRest(at);
  return node;
}

Node DescribeIdentified(const std::string& title, const TimingItem& item) {
  Node node = DescribeTiming(title, item);
  const unsigned vic = DtdToVic(&item.timing);
  const bool identified = item.kind == TimingKind::kOther && item.id != 0;
  const unsigned dmt = identified ? item.id : DtdToDmt(&item.timing);
  const DtdTiming& t = item.timing;
  node.Add("Sync", fmt::format("horizontal {}, vertical {}", t.hsyncPositive ? '+' : '-', t.vsyncPositive ? '+' : '-'));
  node.Add("VIC", vic == 0 ? "none" : fmt::format("{}", CtaVic(vic)));
  node.Add("DMT", dmt == 0 ? "none" : fmt::format("{:#04x}", dmt));
  return node;
}

TimingBytes TypeIBytes(const ByteSource& at) {
  return {at(0, 4), at(4, 8), at(12, 8)};
}

}  // namespace reedid::document
