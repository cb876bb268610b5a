// The base block (EDID 1.4, section 3).

#include <fmt/format.h>

#include "describe.h"
#include "hex_text.h"
#include "records.h"

namespace reedid::tool {
namespace {

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
void DescribeEstablished(const VesaBlock& model, Node& parent) {
  Node node;
  node.title = "Established timings";
  for (unsigned i = 0; i < std::size(kEstablishedNames); ++i) {
    if (model.established[i] == 0) continue;
    const unsigned id = Est12ToDmt(i);
    if (id == 0) {
      node.Add(kEstablishedNames[i], "not a DMT timing");
    } else {
      node.AddTiming(fmt::format("DMT {:#04x}", id), DmtItem(id));
    }
  }
  if (!node.fields.empty()) parent.Child(node);
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

void AddStandard(std::span<const StdTiming> timings, Node& node) {
  for (unsigned i = 0; i < timings.size(); ++i) {
    const StdTiming& timing = timings[i];
    if (!timing.valid) continue;
    const std::string name = fmt::format("Timing {}", i + 1);
    TimingItem item;
    if (StdToDtd(&timing, &item.timing) == 0) {
      item.id = DtdToDmt(&item.timing);
      node.AddTiming(name, item);
    } else {
      node.Add(name, fmt::format("{}x{} {} Hz {}", timing.hactive, StandardHeight(timing), timing.frameRate,
                                 AspectText(timing.aspectRatio)));
    }
  }
}

void DescribeStandard(const VesaBlock& model, Node& parent) {
  Node node;
  node.title = "Standard timings";
  AddStandard(model.standardTimings, node);
  if (!node.fields.empty()) parent.Child(node);
}

// ---- display descriptors (EDID 1.4, table 3.23); a renderer returns false for a slot that it cannot read

template <int32_t (*get)(const DtdSlot*, char*, uint32_t)>
bool DescribeText(const VesaBlock&, const DtdSlot& slot, Node& node) {
  char text[14] = {};
  if (get(&slot, text, sizeof text) != 0) return false;
  node.title += fmt::format(": {}", PrintableText(text));
  node.record = {{"text", PrintableText(text)}};
  return true;
}

void AddGtf(const RangeLimits& r, Node& node) {
  node.Add("Secondary curve",
           fmt::format("from {} kHz, C {}, M {}, K {}, J {}", r.gtfStartFreq, r.gtfC, r.gtfM, r.gtfK, r.gtfJ));
}

void AddCvtSupport(const RangeLimits& r, Node& node) {
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
  node.Add("CVT version", fmt::format("{}.{}", r.cvtVersionMajor, r.cvtVersionMinor));
  node.Add("Clock precision", fmt::format("{} kHz below the maximum", r.cvtClockPrecision));
  node.Add("Widest line", r.cvtMaxHactive == 0 ? "no limit" : fmt::format("{} pixels", r.cvtMaxHactive));
  node.Add("Aspect ratios", fmt::format("{}; preferred {}", SetFlags(aspects), AspectText(r.cvtPreferredAspect)));
  node.Add("Blanking", SetFlags(blankings));
  node.Add("Scaling", SetFlags(scalings));
  node.Add("Preferred rate", fmt::format("{} Hz", r.preferredRefresh));
}

bool DescribeRange(const VesaBlock& model, const DtdSlot& slot, Node& node) {
  static constexpr const char* kFormulas[] = {"default GTF", "secondary GTF", "CVT", "range limits only"};
  RangeLimits r;
  if (VESA_GetRangeLimits(&model, &slot, &r) != 0) return false;
  node.record = r;
  node.Add("Vertical", fmt::format("{} to {} Hz", r.minVRate, r.maxVRate));
  node.Add("Horizontal", fmt::format("{} to {} kHz", r.minHRate, r.maxHRate));
  node.Add("Pixel clock", r.maxPixelClock == 0 ? "not stated" : fmt::format("up to {} MHz", r.maxPixelClock / 1000));
  node.Add("Formula", kFormulas[r.timingFormula & 3]);
  if (r.timingFormula == 1) AddGtf(r, node);
  if (r.timingFormula == 2) AddCvtSupport(r, node);
  return true;
}

bool DescribeStandardDescriptor(const VesaBlock&, const DtdSlot& slot, Node& node) {
  StdTiming timings[6];
  if (VESA_GetStandardTimings(&slot, timings) != 0) return false;
  AddStandard(timings, node);
  node.record = {{"timings", timings}};
  return true;
}

// A code stands for up to five timings; lines below 1 are an unused entry.
void AddCvtCode(const VesaCvtCode& code, unsigned number, Node& node) {
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
                   preferred ? ", preferred rate" : "");
  }
}

bool DescribeCvtCodes(const VesaBlock&, const DtdSlot& slot, Node& node) {
  VesaCvtRecord record;
  if (VESA_GetCvtTiming(&slot, &record) != 0) return false;
  node.record = record;
  for (unsigned i = 0; i < std::size(record.codes); ++i) {
    if (record.codes[i].lines != 0) AddCvtCode(record.codes[i], i + 1, node);
  }
  return true;
}

bool DescribeEst3(const VesaBlock&, const DtdSlot& slot, Node& node) {
  Est3Record record;
  if (VESA_GetEst3Timing(&slot, &record) != 0) return false;
  node.record = record;
  for (unsigned i = 0; i < std::size(record.flags); ++i) {
    if (record.flags[i] == 0) continue;
    const unsigned id = Est3ToDmt(128 + i);
    node.AddTiming(fmt::format("DMT {:#04x}", id), DmtItem(id));
  }
  return true;
}

struct DescriptorKind {
  uint8_t tag;
  const char* name;
  bool (*describe)(const VesaBlock&, const DtdSlot&, Node&);  // null: bytes
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
    {0x10, "Dummy", nullptr},
};

DescriptorKind KindOf(uint8_t tag) {
  for (const DescriptorKind& kind : kDescriptorKinds) {
    if (kind.tag == tag) return kind;
  }
  return {tag, tag < 0x10 ? "manufacturer's" : "reserved", nullptr};
}

Node DescribeDescriptor(const VesaBlock& model, unsigned index) {
  const DtdSlot& slot = model.descriptors[index];
  if (slot.flag == 1 && (slot.bytes[0] != 0 || slot.bytes[1] != 0)) {
    return DescribeDtd(fmt::format("Descriptor {}, detailed timing", index + 1), slot);
  }
  const DescriptorKind kind = KindOf(slot.bytes[3]);
  Node node;
  node.title = fmt::format("Descriptor {}, {:02x} {}", index + 1, slot.bytes[3], kind.name);
  if (kind.describe == nullptr || !kind.describe(model, slot, node)) node.Add("Bytes", Hex(slot.bytes));
  return node;
}

}  // namespace

bool DescribeBase(const EdidBlock& block, Node& node) {
  const Owned<VesaBlock> model(VESA_Open(&block));
  if (model == nullptr) return false;
  node.Add("Version", fmt::format("EDID {}.{}", model->version, model->revision));
  node.Add("Manufacturer", model->manufacturer);
  node.Add("Product code", fmt::format("{0} ({0:#06x})", model->productCode));
  node.Add("Serial number", fmt::format("{0} ({0:#010x})", model->serialNumber));
  node.Add("Made", DateText(*model));
  node.Add("Input", InputText(*model, block.bytes[20]));
  node.Add("Screen size", SizeText(*model));
  node.Add("Gamma", model->gammaX100 == 0 ? "not stated" : fmt::format("{:.2f}", model->gammaX100 / 100.0));
  node.Add("Features", FeaturesText(*model));
  node.Add("Colour", ColorTypeText(*model, block.bytes[24]));
  node.Add("Chromaticity", ChromaticityText(*model));
  if ((block.bytes[37] & 0x7F) != 0) node.Add("Manufacturer's", fmt::format("{:02x}", block.bytes[37] & 0x7F));
  node.Add("Extensions", fmt::format("{}", model->extensionCount));
  node.record = *model;
  DescribeEstablished(*model, node);
  DescribeStandard(*model, node);
  for (unsigned i = 0; i < 4; ++i) node.Child(DescribeDescriptor(*model, i));
  return true;
}

}  // namespace reedid::tool
