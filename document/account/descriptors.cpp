// The display descriptors of the base block (EDID 1.4, table 3.23), and standard timings, which have one too.

#include "document/account/descriptors.h"

#include <fmt/format.h>

#include <algorithm>

#include "document/account/detailed_timing.h"
#include "document/account/records.h"
#include "document/account/timing_lists.h"
#include "document/account/values.h"
#include "document/printable.h"

namespace reedid::document {
namespace {

template <int32_t (*get)(const DtdSlot*, char*, uint32_t)>
bool DescribeText(const VesaBlock&, const DtdSlot& slot, const ByteSource& at, Node& node) {
  char text[REEDID_TEXT_SIZE] = {};
  if (get(&slot, text, sizeof text) != 0) return false;
  node.Add("Text", TextValue(text), at(5, 13));
  node.record = {{"text", PrintableText(text)}};
  node.summary = TextValue(text);
  return true;
}

void AddGtf(const RangeLimits& r, const ByteSource& at, Node& node) {
  node.Add("Secondary curve",
           fmt::format("from {} kHz, C {}, M {}, K {}, J {}", r.gtfStartFreq, r.gtfC, r.gtfM, r.gtfK, r.gtfJ),
           at(12, 6));
}

void AddCvtSupport(const RangeLimits& r, const ByteSource& at, Node& node) {
  const NamedFlag aspects[] = {{r.cvtAspect[ASPECT_4_3], "4:3"},
                               {r.cvtAspect[ASPECT_16_9], "16:9"},
                               {r.cvtAspect[ASPECT_16_10], "16:10"},
                               {r.cvtAspect[ASPECT_5_4], "5:4"},
                               {r.cvtAspect[ASPECT_5_3], "15:9"}};
  const NamedFlag blankings[] = {{r.cvtStandardBlanking, "standard"}, {r.cvtReducedBlanking, "reduced"}};
  const NamedFlag scalings[] = {{r.hShrink, "horizontal shrink"},
                                {r.hStretch, "horizontal stretch"},
                                {r.vShrink, "vertical shrink"},
                                {r.vStretch, "vertical stretch"}};
  node.Add("CVT version", fmt::format("{}.{}", r.cvtVersionMajor, r.cvtVersionMinor), at(11));
  node.Add("Clock precision", fmt::format("{} kHz below the maximum", r.cvtClockPrecision), at(12));
  node.Add("Widest line", r.cvtMaxHactive == 0 ? "no limit" : fmt::format("{} pixels", r.cvtMaxHactive), at(12, 2));
  node.Add("Aspect ratios", fmt::format("{}; preferred {}", SetFlags(aspects), AspectText(r.cvtPreferredAspect)),
           at(14, 2));
  node.Add("Blanking", SetFlags(blankings), at(15));
  node.Add("Scaling", SetFlags(scalings), at(16));
  node.Add("Preferred rate", fmt::format("{} Hz", r.preferredRefresh), at(17));
}

bool DescribeRange(const VesaBlock& model, const DtdSlot& slot, const ByteSource& at, Node& node) {
  static constexpr const char* kFormulas[] = {"default GTF", "secondary GTF", "CVT", "range limits only"};
  RangeLimits r;
  if (VESA_GetRangeLimits(&model, &slot, &r) != 0) return false;
  node.record = r;
  node.Add("Vertical", fmt::format("{} to {} Hz", r.minVRate, r.maxVRate), at(4, 3));
  node.Add("Horizontal", fmt::format("{} to {} kHz", r.minHRate, r.maxHRate), at({4, 7, 8}));
  node.Add("Pixel clock", r.maxPixelClock == 0 ? "not stated" : fmt::format("up to {} MHz", r.maxPixelClock / 1000),
           at(9));
  node.Add("Formula", kFormulas[r.timingFormula & 3], at(10));
  if (r.timingFormula == 1) AddGtf(r, at, node);
  if (r.timingFormula == 2) AddCvtSupport(r, at, node);
  return true;
}

bool DescribeStandardDescriptor(const VesaBlock& model, const DtdSlot& slot, const ByteSource& at, Node& node) {
  StdTiming timings[6];
  if (VESA_GetStandardTimings(&slot, timings) != 0) return false;
  AddStandard(model, timings, at.Part(5, 12), node);
  node.record = {{"timings", timings}};
  return true;
}

// A code stands for up to five timings; lines below 1 are an unused entry.
void AddCvtCode(const VesaCvtCode& code, unsigned number, const SourceBytes& from, Node& node) {
  const struct {
    uint8_t flag;
    uint16_t rate;
    uint8_t formula;
  } rates[] = {
      {code.rate50, 50, 0}, {code.rate60, 60, 0}, {code.rate75, 75, 0}, {code.rate85, 85, 0}, {code.rate60rb, 60, 1}};
  static constexpr unsigned kAspects[][2] = {{1, 1}, {5, 4}, {4, 3}, {15, 9}, {16, 9}, {16, 10}};
  if (code.aspectRatio >= std::size(kAspects)) return;
  const unsigned* aspect = kAspects[code.aspectRatio];
  const auto width = static_cast<uint16_t>(code.lines * aspect[0] / aspect[1] / 8 * 8);
  for (const auto& rate : rates) {
    if (rate.flag == 0) continue;
    CvtTiming request = {};
    request.formula = rate.formula;
    request.hactive = width;
    request.vactive = code.lines;
    request.aspectRatio = code.aspectRatio;
    request.frameRate = rate.rate;
    const bool preferred = rate.rate == code.preferredRate;
    node.AddTiming(fmt::format("Code {}{}", number, rate.formula == 1 ? ", reduced" : ""), FormulaItem(request),
                   preferred ? ", preferred rate" : "", from);
  }
}

bool DescribeCvtCodes(const VesaBlock&, const DtdSlot& slot, const ByteSource& at, Node& node) {
  VesaCvtRecord record;
  if (VESA_GetCvtTiming(&slot, &record) != 0) return false;
  node.record = record;
  node.Add("Version", fmt::format("{}", record.version), at(5));
  for (unsigned i = 0; i < std::size(record.codes); ++i) {
    if (record.codes[i].lines != 0) AddCvtCode(record.codes[i], i + 1, at(6 + 3 * i, 3), node);
  }
  return true;
}

bool DescribeEst3(const VesaBlock&, const DtdSlot& slot, const ByteSource& at, Node& node) {
  Est3Record record;
  if (VESA_GetEst3Timing(&slot, &record) != 0) return false;
  node.record = record;
  node.Add("Version", fmt::format("{}", record.version), at(5));
  for (unsigned i = 0; i < std::size(record.flags); ++i) {
    if (record.flags[i] == 0) continue;
    const TimingItem item = EstablishedItem(128 + i);
    node.AddTiming(item.id == 0 ? "Reserved bit" : fmt::format("DMT {:#04x}", item.id), item, "", at(6 + i / 8));
  }
  return true;
}

struct DescriptorKind {
  uint8_t tag;
  const char* name;
  bool (*describe)(const VesaBlock&, const DtdSlot&, const ByteSource&, Node&);  // null: bytes; false: unreadable
};

constexpr DescriptorKind kDescriptorKinds[] = {
    {EDID_DESCRIPTOR_SERIAL_NUMBER, "Serial number", DescribeText<VESA_GetSerialNumber>},
    {EDID_DESCRIPTOR_DATA_STRING, "Text", DescribeText<VESA_GetDataString>},
    {EDID_DESCRIPTOR_RANGE_LIMITS, "Range limits", DescribeRange},
    {EDID_DESCRIPTOR_PRODUCT_NAME, "Product name", DescribeText<VESA_GetProductName>},
    {EDID_DESCRIPTOR_COLOR_POINT, "Color point", nullptr},
    {EDID_DESCRIPTOR_STD_TIMINGS, "Standard timings", DescribeStandardDescriptor},
    {EDID_DESCRIPTOR_COLOR_MANAGEMENT, "Display Color Management", nullptr},
    {EDID_DESCRIPTOR_CVT_CODES, "CVT timing codes", DescribeCvtCodes},
    {EDID_DESCRIPTOR_EST3, "Established timings III", DescribeEst3},
    {EDID_DESCRIPTOR_DUMMY, "Dummy", nullptr},
};

DescriptorKind KindOf(uint8_t tag) {
  for (const DescriptorKind& kind : kDescriptorKinds) {
    if (kind.tag == tag) return kind;
  }
  return {tag, tag < EDID_DESCRIPTOR_DUMMY ? "manufacturer's" : "reserved", nullptr};
}

}  // namespace

Node DescribeDescriptor(const VesaBlock& model, unsigned index, const ByteSource& at) {
  const DtdSlot& slot = model.descriptors[index];
  if (slot.flag == 1 && (slot.bytes[0] != 0 || slot.bytes[1] != 0)) {
    Node timing = DescribeDtd(fmt::format("Descriptor {}, detailed timing", index + 1), slot, at);
    timing.extent = at.extent();
    return timing;
  }
  const DescriptorKind kind = KindOf(slot.bytes[3]);
  Node node;
  node.title = fmt::format("Descriptor {}, {} ({:02x})", index + 1, kind.name, slot.bytes[3]);
  node.kind = fmt::format("{} ({:02x})", kind.name, slot.bytes[3]);
  node.bytes = at(0, 5);
  node.extent = at.extent();
  node.isPrivate = kind.tag == EDID_DESCRIPTOR_SERIAL_NUMBER;
  const bool decoded = kind.describe != nullptr && kind.describe(model, slot, at, node);
  node.AddRest(at, decoded ? "Other bytes" : "Bytes");
  return node;
}

void AddCvtBytes(std::span<const uint8_t> code, unsigned number, const SourceBytes& from, Node& node) {
  DtdSlot slot = {EDID_DESCRIPTOR_CVT_CODES, {0, 0, 0, EDID_DESCRIPTOR_CVT_CODES, 0, 1}};
  std::copy(code.begin(), code.end(), slot.bytes + 6);
  VesaCvtRecord record;
  if (VESA_GetCvtTiming(&slot, &record) == 0 && record.codes[0].lines != 0) {
    AddCvtCode(record.codes[0], number, from, node);
  }
}

void AddStandardBytes(std::span<const uint8_t> code, unsigned number, const ByteSource& at, Node& node) {
  DtdSlot slot = {EDID_DESCRIPTOR_STD_TIMINGS, {0, 0, 0, EDID_DESCRIPTOR_STD_TIMINGS}};
  std::fill(std::begin(slot.bytes) + 5, std::end(slot.bytes), uint8_t{1});  // no timing
  std::copy(code.begin(), code.end(), slot.bytes + 5);
  StdTiming timings[6];
  if (VESA_GetStandardTimings(&slot, timings) != 0 || !timings[0].valid) return;
  const TimingItem item = StandardItem(nullptr, timings[0]);
  node.AddTiming(fmt::format("Standard timing {}", number), item, "", at(0, code.size()));
}

}  // namespace reedid::document
