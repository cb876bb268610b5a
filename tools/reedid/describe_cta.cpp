// The CTA-861 extension: its flags, its data blocks by name, its detailed timings.

#include <fmt/format.h>

#include "describe.h"
#include "hex_text.h"
#include "records.h"

namespace reedid::tool {
namespace {

constexpr uint8_t kExtendedTag = 7;
constexpr uint8_t kVendorTag = 3;

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

bool DescribeAudio(const CeaDataBlock& entry, const CeaBlock&, Node& node) {
  AdbRecord record;
  if (CEA_GetADB(&entry, &record) != 0) return false;
  node.record = record;
  for (const SadRecord& sad : std::span(record.sads, record.sadCount)) node.Add(AudioFormatName(sad), SadText(sad));
  return true;
}

bool DescribeSpeakers(const CeaDataBlock& entry, const CeaBlock&, Node& node) {
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
  node.Add("Speakers", SetFlags(flags));
  return true;
}

bool DescribeColorimetry(const CeaDataBlock& entry, const CeaBlock&, Node& node) {
  ColorimetryRecord c;
  if (CEA_GetCDB(&entry, &c) != 0) return false;
  node.record = c;
  const NamedFlag flags[] = {{c.xvYCC601, "xvYCC601"},   {c.xvYCC709, "xvYCC709"},   {c.sYCC601, "sYCC601"},
                             {c.opYCC601, "opYCC601"},   {c.opRGB, "opRGB"},         {c.BT2020cYCC, "BT2020cYCC"},
                             {c.BT2020YCC, "BT2020YCC"}, {c.BT2020RGB, "BT2020RGB"}, {c.ICtCp, "ICtCp"},
                             {c.DCI_P3, "DCI-P3"}};
  node.Add("Colorimetry", SetFlags(flags));
  if (c.metadataProfiles != 0) node.Add("Metadata profiles", fmt::format("{:#x}", c.metadataProfiles));
  return true;
}

bool DescribeVideoCapability(const CeaDataBlock& entry, const CeaBlock&, Node& node) {
  static constexpr const char* kScan[] = {"not stated", "always overscanned", "always underscanned",
                                          "over- and underscan"};
  VideoCapRecord v;
  if (CEA_GetVCDB(&entry, &v) != 0) return false;
  node.record = v;
  node.Add("Quantization", fmt::format("YCC {}, RGB {}", v.QY ? "selectable" : "fixed", v.QS ? "selectable" : "fixed"));
  node.Add("Preferred timing", v.S_PT == 0 ? "as the formats below" : kScan[v.S_PT]);
  node.Add("IT formats", kScan[v.S_IT]);
  node.Add("CE formats", kScan[v.S_CE]);
  return true;
}

// A renderer returns false when the block cannot be decoded; without one, the bytes are shown.
using Renderer = bool (*)(const CeaDataBlock&, const CeaBlock&, Node&);

bool RenderHdmi14b(const CeaDataBlock& entry, const CeaBlock&, Node& node) {
  return DescribeHdmi14b(entry, node);
}

bool RenderHdmiForum(const CeaDataBlock& entry, const CeaBlock&, Node& node) {
  return DescribeHdmiForum(entry, node);
}

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
  Renderer render;  // of the block with tag 3
};

constexpr Vendor kVendors[] = {
    {0x000C03, "HDMI 1.4b", RenderHdmi14b},
    {0xC45DD8, "HDMI Forum", RenderHdmiForum},
    {0x00D046, "Dolby", nullptr},
    {0x90848B, "HDR10+", nullptr},
    {0x00001A, "AMD", nullptr},
    {0xCA125C, "Microsoft", nullptr},
};

const Vendor* FindVendor(const CeaDataBlock& entry, unsigned at) {
  if (entry.size < at + 3u) return nullptr;
  const unsigned oui =
      unsigned{entry.bytes[at]} | unsigned{entry.bytes[at + 1]} << 8 | unsigned{entry.bytes[at + 2]} << 16;
  for (const Vendor& vendor : kVendors) {
    if (vendor.oui == oui) return &vendor;
  }
  return nullptr;
}

DataBlockKind KindOf(const CeaDataBlock& entry) {
  for (const DataBlockKind& kind : kDataBlockKinds) {
    if (kind.tag == entry.tag && (entry.tag != kExtendedTag || kind.extTag == entry.extTag)) return kind;
  }
  return {entry.tag, entry.extTag, entry.tag == kVendorTag ? "Vendor-Specific Data Block" : "Reserved Data Block",
          nullptr};
}

Node DescribeDataBlock(const CeaDataBlock& entry, const CeaBlock& model) {
  const DataBlockKind kind = KindOf(entry);
  const bool vendorExtended = entry.tag == kExtendedTag && (entry.extTag == 1 || entry.extTag == 17);
  const Vendor* vendor = nullptr;
  if (entry.tag == kVendorTag || vendorExtended) vendor = FindVendor(entry, vendorExtended ? 2 : 1);
  Node node;
  node.title = entry.tag == kExtendedTag ? fmt::format("{} (7/{})", kind.name, entry.extTag)
                                         : fmt::format("{} ({})", kind.name, entry.tag);
  if (vendor != nullptr) node.title += fmt::format(", {}", vendor->name);
  const Renderer render = vendor != nullptr && entry.tag == kVendorTag ? vendor->render : kind.render;
  const bool decoded = render != nullptr && render(entry, model, node);
  if (render != nullptr && !decoded) node.Add("Not decoded", "its size is outside what is read of this kind");
  // Vendor blocks may hold more than their codec reads.
  if (!decoded || entry.tag == kVendorTag) node.Add("Bytes", Hex({entry.bytes, entry.size}));
  return node;
}

}  // namespace

bool DescribeCta(const EdidBlock& block, Node& node) {
  const Owned<CeaBlock> model(CEA_Open(&block));
  if (model == nullptr) return false;
  const NamedFlag flags[] = {{model->underscan, "underscan"},
                             {model->basicAudio, "basic audio"},
                             {model->ycbcr444, "YCbCr 4:4:4"},
                             {model->ycbcr422, "YCbCr 4:2:2"}};
  node.record = *model;
  node.Add("Revision", fmt::format("{}", model->revision));
  node.Add("Flags", SetFlags(flags));
  node.Add("Native timings", fmt::format("{}", model->nativeDtdCount));
  node.Add("Free bytes", fmt::format("{}", model->freeSpace));
  for (const CeaDataBlock& entry : std::span(model->dataBlocks, model->dataBlockCount)) {
    if (entry.bytes != nullptr) node.Child(DescribeDataBlock(entry, *model));
  }
  if (model->dtds == nullptr) return true;
  for (unsigned i = 0; i < model->dtdCount; ++i) {
    node.Child(DescribeDtd(fmt::format("Detailed timing {}", i + 1), model->dtds[i]));
  }
  return true;
}

}  // namespace reedid::tool
