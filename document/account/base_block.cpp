// The base block (EDID 1.4, section 3).

#include "document/account/base_block.h"

#include <fmt/format.h>

#include <algorithm>

#include "document/account/color_text.h"
#include "document/account/descriptors.h"
#include "document/account/pnp_ids.h"
#include "document/account/records.h"
#include "document/account/timing_lists.h"
#include "document/account/values.h"
#include "reedid/reedid.hpp"

namespace reedid::document {
namespace {

constexpr size_t kEstablishedByte = 35;
constexpr size_t kStandardByte = 38;
constexpr size_t kDescriptorsByte = 54;
constexpr size_t kDtdSize = sizeof(DtdSlot::bytes);

constexpr const char* kEstablishedMakers[17] = {"", "", "", "", "Apple", "", "IBM", "IBM VGA", "",
                                                "", "", "", "", "Apple", "", "",    "Apple"};

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

// Two bits had other meanings before EDID 1.4.
std::string FeaturesText(const VesaBlock& model) {
  const bool is14 = Is14(model);
  const NamedFlag flags[] = {
      {model.standby, "standby"},
      {model.suspend, "suspend"},
      {model.activeOff, "active off"},
      {model.sRgbDefault, "sRGB is the default"},
      {model.preferredNative, is14 ? "first detailed timing is native" : "first detailed timing is preferred"},
      {model.continuousFreq, is14 ? "continuous frequencies" : "default GTF"}};
  return SetFlags(flags);
}

const char* ColorTypeText(const VesaBlock& model, uint8_t featureByte) {
  static constexpr const char* kDigital[] = {"RGB 4:4:4", "RGB 4:4:4 and YCbCr 4:4:4", "RGB 4:4:4 and YCbCr 4:2:2",
                                             "RGB 4:4:4, YCbCr 4:4:4 and YCbCr 4:2:2"};
  static constexpr const char* kDisplay[] = {"monochrome", "RGB colour", "colour, not RGB", "undefined"};
  const unsigned type = featureByte >> 3 & 3;
  return Is14(model) && model.digitalInput ? kDigital[type] : kDisplay[type];
}

// The bits of bytes 35 to 37; a few of them are no DMT timings but those of old adapters (EDID 1.4, table 3.18).
void DescribeEstablished(const VesaBlock& model, const ByteSource& at, Node& parent) {
  Node node;
  node.title = "Established timings";
  node.bytes = at(kEstablishedByte, 3);
  for (unsigned i = 0; i < std::size(kEstablishedMakers); ++i) {
    if (model.established[i] == 0) continue;
    const TimingItem item = EstablishedItem(i);
    const std::string name = item.id == 0 ? kEstablishedMakers[i] : fmt::format("DMT {:#04x}", item.id);
    node.AddTiming(name, item, "", at(kEstablishedByte + i / 8));
  }
  if (node.fields.empty()) {
    parent.Add("Established timings", "none", std::move(node.bytes));
  } else {
    parent.Child(std::move(node));
  }
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
  AddStandard(model, model.standardTimings, list, node);
  parent.Child(std::move(node));
}

}  // namespace

bool DescribeBase(const EdidBlock& block, const ByteSource& at, Node& node) {
  const BaseBlock model(block);
  if (!model) return false;
  node.bytes = at(0, 8);
  node.Add("Version", fmt::format("EDID {}.{}", model->version, model->revision), at(18, 2));
  node.Add("Manufacturer", MakerText(model->manufacturer), at(8, 2));
  node.Add("Product code", fmt::format("{0} ({0:#06x})", model->productCode), at(10, 2));
  node.AddPrivate("Serial number", fmt::format("{0} ({0:#010x})", model->serialNumber), at(12, 4), "serialNumber");
  node.Add("Made", DateText(*model), at(16, 2));
  node.Add("Input", InputText(*model, block.bytes[20]), at(20));
  node.Add("Screen size", SizeText(*model), at(21, 2));
  node.Add("Gamma", model->gammaX100 == 0 ? "not stated" : fmt::format("{:.2f}", model->gammaX100 / 100.0), at(23));
  node.Add("Features", FeaturesText(*model), at(24));
  node.Add("Colour", ColorTypeText(*model, block.bytes[24]), at(24));
  node.Add("Chromaticity", ChromaticityText(*model, 1024), at(25, 10));
  if ((block.bytes[37] & 0x7F) != 0) node.Add("Manufacturer's", fmt::format("{:02x}", block.bytes[37] & 0x7F), at(37));
  node.Add("Extensions", fmt::format("{}", model->extensionCount), at(126));
  node.record = *model;
  DescribeEstablished(*model, at, node);
  DescribeStandard(*model, at, node);
  for (unsigned i = 0; i < 4; ++i)
    node.Child(DescribeDescriptor(*model, i, at.Part(kDescriptorsByte + kDtdSize * i, kDtdSize)));
  return true;
}

}  // namespace reedid::document
