// The base block (EDID 1.4, section 3).

#include <fmt/format.h>

#include <cstring>

#include "describe.h"
#include "hex_text.h"

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

std::string EstablishedText(const VesaBlock& model) {
  std::vector<NamedFlag> flags;
  for (size_t i = 0; i < std::size(kEstablishedNames); ++i)
    flags.push_back({model.established[i], kEstablishedNames[i]});
  return SetFlags(flags);
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

std::string StandardText(const VesaBlock& model) {
  std::string text;
  for (const StdTiming& timing : model.standardTimings) {
    if (!timing.valid) continue;
    text += fmt::format("{}{}x{} {} Hz", text.empty() ? "" : ", ", timing.hactive, StandardHeight(timing),
                        timing.frameRate);
  }
  return text.empty() ? "none" : text;
}

// ---- display descriptors (EDID 1.4, table 3.23)

// Bytes 5..17 up to the line feed that ends the text.
std::string DescriptorText(const DtdSlot& slot) {
  std::string text;
  for (size_t i = 5; i < sizeof slot.bytes && slot.bytes[i] != '\n'; ++i) {
    const uint8_t c = slot.bytes[i];
    text += c >= 0x20 && c < 0x7F ? std::string(1, static_cast<char>(c)) : fmt::format("\\x{:02x}", c);
  }
  return text;
}

void DescribeText(const DtdSlot& slot, Node& node) {
  node.title += fmt::format(": {}", DescriptorText(slot));
}

// Byte 4 adds 255 to the rates that a byte cannot hold (EDID 1.4, table 3.26).
void DescribeRange(const DtdSlot& slot, Node& node) {
  const auto* bytes = slot.bytes;
  const unsigned offsets = bytes[4];
  const unsigned vertical = offsets & 3;
  const unsigned horizontal = offsets >> 2 & 3;
  const auto rate = [](unsigned byte, bool offset) { return byte + (offset ? 255u : 0u); };
  node.Add("Vertical", fmt::format("{} to {} Hz", rate(bytes[5], vertical == 3), rate(bytes[6], vertical >= 2)));
  node.Add("Horizontal", fmt::format("{} to {} kHz", rate(bytes[7], horizontal == 3), rate(bytes[8], horizontal >= 2)));
  node.Add("Pixel clock",
           bytes[9] == 0xFF || bytes[9] == 0 ? "not stated" : fmt::format("up to {} MHz", bytes[9] * 10));
  static constexpr const char* kFormulas[] = {"default GTF", "range limits only", "secondary GTF"};
  node.Add("Formula", bytes[10] == 4                     ? "CVT"
                      : bytes[10] < std::size(kFormulas) ? kFormulas[bytes[10]]
                                                         : fmt::format("{:02x}", bytes[10]));
  if (bytes[10] == 2 || bytes[10] == 4) node.Add("Bytes", Hex(slot.bytes));
}

struct DescriptorKind {
  uint8_t tag;
  const char* name;
  void (*describe)(const DtdSlot&, Node&);  // null: bytes
};

constexpr DescriptorKind kDescriptorKinds[] = {
    {0xFF, "Serial number", DescribeText},
    {0xFE, "Text", DescribeText},
    {0xFD, "Range limits", DescribeRange},
    {0xFC, "Product name", DescribeText},
    {0xFB, "Color point", nullptr},
    {0xFA, "Standard timings", nullptr},
    {0xF9, "Display Color Management", nullptr},
    {0xF8, "CVT timing codes", nullptr},
    {0xF7, "Established timings III", nullptr},
    {0x10, "Dummy", nullptr},
};

Node DescribeDescriptor(const DtdSlot& slot, unsigned number) {
  if (slot.flag == 1 && (slot.bytes[0] != 0 || slot.bytes[1] != 0)) {
    return DescribeDtd(fmt::format("Descriptor {}, detailed timing", number), slot);
  }
  Node node;
  const uint8_t tag = slot.bytes[3];
  for (const DescriptorKind& kind : kDescriptorKinds) {
    if (kind.tag != tag) continue;
    node.title = fmt::format("Descriptor {}, {:02x} {}", number, tag, kind.name);
    if (kind.describe != nullptr) {
      kind.describe(slot, node);
      return node;
    }
    return node.Add("Bytes", Hex(slot.bytes));
  }
  const char* name = tag < 0x10 ? "manufacturer's" : "reserved";
  node.title = fmt::format("Descriptor {}, {:02x} {}", number, tag, name);
  return node.Add("Bytes", Hex(slot.bytes));
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
  node.Add("Established timings", EstablishedText(*model));
  if ((block.bytes[37] & 0x7F) != 0) node.Add("Manufacturer's", fmt::format("{:02x}", block.bytes[37] & 0x7F));
  node.Add("Standard timings", StandardText(*model));
  node.Add("Extensions", fmt::format("{}", model->extensionCount));
  for (unsigned i = 0; i < 4; ++i) node.Child(DescribeDescriptor(model->descriptors[i], i + 1));
  return true;
}

}  // namespace reedid::tool
