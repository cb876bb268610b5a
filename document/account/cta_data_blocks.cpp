#include "document/account/cta_data_blocks.h"

#include <fmt/format.h>

#include "document/account/cta_audio.h"
#include "document/account/cta_color.h"
#include "document/account/cta_display.h"
#include "document/account/cta_hdmi.h"
#include "document/account/cta_infoframe.h"
#include "document/account/cta_room.h"
#include "document/account/cta_vendor.h"
#include "document/account/cta_video.h"
#include "document/account/vendors.h"

namespace reedid::document {
namespace {

// A renderer returns false when the block cannot be decoded; without one, the bytes are shown.
using Renderer = bool (*)(const CeaDataBlock&, const CeaBlock&, const ByteSource&, Node&);

struct DataBlockKind {
  unsigned tag;
  unsigned extTag;  // for CEA_TAG_EXTENDED
  const char* name;
  Renderer render;
};

// CTA-861, tables 32 and 33.
constexpr DataBlockKind kDataBlockKinds[] = {
    {CEA_TAG_AUDIO, 0, "Audio Data Block", DescribeAudio},
    {CEA_TAG_VIDEO, 0, "Video Data Block", DescribeVideo},
    {CEA_TAG_SPEAKERS, 0, "Speaker Allocation Data Block", DescribeSpeakers},
    {CEA_TAG_VESA_TRANSFER, 0, "VESA Display Transfer Characteristic Data Block", DescribeVesaTransfer},
    {CEA_TAG_VIDEO_FORMAT, 0, "Video Format Data Block", DescribeVideoFormats},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_VIDEO_CAPABILITY, "Video Capability Data Block", DescribeVideoCapability},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_VIDEO, "Vendor-Specific Video Data Block", nullptr},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_VESA_DISPLAY_DEVICE, "VESA Display Device Data Block", DescribeVesaDevice},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_COLORIMETRY, "Colorimetry Data Block", DescribeColorimetry},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_STATIC_HDR, "HDR Static Metadata Data Block", DescribeStaticHdr},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_DYNAMIC_HDR, "HDR Dynamic Metadata Data Block", DescribeDynamicHdr},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_NATIVE_RESOLUTION, "Native Video Resolution Data Block", DescribeNativeResolution},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_FORMAT_PREFERENCE, "Video Format Preference Data Block", DescribeFormatPreference},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_420_VIDEO, "YCbCr 4:2:0 Video Data Block", Describe420Video},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_420_MAP, "YCbCr 4:2:0 Capability Map Data Block", Describe420Map},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_AUDIO, "Vendor-Specific Audio Data Block", nullptr},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_HDMI_AUDIO, "HDMI Audio Data Block", DescribeHdmiAudio},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_ROOM_CONFIGURATION, "Room Configuration Data Block", DescribeRoom},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_SPEAKER_LOCATION, "Speaker Location Data Block", DescribeSpeakerLocation},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_INFOFRAME, "InfoFrame Data Block", DescribeInfoFrame},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_PRODUCT_INFORMATION, "Product Information Data Block", DescribeProductInformation},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_VII, "DisplayID Type VII Video Timing Data Block", DescribeTypeVII},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_VIII, "DisplayID Type VIII Video Timing Data Block", DescribeTypeVIII},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_X, "DisplayID Type X Video Timing Data Block", DescribeTypeX},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_EXTENSION_OVERRIDE, "HDMI Forum EDID Extension Override Data Block",
     DescribeExtensionOverride},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_SINK_CAPABILITY, "HDMI Forum Sink Capability Data Block", DescribeSinkCapability},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_TONE_MAPPING, "HDMI Forum Source-Based Tone Mapping Data Block",
     DescribeToneMapping},
};

// What vendors make of the blocks that are theirs; without a renderer, the bytes are shown.
struct VendorKind {
  unsigned tag;
  unsigned extTag;  // for CEA_TAG_EXTENDED
  unsigned oui;
  const char* name;
  Renderer render;
  bool isPrivate = false;  // as bytes, it tells one unit from another
};

constexpr VendorKind kVendorKinds[] = {
    {CEA_TAG_VENDOR, 0, REEDID_OUI_HDMI, "HDMI 1.4b", DescribeHdmi14b},
    {CEA_TAG_VENDOR, 0, REEDID_OUI_HDMI_FORUM, "HDMI Forum", DescribeHdmiForum},
    {CEA_TAG_VENDOR, 0, REEDID_OUI_AMD, "AMD FreeSync", DescribeAmd},
    {CEA_TAG_VENDOR, 0, REEDID_OUI_NVIDIA, "NVIDIA G-SYNC", DescribeNvidia},
    {CEA_TAG_VENDOR, 0, REEDID_OUI_APPLE, "Apple", nullptr, true},                    // calibration of the unit
    {CEA_TAG_VENDOR, 0, REEDID_OUI_MICROSOFT, "Microsoft", DescribeMicrosoft, true},  // has a ContainerID
    {CEA_TAG_VENDOR, 0, REEDID_OUI_UHD_ALLIANCE, "UHD Alliance", DescribeFilmmaker},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_VIDEO, REEDID_OUI_DOLBY, "Dolby Vision", DescribeDolbyVision},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_VIDEO, REEDID_OUI_HDR10_PLUS, "HDR10+", DescribeHdr10Plus},
    {CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_AUDIO, REEDID_OUI_DOLBY, "Dolby audio", DescribeDolbyAudio},
};

// Where a block has its vendor's OUI; 0 for blocks that are of no vendor.
size_t OuiByte(const CeaDataBlock& entry) {
  if (entry.tag == CEA_TAG_VENDOR) return 1;
  const bool isVendors = entry.extTag == CEA_EXT_TAG_VENDOR_VIDEO || entry.extTag == CEA_EXT_TAG_VENDOR_AUDIO;
  return entry.tag == CEA_TAG_EXTENDED && isVendors ? 2 : 0;
}

const VendorKind* FindVendorKind(const CeaDataBlock& entry, unsigned oui) {
  for (const VendorKind& kind : kVendorKinds) {
    if (kind.oui == oui && kind.tag == entry.tag && (entry.tag != CEA_TAG_EXTENDED || kind.extTag == entry.extTag)) {
      return &kind;
    }
  }
  return nullptr;
}

// The vendor, by its OUI with the least significant byte first, added to the title; null when its block is not known.
const VendorKind* AddVendor(const CeaDataBlock& entry, const ByteSource& at, Node& node) {
  const size_t ouiByte = OuiByte(entry);
  if (at.size() < ouiByte + 3) return nullptr;
  const SourceBytes b = at(ouiByte, 3);
  const unsigned oui = unsigned{b[0]} | unsigned{b[1]} << 8 | unsigned{b[2]} << 16;
  const VendorKind* kind = FindVendorKind(entry, oui);
  node.bytes = at(0, ouiByte + 3);
  node.label = fmt::format("{}, {}", node.title, kind != nullptr ? kind->name : OuiText(oui));
  node.title = fmt::format("{}, {}", node.title, kind != nullptr ? kind->name : VendorText(oui));
  return kind;
}

DataBlockKind KindOf(const CeaDataBlock& entry) {
  for (const DataBlockKind& kind : kDataBlockKinds) {
    if (kind.tag == entry.tag && (entry.tag != CEA_TAG_EXTENDED || kind.extTag == entry.extTag)) return kind;
  }
  return {entry.tag, entry.extTag, entry.tag == CEA_TAG_VENDOR ? "Vendor-Specific Data Block" : "Reserved Data Block",
          nullptr};
}

}  // namespace

Node DescribeCtaDataBlock(const CeaDataBlock& entry, const CeaBlock& model, const ByteSource& at) {
  const DataBlockKind kind = KindOf(entry);
  const bool isExtended = entry.tag == CEA_TAG_EXTENDED;
  Node node;
  node.extent = at.extent();
  node.title =
      isExtended ? fmt::format("{} (7/{})", kind.name, entry.extTag) : fmt::format("{} ({})", kind.name, entry.tag);
  node.bytes = at(0, isExtended ? 2 : 1);
  const VendorKind* vendor = OuiByte(entry) != 0 ? AddVendor(entry, at, node) : nullptr;
  const Renderer render = vendor != nullptr ? vendor->render : kind.render;
  if (render != nullptr && render(entry, model, at, node)) {
    node.AddRest(at);
    return node;
  }
  node.isPrivate = vendor != nullptr && vendor->isPrivate;
  if (render != nullptr) node.Add("Not decoded", "its size is outside what is read of this kind").isFault = true;
  if (SourceBytes rest = at.Rest(); !rest.empty()) node.AddBytes("Bytes", std::move(rest));
  return node;
}

}  // namespace reedid::document
