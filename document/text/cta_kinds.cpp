// Data blocks of CTA-861, by their tag, extended tag and vendor.

#include "document/text/cta_own.h"
#include "document/text/shims.h"

namespace reedid::document::text {
namespace {

constexpr uint8_t Head(unsigned tag) {
  return static_cast<uint8_t>(tag << 5);
}

ByteVector Extended(unsigned extTag) {
  return {Head(CEA_TAG_EXTENDED), static_cast<uint8_t>(extTag)};
}

// An OUI stands with its least significant byte first.
ByteVector WithOui(ByteVector head, uint32_t oui) {
  for (unsigned shift = 0; shift < 24; shift += 8) head.push_back(static_cast<uint8_t>(oui >> shift));
  return head;
}

ByteVector Vendor(uint32_t oui) {
  return WithOui({Head(CEA_TAG_VENDOR)}, oui);
}

bool GetTypeX(Bytes bytes, const Context&, void* box, size_t& count) {
  constexpr size_t kHeader = 3, kLeast = 6;
  const auto entry = EntryOf<CeaDataBlock>(bytes);
  if (bytes.size() < kHeader + kLeast) return false;
  count = (bytes.size() - kHeader) / (kLeast + (bytes[2] >> 4 & 7u));
  return CEA_Get6ByteCVT(&entry, static_cast<CvtTiming*>(box)) == 0;
}

const std::vector<Kind>& Kinds() {
  static const std::vector<Kind> kinds = {
      {"video", {Head(CEA_TAG_VIDEO)}, &kVideoForm},
      RecordKind<AudioFormatsRecord, CEA_GetAudioFormats, CEA_SetAudioFormats>("audio", {Head(CEA_TAG_AUDIO)}),
      RecordKind<SpeakerRecord, CEA_GetSADB, CEA_SetSADB>("speakers", {Head(CEA_TAG_SPEAKERS)}),
      RecordKind<H14b3dRecord, CEA_GetH14b3D, CEA_SetH14b3D>("hdmi", Vendor(REEDID_OUI_HDMI)),
      RecordKind<HfScdsRecord, CEA_GetHFVSDBScds, CEA_SetHFVSDBScds>("hdmiForum", Vendor(REEDID_OUI_HDMI_FORUM), "",
                                                                     R"({"version": 1})"),
      RecordKind<AmdVsdbRecord, CEA_GetAmdVSDB, CEA_SetAmdVSDB>("freeSync", Vendor(REEDID_OUI_AMD)),
      RecordKind<NvidiaVsdbRecord, CEA_GetNvidiaVSDB, CEA_SetNvidiaVSDB>("gSync", Vendor(REEDID_OUI_NVIDIA), "",
                                                                         R"({"version": 1})"),
      RecordKind<MicrosoftVsdbRecord, CEA_GetMicrosoftVSDB, CEA_SetMicrosoftVSDB>("microsoft",
                                                                                  Vendor(REEDID_OUI_MICROSOFT)),
      RecordKind<FilmmakerRecord, CEA_GetFilmmaker, CEA_SetFilmmaker>("filmmaker", Vendor(REEDID_OUI_UHD_ALLIANCE)),
      {"apple", Vendor(REEDID_OUI_APPLE)},
      {"vendor", {Head(CEA_TAG_VENDOR)}},
      RecordKind<VideoCapRecord, CEA_GetVCDB, CEA_SetVCDB>("videoCapability", Extended(CEA_EXT_TAG_VIDEO_CAPABILITY)),
      RecordKind<DolbyVisionRecord, CEA_GetDolbyVision, CEA_SetDolbyVision>(
          "dolbyVision", WithOui(Extended(CEA_EXT_TAG_VENDOR_VIDEO), REEDID_OUI_DOLBY)),
      RecordKind<Hdr10PlusRecord, CEA_GetHdr10Plus, CEA_SetHdr10Plus>(
          "hdr10Plus", WithOui(Extended(CEA_EXT_TAG_VENDOR_VIDEO), REEDID_OUI_HDR10_PLUS), "",
          R"({"applicationVersion": 1})"),
      {"vendorVideo", Extended(CEA_EXT_TAG_VENDOR_VIDEO)},
      RecordKind<ColorimetryRecord, CEA_GetCDB, CEA_SetCDB>("colorimetry", Extended(CEA_EXT_TAG_COLORIMETRY)),
      RecordKind<StaticHdrRecord, CEA_GetStaticHDR, CEA_SetStaticHDR>(
          "staticHdr", Extended(CEA_EXT_TAG_STATIC_HDR), "", R"({"eotfSdr": true, "staticMetadataType1": true})"),
      RecordKind<DynamicHdrRecord, CEA_GetDynamicHDR, CEA_SetDynamicHDR>("dynamicHdr",
                                                                         Extended(CEA_EXT_TAG_DYNAMIC_HDR)),
      RecordKind<NativeResolutionRecord, CEA_GetNVRDB, CEA_SetNVRDB>("nativeResolution",
                                                                     Extended(CEA_EXT_TAG_NATIVE_RESOLUTION)),
      RecordKind<FormatPreferenceRecord, CEA_GetVFPDB, CEA_SetVFPDB>("formatPreference",
                                                                     Extended(CEA_EXT_TAG_FORMAT_PREFERENCE)),
      {"ycc420Video", Extended(CEA_EXT_TAG_420_VIDEO), &kVideoForm},
      {"ycc420Map", Extended(CEA_EXT_TAG_420_MAP), &kMapForm},
      RecordKind<DolbyAudioRecord, CEA_GetDolbyAudio, CEA_SetDolbyAudio>(
          "dolbyAudio", WithOui(Extended(CEA_EXT_TAG_VENDOR_AUDIO), REEDID_OUI_DOLBY)),
      {"vendorAudio", Extended(CEA_EXT_TAG_VENDOR_AUDIO)},
      RecordKind<RoomRecord, CEA_GetRCDB, CEA_SetRCDB>("room", Extended(CEA_EXT_TAG_ROOM_CONFIGURATION)),
      RecordKind<SpeakerLocationRecord, CEA_GetSLDB, CEA_SetSLDB>("speakerLocation",
                                                                  Extended(CEA_EXT_TAG_SPEAKER_LOCATION)),
      RecordKind<InfoFrameRecord, CEA_GetInfoFrame, CEA_SetInfoFrame>("infoFrame", Extended(CEA_EXT_TAG_INFOFRAME)),
      RecordKind<Cea20ByteDtdRecord, CEA_Get20ByteDTD, CEA_Set20ByteDTD>("typeVII", Extended(CEA_EXT_TAG_TYPE_VII)),
      CodesKind<CEA_GetTimingCode, CEA_SetTimingCode>("typeVIII", Extended(CEA_EXT_TAG_TYPE_VIII)),
      {"typeX", Extended(CEA_EXT_TAG_TYPE_X), &kListForm, &kRecordInfo<CvtTiming>, "preferred", GetTypeX,
       SetSeveral<CEA_Set6ByteCVT>, "timings"},
      {"extensionOverride", Extended(CEA_EXT_TAG_EXTENSION_OVERRIDE), &kOverrideForm},
      RecordKind<HfScdsRecord, CEA_GetHFSCDB, CEA_SetHFSCDB>("sinkCapability", Extended(CEA_EXT_TAG_SINK_CAPABILITY)),
      RecordKind<ToneMappingRecord, CEA_GetHFSBTMDB, CEA_SetHFSBTMDB>("toneMapping",
                                                                      Extended(CEA_EXT_TAG_TONE_MAPPING)),
      RecordKind<VesaDeviceRecord, CEA_GetVesaDevice, CEA_SetVesaDevice>("vesaDevice",
                                                                         Extended(CEA_EXT_TAG_VESA_DISPLAY_DEVICE)),
      RecordKind<VesaTransferRecord, CEA_GetVesaTransfer, CEA_SetVesaTransfer>("vesaTransfer",
                                                                               {Head(CEA_TAG_VESA_TRANSFER)}),
      RecordKind<VideoFormatsRecord, CEA_GetVFDB, CEA_SetVFDB>("videoFormats", {Head(CEA_TAG_VIDEO_FORMAT)}),
      RecordKind<HdmiAudioRecord, CEA_GetHdmiAudio, CEA_SetHdmiAudio>("hdmiAudio", Extended(CEA_EXT_TAG_HDMI_AUDIO)),
      RecordKind<ProductInformationRecord, CEA_GetProductInformation, CEA_SetProductInformation>(
          "productInformation", Extended(CEA_EXT_TAG_PRODUCT_INFORMATION)),
  };
  return kinds;
}

// The header's size is no part of what tells the kind.
bool Matches(const Kind& kind, Bytes bytes) {
  if (bytes.size() < kind.head.size() || (bytes[0] & 0x1Fu) + 1 != bytes.size() || (bytes[0] & 0xE0) != kind.head[0])
    return false;
  return std::equal(kind.head.begin() + 1, kind.head.end(), bytes.begin() + 1);
}

}  // namespace

const Family kCtaDataBlocks = {"data block", Kinds, Matches};

}  // namespace reedid::document::text
