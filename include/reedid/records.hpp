/**
 * @file records.hpp
 * @brief The records of data blocks and descriptors by their types: Get<ColorimetryRecord>(block), and the first one
 * of a model by Find<ColorimetryRecord>(model). Part of reedid.hpp.
 *
 * A block of another kind is quietly no record; one of the right kind that its getter refuses prints that getter's
 * line. Records that need more than their block have no entry here: those with a buffer of the caller's
 * (ProductIdRecord, TimingCodeRecord), arrays of timings, and the YCbCr 4:2:0 capability map.
 */
#ifndef REEDID_RECORDS_HPP
#define REEDID_RECORDS_HPP

#include <array>
#include <cstdint>
#include <optional>
#include <type_traits>

#include "reedid/reedid.h"

namespace reedid {
inline namespace cpp0 {

/// Who decodes a record, and the blocks that hold it.
template <class Entry, class Record>
struct Getter {
  using EntryType = Entry;                ///< CeaDataBlock, DispIdDataBlock or DtdSlot
  int32_t (*get)(const Entry*, Record*);  ///< the call of the C interface
  unsigned tag;                           ///< tag of the block, flag of the slot
  unsigned extTag;                        ///< of a CTA block with CEA_TAG_EXTENDED
  uint32_t oui;                           ///< an IeeeOui where the tag stands for vendors, else 0
};

/// A Getter, its types taken from the call.
template <class Entry, class Record>
constexpr Getter<Entry, Record> By(int32_t (*get)(const Entry*, Record*), unsigned tag, unsigned extTag = 0,
                                   uint32_t oui = 0) {
  return {get, tag, extTag, oui};
}

/// The getters of a record. One row for each record; there is none for a type that is no record of one block.
template <class Record>
inline constexpr std::nullptr_t kGetters = nullptr;
/// @cond rows
template <>
inline constexpr std::array kGetters<DtdTiming>{By(VESA_GetDTD, 1)};
template <>
inline constexpr std::array kGetters<VesaCvtRecord>{By(VESA_GetCvtTiming, EDID_DESCRIPTOR_CVT_CODES)};
template <>
inline constexpr std::array kGetters<Est3Record>{By(VESA_GetEst3Timing, EDID_DESCRIPTOR_EST3)};
template <>
inline constexpr std::array kGetters<VdbRecord>{By(CEA_GetVDB, CEA_TAG_VIDEO)};
template <>
inline constexpr std::array kGetters<AdbRecord>{By(CEA_GetADB, CEA_TAG_AUDIO)};
template <>
inline constexpr std::array kGetters<SpeakerRecord>{By(CEA_GetSADB, CEA_TAG_SPEAKERS)};
template <>
inline constexpr std::array kGetters<H14bRecord>{By(CEA_GetH14bVSDB, CEA_TAG_VENDOR, 0, REEDID_OUI_HDMI)};
template <>
inline constexpr std::array kGetters<HfVsdbRecord>{By(CEA_GetHFVSDB, CEA_TAG_VENDOR, 0, REEDID_OUI_HDMI_FORUM)};
template <>
inline constexpr std::array kGetters<VideoCapRecord>{By(CEA_GetVCDB, CEA_TAG_EXTENDED, CEA_EXT_TAG_VIDEO_CAPABILITY)};
template <>
inline constexpr std::array kGetters<ColorimetryRecord>{By(CEA_GetCDB, CEA_TAG_EXTENDED, CEA_EXT_TAG_COLORIMETRY)};
template <>
inline constexpr std::array kGetters<StaticHdrRecord>{By(CEA_GetStaticHDR, CEA_TAG_EXTENDED, CEA_EXT_TAG_STATIC_HDR)};
template <>
inline constexpr std::array kGetters<Vic420Record>{By(CEA_Get420VDB, CEA_TAG_EXTENDED, CEA_EXT_TAG_420_VIDEO)};
template <>
inline constexpr std::array kGetters<Cea20ByteDtdRecord>{By(CEA_Get20ByteDTD, CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_VII)};
template <>
inline constexpr std::array kGetters<AmdVsdbRecord>{By(CEA_GetAmdVSDB, CEA_TAG_VENDOR, 0, REEDID_OUI_AMD)};
template <>
inline constexpr std::array kGetters<NvidiaVsdbRecord>{By(CEA_GetNvidiaVSDB, CEA_TAG_VENDOR, 0, REEDID_OUI_NVIDIA)};
template <>
inline constexpr std::array kGetters<DolbyVisionRecord>{
    By(CEA_GetDolbyVision, CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_VIDEO, REEDID_OUI_DOLBY)};
template <>
inline constexpr std::array kGetters<DolbyAudioRecord>{
    By(CEA_GetDolbyAudio, CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_AUDIO, REEDID_OUI_DOLBY)};
template <>
inline constexpr std::array kGetters<Hdr10PlusRecord>{
    By(CEA_GetHdr10Plus, CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_VIDEO, REEDID_OUI_HDR10_PLUS)};
template <>
inline constexpr std::array kGetters<DynamicHdrRecord>{
    By(CEA_GetDynamicHDR, CEA_TAG_EXTENDED, CEA_EXT_TAG_DYNAMIC_HDR)};
template <>
inline constexpr std::array kGetters<H14b3dRecord>{By(CEA_GetH14b3D, CEA_TAG_VENDOR, 0, REEDID_OUI_HDMI)};
template <>
inline constexpr std::array kGetters<HfScdsRecord>{By(CEA_GetHFVSDBScds, CEA_TAG_VENDOR, 0, REEDID_OUI_HDMI_FORUM),
                                                   By(CEA_GetHFSCDB, CEA_TAG_EXTENDED, CEA_EXT_TAG_SINK_CAPABILITY)};
template <>
inline constexpr std::array kGetters<ExtensionOverrideRecord>{
    By(CEA_GetHFEEODB, CEA_TAG_EXTENDED, CEA_EXT_TAG_EXTENSION_OVERRIDE)};
template <>
inline constexpr std::array kGetters<AudioFormatsRecord>{By(CEA_GetAudioFormats, CEA_TAG_AUDIO)};
template <>
inline constexpr std::array kGetters<NativeResolutionRecord>{
    By(CEA_GetNVRDB, CEA_TAG_EXTENDED, CEA_EXT_TAG_NATIVE_RESOLUTION)};
template <>
inline constexpr std::array kGetters<FormatPreferenceRecord>{
    By(CEA_GetVFPDB, CEA_TAG_EXTENDED, CEA_EXT_TAG_FORMAT_PREFERENCE)};
template <>
inline constexpr std::array kGetters<InfoFrameRecord>{By(CEA_GetInfoFrame, CEA_TAG_EXTENDED, CEA_EXT_TAG_INFOFRAME)};
template <>
inline constexpr std::array kGetters<RoomRecord>{By(CEA_GetRCDB, CEA_TAG_EXTENDED, CEA_EXT_TAG_ROOM_CONFIGURATION)};
template <>
inline constexpr std::array kGetters<SpeakerLocationRecord>{
    By(CEA_GetSLDB, CEA_TAG_EXTENDED, CEA_EXT_TAG_SPEAKER_LOCATION)};
template <>
inline constexpr std::array kGetters<VesaDeviceRecord>{
    By(CEA_GetVesaDevice, CEA_TAG_EXTENDED, CEA_EXT_TAG_VESA_DISPLAY_DEVICE)};
template <>
inline constexpr std::array kGetters<VesaTransferRecord>{By(CEA_GetVesaTransfer, CEA_TAG_VESA_TRANSFER)};
template <>
inline constexpr std::array kGetters<VideoFormatsRecord>{By(CEA_GetVFDB, CEA_TAG_VIDEO_FORMAT)};
template <>
inline constexpr std::array kGetters<HdmiAudioRecord>{By(CEA_GetHdmiAudio, CEA_TAG_EXTENDED, CEA_EXT_TAG_HDMI_AUDIO)};
template <>
inline constexpr std::array kGetters<ToneMappingRecord>{
    By(CEA_GetHFSBTMDB, CEA_TAG_EXTENDED, CEA_EXT_TAG_TONE_MAPPING)};
template <>
inline constexpr std::array kGetters<FilmmakerRecord>{By(CEA_GetFilmmaker, CEA_TAG_VENDOR, 0, REEDID_OUI_UHD_ALLIANCE)};
template <>
inline constexpr std::array kGetters<MicrosoftVsdbRecord>{
    By(CEA_GetMicrosoftVSDB, CEA_TAG_VENDOR, 0, REEDID_OUI_MICROSOFT)};
template <>
inline constexpr std::array kGetters<ProductInformationRecord>{
    By(CEA_GetProductInformation, CEA_TAG_EXTENDED, CEA_EXT_TAG_PRODUCT_INFORMATION)};
template <>
inline constexpr std::array kGetters<DisplayParamsRecord>{By(DispID_GetDPDB, DISPID_TAG_DISPLAY_PARAMS)};
template <>
inline constexpr std::array kGetters<DisplayParams20Record>{By(DispID20_GetDPDB, DISPID20_TAG_DISPLAY_PARAMS)};
template <>
inline constexpr std::array kGetters<DispIdRangeLimits>{By(DispID_GetRangeLimits, DISPID_TAG_RANGE_LIMITS),
                                                        By(DispID20_GetRangeLimits, DISPID20_TAG_RANGE_LIMITS)};
template <>
inline constexpr std::array kGetters<AdaptiveSyncRecord>{By(DispID20_GetAdaptiveSync, DISPID20_TAG_ADAPTIVE_SYNC)};
template <>
inline constexpr std::array kGetters<TiledDisplayRecord>{By(DispID_GetTiledDisplay, DISPID_TAG_TILED),
                                                         By(DispID20_GetTiledDisplay, DISPID20_TAG_TILED)};
template <>
inline constexpr std::array kGetters<InterfaceFeaturesRecord>{
    By(DispID20_GetInterfaceFeatures, DISPID20_TAG_INTERFACE_FEATURES)};
template <>
inline constexpr std::array kGetters<DisplayInterfaceRecord>{
    By(DispID_GetDisplayInterface, DISPID_TAG_DISPLAY_INTERFACE)};
template <>
inline constexpr std::array kGetters<ContainerIdRecord>{By(DispID20_GetContainerID, DISPID20_TAG_CONTAINER_ID)};
template <>
inline constexpr std::array kGetters<DispIdVendorRecord>{By(DispID_GetVendor, DISPID_TAG_VENDOR),
                                                         By(DispID20_GetVendor, DISPID20_TAG_VENDOR)};
template <>
inline constexpr std::array kGetters<VesaVendorRecord>{
    By(DispID20_GetVesaVendor, DISPID20_TAG_VENDOR, 0, REEDID_OUI_VESA)};
template <>
inline constexpr std::array kGetters<DispIdColorRecord>{By(DispID_GetColor, DISPID_TAG_COLOR)};
template <>
inline constexpr std::array kGetters<DispIdTransferRecord>{By(DispID_GetTransfer, DISPID_TAG_TRANSFER)};
template <>
inline constexpr std::array kGetters<StereoRecord>{By(DispID_GetStereo, DISPID_TAG_STEREO),
                                                   By(DispID20_GetStereo, DISPID20_TAG_STEREO)};
template <>
inline constexpr std::array kGetters<BrightnessRecord>{By(DispID20_GetBrightness, DISPID20_TAG_BRIGHTNESS)};
template <>
inline constexpr std::array kGetters<DisplayDeviceRecord>{By(DispID_GetDisplayDevice, DISPID_TAG_DISPLAY_DEVICE)};
template <>
inline constexpr std::array kGetters<PowerSequencingRecord>{By(DispID_GetPowerSequencing, DISPID_TAG_POWER_SEQUENCING)};
template <>
inline constexpr std::array kGetters<HeadMountedRecord>{By(DispID20_GetHeadMounted, DISPID20_TAG_HEAD_MOUNTED)};
template <>
inline constexpr std::array kGetters<HeadMountedLayerRecord>{
    By(DispID20_GetHeadMountedLayer, DISPID20_TAG_HEAD_MOUNTED_LAYER)};
/// @endcond

/// Whether `entry` is of a kind: tag, extended tag and vendor.
template <class Record>
bool IsKind(const Getter<CeaDataBlock, Record>& kind, const CeaDataBlock& entry) {
  const bool isExtended = entry.tag == CEA_TAG_EXTENDED;
  if (entry.tag != kind.tag || (isExtended && entry.extTag != kind.extTag)) return false;
  if (kind.oui == 0) return true;
  const unsigned at = isExtended ? 2 : 1;
  if (entry.bytes == nullptr || entry.size < at + 3u) return false;
  const uint8_t* oui = entry.bytes + at;  // least significant byte first
  return kind.oui == (uint32_t{oui[0]} | uint32_t{oui[1]} << 8 | uint32_t{oui[2]} << 16);
}
/// The same of a DisplayID data block: its tag and vendor.
template <class Record>
bool IsKind(const Getter<DispIdDataBlock, Record>& kind, const DispIdDataBlock& entry) {
  if (entry.tag != kind.tag) return false;
  if (kind.oui == 0) return true;
  if (entry.bytes == nullptr || entry.size < 6) return false;
  const uint8_t* oui = entry.bytes + 3;  // most significant byte first
  return kind.oui == (uint32_t{oui[0]} << 16 | uint32_t{oui[1]} << 8 | uint32_t{oui[2]});
}
/// The same of a descriptor, by its flag.
template <class Record>
bool IsKind(const Getter<DtdSlot, Record>& kind, const DtdSlot& slot) {
  return slot.flag == kind.tag;
}

/// The record of a block; none when the block is of another kind or refused.
template <class Record, class Entry>
std::optional<Record> Get(const Entry& entry) {
  static_assert(!std::is_null_pointer_v<std::remove_cv_t<decltype(kGetters<Record>)>>, "no record of one block");
  for (const Getter<Entry, Record>& getter : kGetters<Record>) {
    Record record{};
    if (IsKind(getter, entry) && getter.get(&entry, &record) == 0) return record;
  }
  return std::nullopt;
}

/// The first record of this type that a BaseBlock, CtaExtension or DisplayIdSection has.
template <class Record, class Model>
std::optional<Record> Find(const Model& model) {
  using Entry = typename std::remove_cv_t<decltype(kGetters<Record>)>::value_type::EntryType;
  const auto first = [](auto entries) -> std::optional<Record> {
    for (const Entry& entry : entries) {
      if (const std::optional<Record> record = Get<Record>(entry)) return record;
    }
    return std::nullopt;
  };
  if constexpr (std::is_same_v<Entry, DtdSlot>) {
    return first(model.Descriptors());
  } else {
    return first(model.DataBlocks());
  }
}

}  // namespace cpp0
}  // namespace reedid

#endif
