// The CTA-861 extension: its flags, its data blocks by name, its detailed timings.

#include "document/account/cta.h"

#include <fmt/format.h>

#include "document/account/cta_hdmi.h"
#include "document/account/cta_video.h"
#include "document/account/detailed_timing.h"
#include "document/account/records.h"
#include "document/account/values.h"
#include "reedid/reedid.hpp"

namespace reedid::document {
namespace {

constexpr uint8_t kExtendedTag = 7;
constexpr uint8_t kVendorTag = 3;
constexpr size_t kCollectionStart = 4;
constexpr size_t kDtdSize = sizeof(DtdSlot::bytes);

std::string AudioFormatName(const SadRecord& sad) {
  static constexpr const char* kFormats[] = {"reserved",      "L-PCM",  "AC-3",      "MPEG-1", "MP3",
                                             "MPEG-2",        "AAC LC", "DTS",       "ATRAC",  "One Bit Audio",
                                             "Enhanced AC-3", "DTS-HD", "MAT (MLP)", "DST",    "WMA Pro"};
  static constexpr const char* kExtended[] = {"reserved",
                                              "reserved",
                                              "reserved",
                                              "reserved",
                                              "MPEG-4 HE AAC",
                                              "MPEG-4 HE AAC v2",
                                              "MPEG-4 AAC LC",
                                              "DRA",
                                              "MPEG-4 HE AAC and MPEG Surround",
                                              "reserved",
                                              "MPEG-4 AAC LC and MPEG Surround",
                                              "MPEG-H 3D Audio",
                                              "AC-4",
                                              "L-PCM 3D Audio"};
  if (sad.formatCode < std::size(kFormats)) return kFormats[sad.formatCode];
  if (sad.extFormatCode < std::size(kExtended)) return kExtended[sad.extFormatCode];
  return fmt::format("extended format {}", sad.extFormatCode);
}

std::string SadText(const SadRecord& sad) {
  const NamedFlag rates[] = {{sad.rate32k, "32"},    {sad.rate44k1, "44.1"}, {sad.rate48k, "48"},
                             {sad.rate88k2, "88.2"}, {sad.rate96k, "96"},    {sad.rate176k4, "176.4"},
                             {sad.rate192k, "192"}};
  const NamedFlag depths[] = {{sad.bits16, "16"}, {sad.bits20, "20"}, {sad.bits24, "24"}};
  std::string text = fmt::format("{} channels; {} kHz", sad.channels, SetFlags(rates, "no"));
  const bool isPcm = sad.formatCode == 1 || (sad.formatCode == 15 && sad.extFormatCode == 13);
  if (isPcm) text += fmt::format("; {} bits", SetFlags(depths, "no"));
  if (sad.formatCode >= 2 && sad.formatCode <= 8) text += fmt::format("; up to {} kbit/s", sad.maxBitrate * 8);
  if (sad.formatDependent != 0) text += fmt::format("; format's own {:#04x}", sad.formatDependent);
  return text;
}

bool DescribeAudio(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  AdbRecord record;
  if (CEA_GetADB(&entry, &record) != 0) return false;
  node.record = record;
  for (unsigned i = 0; i < record.sadCount; ++i) {
    node.Add(AudioFormatName(record.sads[i]), SadText(record.sads[i]), at(1 + 3 * i, 3));
  }
  return true;
}

bool DescribeSpeakers(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  SpeakerRecord s;
  if (CEA_GetSADB(&entry, &s) != 0) return false;
  node.record = s;
  const NamedFlag flags[] = {{s.FL_FR, "FL/FR"},
                             {s.LFE1, "LFE1"},
                             {s.FC, "FC"},
                             {s.BL_BR, "BL/BR"},
                             {s.BC, "BC"},
                             {s.FLc_FRc, "FLc/FRc"},
                             {s.RLC_RRC, "RLC/RRC"},
                             {s.FLw_FRw, "FLw/FRw"},
                             {s.TpFL_TpFR, "TpFL/TpFR"},
                             {s.TpC, "TpC"},
                             {s.TpFC, "TpFC"},
                             {s.LS_RS, "LS/RS"},
                             {s.LFE2, "LFE2"},
                             {s.TpBC, "TpBC"},
                             {s.SiL_SiR, "SiL/SiR"},
                             {s.TpSiL_TpSiR, "TpSiL/TpSiR"},
                             {s.TpBL_TpBR, "TpBL/TpBR"},
                             {s.BtFC, "BtFC"},
                             {s.BtFL_BtFR, "BtFL/BtFR"},
                             {s.TpLS_TpRS, "TpLS/TpRS"}};
  node.Add("Speakers", SetFlags(flags), at(1, 3));
  return true;
}

bool DescribeColorimetry(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  ColorimetryRecord c;
  if (CEA_GetCDB(&entry, &c) != 0) return false;
  node.record = c;
  const NamedFlag flags[] = {{c.xvYCC601, "xvYCC601"},   {c.xvYCC709, "xvYCC709"},   {c.sYCC601, "sYCC601"},
                             {c.opYCC601, "opYCC601"},   {c.opRGB, "opRGB"},         {c.BT2020cYCC, "BT2020cYCC"},
                             {c.BT2020YCC, "BT2020YCC"}, {c.BT2020RGB, "BT2020RGB"}, {c.ICtCp, "ICtCp"},
                             {c.DCI_P3, "DCI-P3"}};
  node.Add("Colorimetry", SetFlags(flags), at(2, 2));
  if (c.metadataProfiles != 0) node.Add("Metadata profiles", fmt::format("{:#x}", c.metadataProfiles), at(3));
  return true;
}

bool DescribeVideoCapability(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  static constexpr const char* kScan[] = {"not stated", "always overscanned", "always underscanned",
                                          "over- and underscan"};
  VideoCapRecord v;
  if (CEA_GetVCDB(&entry, &v) != 0) return false;
  node.record = v;
  const auto range = [](uint8_t selectable) { return selectable != 0 ? "selectable" : "fixed"; };
  node.Add("Quantization", fmt::format("YCC {}, RGB {}", range(v.QY), range(v.QS)), at(2));
  node.Add("Preferred timing", v.S_PT == 0 ? "as the formats below" : kScan[v.S_PT], at(2));
  node.Add("IT formats", kScan[v.S_IT], at(2));
  node.Add("CE formats", kScan[v.S_CE], at(2));
  return true;
}

// A renderer returns false when the block cannot be decoded; without one, the bytes are shown.
using Renderer = bool (*)(const CeaDataBlock&, const CeaBlock&, const ByteSource&, Node&);

struct DataBlockKind {
  unsigned tag;
  unsigned extTag;  // for tag 7
  const char* name;
  Renderer render;
};

// CTA-861, tables 32 and 33.
constexpr DataBlockKind kDataBlockKinds[] = {
    {1, 0, "Audio Data Block", DescribeAudio},
    {2, 0, "Video Data Block", DescribeVideo},
    {4, 0, "Speaker Allocation Data Block", DescribeSpeakers},
    {5, 0, "VESA Display Transfer Characteristic Data Block", nullptr},
    {6, 0, "Video Format Data Block", nullptr},
    {7, 0, "Video Capability Data Block", DescribeVideoCapability},
    {7, 1, "Vendor-Specific Video Data Block", nullptr},
    {7, 2, "VESA Display Device Data Block", nullptr},
    {7, 5, "Colorimetry Data Block", DescribeColorimetry},
    {7, 6, "HDR Static Metadata Data Block", DescribeStaticHdr},
    {7, 7, "HDR Dynamic Metadata Data Block", nullptr},
    {7, 8, "Native Video Resolution Data Block", nullptr},
    {7, 13, "Video Format Preference Data Block", DescribeFormatPreference},
    {7, 14, "YCbCr 4:2:0 Video Data Block", Describe420Video},
    {7, 15, "YCbCr 4:2:0 Capability Map Data Block", Describe420Map},
    {7, 17, "Vendor-Specific Audio Data Block", nullptr},
    {7, 19, "Room Configuration Data Block", nullptr},
    {7, 20, "Speaker Location Data Block", nullptr},
    {7, 32, "InfoFrame Data Block", nullptr},
    {7, 34, "DisplayID Type VII Video Timing Data Block", DescribeTypeVII},
    {7, 35, "DisplayID Type VIII Video Timing Data Block", DescribeTypeVIII},
    {7, 42, "DisplayID Type X Video Timing Data Block", DescribeTypeX},
    {7, 0x78, "HDMI Forum EDID Extension Override Data Block", nullptr},
    {7, 0x79, "HDMI Forum Sink Capability Data Block", nullptr},
};

// Vendors by their IEEE OUI, for tag 3 and the vendor-specific video and audio blocks.
struct Vendor {
  unsigned oui;
  const char* name;
  Renderer render;         // of the block with tag 3
  bool isPrivate = false;  // has a ContainerID
};

constexpr Vendor kVendors[] = {
    {0x000C03, "HDMI 1.4b", DescribeHdmi14b},
    {0xC45DD8, "HDMI Forum", DescribeHdmiForum},
    {0x00D046, "Dolby", nullptr},
    {0x90848B, "HDR10+", nullptr},
    {0x00001A, "AMD", nullptr},
    {0xCA125C, "Microsoft", nullptr, true},
};

const Vendor* FindVendor(unsigned oui) {
  for (const Vendor& vendor : kVendors) {
    if (vendor.oui == oui) return &vendor;
  }
  return nullptr;
}

// The OUI of a vendor-specific block, least significant byte first, added to the title.
const Vendor* AddVendor(const ByteSource& at, size_t ouiByte, Node& node) {
  if (at.size() < ouiByte + 3) return nullptr;
  const ByteVector b = at(ouiByte, 3);
  const Vendor* vendor = FindVendor(unsigned{b[0]} | unsigned{b[1]} << 8 | unsigned{b[2]} << 16);
  node.title += vendor != nullptr ? fmt::format(", {}", vendor->name)
                                  : fmt::format(", OUI {:02x}-{:02x}-{:02x}", b[2], b[1], b[0]);
  node.bytes = at(0, ouiByte + 3);
  return vendor;
}

DataBlockKind KindOf(const CeaDataBlock& entry) {
  for (const DataBlockKind& kind : kDataBlockKinds) {
    if (kind.tag == entry.tag && (entry.tag != kExtendedTag || kind.extTag == entry.extTag)) return kind;
  }
  return {entry.tag, entry.extTag, entry.tag == kVendorTag ? "Vendor-Specific Data Block" : "Reserved Data Block",
          nullptr};
}

Node DescribeDataBlock(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at) {
  const DataBlockKind kind = KindOf(entry);
  const bool isVendor = entry.tag == kVendorTag;
  const bool isExtended = entry.tag == kExtendedTag;
  Node node;
  node.title =
      isExtended ? fmt::format("{} (7/{})", kind.name, entry.extTag) : fmt::format("{} ({})", kind.name, entry.tag);
  node.bytes = at(0, isExtended ? 2 : 1);
  Renderer render = kind.render;
  if (isVendor || (isExtended && (entry.extTag == 1 || entry.extTag == 17))) {
    const Vendor* vendor = AddVendor(at, isVendor ? 1 : 2, node);
    if (vendor != nullptr && isVendor) render = vendor->render;
    node.isPrivate = vendor != nullptr && vendor->isPrivate;
  }
  if (render != nullptr && render(entry, model, at, node)) {
    node.AddRest(at);
    return node;
  }
  if (render != nullptr) node.Add("Not decoded", "its size is outside what is read of this kind").isFault = true;
  if (ByteVector rest = at.Rest(); !rest.empty()) node.AddBytes("Bytes", std::move(rest));
  return node;
}

void AddHeader(const CeaBlock& model, const ByteSource& at, Node& node) {
  const NamedFlag flags[] = {{model.underscan, "underscan"},
                             {model.basicAudio, "basic audio"},
                             {model.ycbcr444, "YCbCr 4:4:4"},
                             {model.ycbcr422, "YCbCr 4:2:2"}};
  node.bytes = at(0);
  node.Add("Revision", fmt::format("{}", model.revision), at(1));
  node.Add("Timing offset", model.dtdOffset == 0 ? "none" : fmt::format("{}", model.dtdOffset), at(2));
  node.Add("Flags", SetFlags(flags), at(3));
  node.Add("Native timings", fmt::format("{}", model.nativeDtdCount), at(3));
  node.Add("Free bytes", fmt::format("{}", model.freeSpace));
}

}  // namespace

bool DescribeCta(const EdidBlock& block, const ByteSource& at, Node& node) {
  const CtaExtension model(block);
  if (!model) return false;
  node.record = *model;
  AddHeader(*model, at, node);
  size_t offset = kCollectionStart;
  for (const CeaDataBlock& entry : std::span(model->dataBlocks, model->dataBlockCount)) {
    if (entry.bytes != nullptr) node.Child(DescribeDataBlock(entry, *model, at.Part(offset, entry.size)));
    offset += entry.size;
  }
  if (model->dtds == nullptr) return true;
  for (unsigned i = 0; i < model->dtdCount; ++i) {
    const ByteSource slot = at.Part(model->dtdOffset + kDtdSize * i, kDtdSize);
    node.Child(DescribeDtd(fmt::format("Detailed timing {}", i + 1), model->dtds[i], slot));
  }
  return true;
}

}  // namespace reedid::document
