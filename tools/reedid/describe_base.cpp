// The base block (EDID 1.4, section 3).

#include <fmt/format.h>

#include <algorithm>

#include "describe.h"
#include "hex_text.h"
#include "records.h"

namespace reedid::tool {
namespace {

constexpr size_t kEstablishedByte = 35;
constexpr size_t kStandardByte = 38;
constexpr size_t kDescriptorsByte = 54;
constexpr size_t kDtdSize = sizeof(DtdSlot::bytes);

constexpr const char* kEstablishedNames[17] = {
    "800x600 60 Hz",   "800x600 56 Hz", "640x480 75 Hz",   "640x480 72 Hz",  "640x480 67 Hz",  "640x480 60 Hz",
    "720x400 88 Hz",   "720x400 70 Hz", "1280x1024 75 Hz", "1024x768 75 Hz", "1024x768 70 Hz", "1024x768 60 Hz",
    "1024x768i 87 Hz", "832x624 75 Hz", "800x600 75 Hz",   "800x600 72 Hz",  "1152x870 75 Hz"};

bool Is14(const VesaBlock& model) {
  return model.version == 1 && model.revision == 4;
}

std::string DateText(const VesaBlock& model) {
  if (model.week == 255) return fmt::format("model year {}", model.year);
  return model.week == 0 ? fmt::format("{}", model.year) : fmt::format("week {} of {}", model.week, model.year);
}

std::string InputText(const VesaBlock& model, uint8_t byte) {
  if (!model.digitalInput) {
    static constexpr const char* kLevels[] = {"0.700/0.300 V", "0.714/0.286 V", "1.000/0.400 V", "0.700/0.000 V"};
    return fmt::format("analog, {}", kLevels[byte >> 5 & 3]);
  }
  if (!Is14(model)) return (byte & 1) != 0 ? "digital, DFP 1.x compatible" : "digital";
  static constexpr const char* kInterfaces[] = {"undefined interface", "DVI", "HDMI-a", "HDMI-b", "MDDI",
                                                "DisplayPort"};
  const char* name = model.interfaceType < std::size(kInterfaces) ? kInterfaces[model.interfaceType] : "reserved";
  if (model.bitDepth < 6 || model.bitDepth > 16) return fmt::format("digital, {}, bit depth not stated", name);
  return fmt::format("digital, {}, {} bits per colour", name, model.bitDepth);
}

std::string SizeText(const VesaBlock& model) {
  if (model.aspectRatioX100 != 0) return fmt::format("aspect ratio {:.2f}", model.aspectRatioX100 / 100.0);
  if (model.hScreenSize == 0 && model.vScreenSize == 0) return "not stated";
  return fmt::format("{} x {} cm", model.hScreenSize, model.vScreenSize);
}

std::string FeaturesText(const VesaBlock& model) {
  const NamedFlag flags[] = {{model.standby, "standby"},
                             {model.suspend, "suspend"},
                             {model.activeOff, "active off"},
                             {model.sRgbDefault, "sRGB is the default"},
                             {model.preferredNative, "first detailed timing is native"},
                             {model.continuousFreq, "continuous frequencies"}};
  return SetFlags(flags);
}

const char* ColorTypeText(const VesaBlock& model, uint8_t featureByte) {
  static constexpr const char* kDigital[] = {"RGB 4:4:4", "RGB 4:4:4 and YCbCr 4:4:4", "RGB 4:4:4 and YCbCr 4:2:2",
                                             "RGB 4:4:4, YCbCr 4:4:4 and YCbCr 4:2:2"};
  static constexpr const char* kDisplay[] = {"monochrome", "RGB colour", "colour, not RGB", "undefined"};
  const unsigned type = featureByte >> 3 & 3;
  return Is14(model) && model.digitalInput ? kDigital[type] : kDisplay[type];
}

std::string ChromaticityText(const VesaBlock& m) {
  const auto point = [](unsigned x, unsigned y) { return fmt::format("{:.3f} {:.3f}", x / 1024.0, y / 1024.0); };
  return fmt::format("red {}, green {}, blue {}, white {}", point(m.redX, m.redY), point(m.greenX, m.greenY),
                     point(m.blueX, m.blueY), point(m.whiteX, m.whiteY));
}

// The bits of bytes 35 to 37; a few of them are no DMT timing (EDID 1.4, table 3.18).
void DescribeEstablished(const VesaBlock& model, const ByteSource& at, Node& parent) {
  Node node;
  node.title = "Established timings";
  node.bytes = at(kEstablishedByte, 3);
  for (unsigned i = 0; i < std::size(kEstablishedNames); ++i) {
    if (model.established[i] == 0) continue;
    const unsigned id = Est12ToDmt(i);
    ByteVector from = at(kEstablishedByte + i / 8);
    if (id == 0) {
      node.Add(kEstablishedNames[i], "not a DMT timing", std::move(from));
    } else {
      node.AddTiming(fmt::format("DMT {:#04x}", id), DmtItem(id), "", std::move(from));
    }
  }
  if (node.fields.empty()) {
    parent.Add("Established timings", "none", std::move(node.bytes));
  } else {
    parent.Child(std::move(node));
  }
}

unsigned StandardHeight(const StdTiming& timing) {
  const unsigned width = timing.hactive;
  switch (timing.aspectRatio) {
    case ASPECT_16_10:
      return width * 10 / 16;
    case ASPECT_4_3:
      return width * 3 / 4;
    case ASPECT_5_4:
      return width * 4 / 5;
    default:
      return width * 9 / 16;
  }
}

// `at` has the two bytes of each timing from 0 on.
void AddStandard(std::span<const StdTiming> timings, const ByteSource& at, Node& node) {
  ByteVector unused;
  for (unsigned i = 0; i < timings.size(); ++i) {
    const StdTiming& timing = timings[i];
    ByteVector from = at(2 * i, 2);
    if (!timing.valid) {
      unused.insert(unused.end(), from.begin(), from.end());
      continue;
    }
    const std::string name = fmt::format("Timing {}", i + 1);
    TimingItem item;
    if (StdToDtd(&timing, &item.timing) == 0) {
      item.id = DtdToDmt(&item.timing);
      node.AddTiming(name, item, "", std::move(from));
    } else {
      node.Add(name,
               fmt::format("{}x{} {} Hz {}", timing.hactive, StandardHeight(timing), timing.frameRate,
                           AspectText(timing.aspectRatio)),
               std::move(from));
    }
  }
  if (!unused.empty()) node.Add("Unused", "", std::move(unused));
}

void DescribeStandard(const VesaBlock& model, const ByteSource& at, Node& parent) {
  const ByteSource list = at.Part(kStandardByte, 2 * std::size(model.standardTimings));
  if (std::none_of(std::begin(model.standardTimings), std::end(model.standardTimings),
                   [](const StdTiming& timing) { return timing.valid != 0; })) {
    parent.Add("Standard timings", "none", list.All());
    return;
  }
  Node node;
  node.title = "Standard timings";
  AddStandard(model.standardTimings, list, node);
  parent.Child(std::move(node));
}

// ---- display descriptors (EDID 1.4, table 3.23); a renderer returns false for a slot that it cannot read

template <int32_t (*get)(const DtdSlot*, char*, uint32_t)>
bool DescribeText(const VesaBlock&, const DtdSlot& slot, const ByteSource& at, Node& node) {
  char text[14] = {};
  if (get(&slot, text, sizeof text) != 0) return false;
  node.Add("Text", TextValue(text), at(5, 13));
  node.record = {{"text", PrintableText(text)}};
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

bool DescribeStandardDescriptor(const VesaBlock&, const DtdSlot& slot, const ByteSource& at, Node& node) {
  StdTiming timings[6];
  if (VESA_GetStandardTimings(&slot, timings) != 0) return false;
  AddStandard(timings, at.Part(5, 12), node);
  node.record = {{"timings", timings}};
  return true;
}

// A code stands for up to five timings; lines below 1 are an unused entry.
void AddCvtCode(const VesaCvtCode& code, unsigned number, const ByteVector& from, Node& node) {
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
    const unsigned id = Est3ToDmt(128 + i);
    node.AddTiming(fmt::format("DMT {:#04x}", id), DmtItem(id), "", at(6 + i / 8));
  }
  return true;
}

bool DescribeDummy(const VesaBlock&, const DtdSlot&, const ByteSource&, Node&) {
  return true;
}

struct DescriptorKind {
  uint8_t tag;
  const char* name;
  bool (*describe)(const VesaBlock&, const DtdSlot&, const ByteSource&, Node&);  // null: bytes
};

constexpr DescriptorKind kDescriptorKinds[] = {
    {0xFF, "Serial number", DescribeText<VESA_GetSerialNumber>},
    {0xFE, "Text", DescribeText<VESA_GetDataString>},
    {0xFD, "Range limits", DescribeRange},
    {0xFC, "Product name", DescribeText<VESA_GetProductName>},
    {0xFB, "Color point", nullptr},
    {0xFA, "Standard timings", DescribeStandardDescriptor},
    {0xF9, "Display Color Management", nullptr},
    {0xF8, "CVT timing codes", DescribeCvtCodes},
    {0xF7, "Established timings III", DescribeEst3},
    {0x10, "Dummy", DescribeDummy},
};

DescriptorKind KindOf(uint8_t tag) {
  for (const DescriptorKind& kind : kDescriptorKinds) {
    if (kind.tag == tag) return kind;
  }
  return {tag, tag < 0x10 ? "manufacturer's" : "reserved", nullptr};
}

Node DescribeDescriptor(const VesaBlock& model, unsigned index, const ByteSource& at) {
  const DtdSlot& slot = model.descriptors[index];
  if (slot.flag == 1 && (slot.bytes[0] != 0 || slot.bytes[1] != 0)) {
    return DescribeDtd(fmt::format("Descriptor {}, detailed timing", index + 1), slot, at);
  }
  const DescriptorKind kind = KindOf(slot.bytes[3]);
  Node node;
  node.title = fmt::format("Descriptor {}, {} ({:02x})", index + 1, kind.name, slot.bytes[3]);
  node.bytes = at(0, 5);
  if (kind.describe != nullptr && kind.describe(model, slot, at, node)) {
    node.AddRest(at);
  } else {
    node.AddBytes("Bytes", at.Rest());
  }
  return node;
}

}  // namespace

bool DescribeBase(const EdidBlock& block, const ByteSource& at, Node& node) {
  const Owned<VesaBlock> model(VESA_Open(&block));
  if (model == nullptr) return false;
  node.bytes = at(0, 8);
  node.Add("Version", fmt::format("EDID {}.{}", model->version, model->revision), at(18, 2));
  node.Add("Manufacturer", model->manufacturer, at(8, 2));
  node.Add("Product code", fmt::format("{0} ({0:#06x})", model->productCode), at(10, 2));
  node.Add("Serial number", fmt::format("{0} ({0:#010x})", model->serialNumber), at(12, 4));
  node.Add("Made", DateText(*model), at(16, 2));
  node.Add("Input", InputText(*model, block.bytes[20]), at(20));
  node.Add("Screen size", SizeText(*model), at(21, 2));
  node.Add("Gamma", model->gammaX100 == 0 ? "not stated" : fmt::format("{:.2f}", model->gammaX100 / 100.0), at(23));
  node.Add("Features", FeaturesText(*model), at(24));
  node.Add("Colour", ColorTypeText(*model, block.bytes[24]), at(24));
  node.Add("Chromaticity", ChromaticityText(*model), at(25, 10));
  if ((block.bytes[37] & 0x7F) != 0) node.Add("Manufacturer's", fmt::format("{:02x}", block.bytes[37] & 0x7F), at(37));
  node.Add("Extensions", fmt::format("{}", model->extensionCount), at(126));
  node.record = *model;
  DescribeEstablished(*model, at, node);
  DescribeStandard(*model, at, node);
  for (unsigned i = 0; i < 4; ++i)
    node.Child(DescribeDescriptor(*model, i, at.Part(kDescriptorsByte + kDtdSize * i, kDtdSize)));
  return true;
}

}  // namespace reedid::tool
