// The library's records, each field listed once: tables that serve JSON in both directions, its schema, and tests. A key
// is the field's name in the header; fields stand in the header's order. What stands behind a pointer is not listed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "reedid/reedid.h"

namespace reedid::document {

enum class NumberType : uint8_t { kU8, kU16, kU32, kI8, kChar };

struct RecordInfo;

struct FieldInfo {
  const char* name;
  size_t offset;             // in its record
  NumberType type;           // of a number, or of each of an array; chars are a text
  const RecordInfo* record;  // in place of a number
  size_t length;             // of an array; 0: a single one
};

struct RecordInfo {
  const char* name;
  size_t size;
  std::span<const FieldInfo> fields;

  const FieldInfo* Find(std::string_view field) const;
  // The field that tells how many entries of an array are in use; null when all are.
  const FieldInfo* CountOf(const FieldInfo& array) const;
};

template <class Record>
struct FieldsOf;  // one for each row below

template <class Record>
concept Listed = requires {
  FieldsOf<Record>::kName;
};

template <Listed Record>
inline constexpr RecordInfo kRecordInfo = {FieldsOf<Record>::kName, sizeof(Record), FieldsOf<Record>::kFields};

template <class Item>
constexpr NumberType TypeOf() {
  static_assert(std::is_integral_v<Item> && (std::is_unsigned_v<Item> || sizeof(Item) == 1), "no type of a field");
  if constexpr (std::is_same_v<Item, char>) return NumberType::kChar;
  if constexpr (sizeof(Item) == 1) return std::is_signed_v<Item> ? NumberType::kI8 : NumberType::kU8;
  return sizeof(Item) == 2 ? NumberType::kU16 : NumberType::kU32;
}

template <class Field>
constexpr FieldInfo MakeField(const char* name, size_t offset) {
  using Item = std::remove_extent_t<Field>;
  if constexpr (std::is_class_v<Item>) {
    return {name, offset, NumberType::kU8, &kRecordInfo<Item>, std::extent_v<Field>};
  } else {
    return {name, offset, TypeOf<Item>(), nullptr, std::extent_v<Field>};
  }
}

// A number of a record, of an array the one at `index`.
int64_t NumberAt(const FieldInfo& field, const void* record, size_t index = 0);
void SetNumber(const FieldInfo& field, void* record, size_t index, int64_t value);

// How many entries of an array are in use; 1 of a field that is none.
size_t UsedLength(const RecordInfo& info, const FieldInfo& field, const void* record);

// All fields, arrays up to what is in use.
void WriteJson(const RecordInfo& info, const void* record, nlohmann::json& json);
void WriteJson(const RecordInfo& info, const void* record, nlohmann::ordered_json& json);

}  // namespace reedid::document

#define REEDID_FIELD(field) MakeField<decltype(Record::field)>(#field, offsetof(Record, field)),
#define REEDID_FIELDS(Type, ...)                                                                                   \
  template <>                                                                                                      \
  struct reedid::document::FieldsOf<Type> {                                                                        \
    using Record = Type;                                                                                           \
    static constexpr char kName[] = #Type;                                                                         \
    static constexpr FieldInfo kFields[] = {NLOHMANN_JSON_EXPAND(NLOHMANN_JSON_PASTE(REEDID_FIELD, __VA_ARGS__))}; \
  };

REEDID_FIELDS(DtdTiming, pixelClock, hactive, hblank, hfrontPorch, hsyncWidth, vactive, vblank, vfrontPorch, vsyncWidth,
              hsyncPositive, vsyncPositive, interlaced, frameRate, aspectRatio, preferred, hImageSize, vImageSize)
REEDID_FIELDS(CvtTiming, formula, aspectRatio, hactive, frameRate, interlaced, preferred, ycc420, flagA, flagB, vactive,
              extraBits42, extraBits75)
REEDID_FIELDS(StdTiming, valid, frameRate, hactive, aspectRatio)
REEDID_FIELDS(RangeLimits, minVRate, maxVRate, minHRate, maxHRate, maxPixelClock, timingFormula, gtfStartFreq, gtfM,
              gtfC, gtfK, gtfJ, cvtVersionMajor, cvtVersionMinor, cvtClockPrecision, cvtMaxHactive, cvtAspect,
              cvtPreferredAspect, cvtStandardBlanking, cvtReducedBlanking, hShrink, hStretch, vShrink, vStretch,
              preferredRefresh)
REEDID_FIELDS(VesaCvtCode, lines, aspectRatio, preferredRate, rate50, rate60, rate75, rate85, rate60rb)
REEDID_FIELDS(VesaCvtRecord, version, codes)
REEDID_FIELDS(Est3Record, version, flags)
REEDID_FIELDS(VesaBlock, manufacturer, productCode, serialNumber, week, year, version, revision, digitalInput, bitDepth,
              interfaceType, hScreenSize, vScreenSize, aspectRatioX100, gammaX100, standby, suspend, activeOff,
              colorType, sRgbDefault, preferredNative, continuousFreq, redX, redY, greenX, greenY, blueX, blueY, whiteX,
              whiteY, established, standardTimings, extensionCount, checksum, checksumValid)
REEDID_FIELDS(CeaBlock, revision, dtdOffset, underscan, basicAudio, ycbcr444, ycbcr422, nativeDtdCount, dataBlockCount,
              dtdCount, checksum, freeSpace, checksumValid)
REEDID_FIELDS(SadRecord, formatCode, extFormatCode, channels, rate32k, rate44k1, rate48k, rate88k2, rate96k, rate176k4,
              rate192k, bits16, bits20, bits24, maxBitrate, formatDependent)
REEDID_FIELDS(SpeakerRecord, FL_FR, LFE1, FC, BL_BR, BC, FLc_FRc, RLC_RRC, FLw_FRw, TpFL_TpFR, TpC, TpFC, LS_RS, LFE2,
              TpBC, SiL_SiR, TpSiL_TpSiR, TpBL_TpBR, BtFC, BtFL_BtFR, TpLS_TpRS)
REEDID_FIELDS(ColorimetryRecord, xvYCC601, xvYCC709, sYCC601, opYCC601, opRGB, BT2020cYCC, BT2020YCC, BT2020RGB,
              metadataProfiles, ICtCp, DCI_P3)
REEDID_FIELDS(VideoCapRecord, QY, QS, S_PT, S_IT, S_CE)
REEDID_FIELDS(H14bRecord, physAddr, supportsAI, DC_48bit, DC_36bit, DC_30bit, DC_Y444, DVI_Dual, max_TMDS_Clock,
              latencyPresent, iLatencyPresent, hdmiVideoPresent, cnc, videoLatency, audioLatency, iVideoLatency,
              iAudioLatency, imageSize, hdmiVicLen, hdmiVics)
REEDID_FIELDS(HfVsdbRecord, version, TMDS_Character_Rate, scdcPresent, rrCapable, ccbpci, lte340Scramble,
              independentView, dualView, osdDisparity3d, Max_FRL_Rate, dc48bit420, dc36bit420, dc30bit420, mDelta,
              cinemaVrr, cnmVrr, fva, allm, fapaStartLocation, VRRmax, VRRmin, DSC_1p2, dscNative420, dscAllBpp,
              dsc16bpc, dsc12bpc, dsc10bpc, DSC_Max_FRL_Rate, DSC_MaxSlices, DSC_TotalChunkKBytes)
REEDID_FIELDS(StaticHdrRecord, eotfSdr, eotfHdr, eotfPq, eotfHlg, staticMetadataType1, maxLuminance,
              maxFrameAvgLuminance, minLuminance)
REEDID_FIELDS(Cea20ByteDtdRecord, flagBit3, extraBytes, preferred, timing)
REEDID_FIELDS(AmdVsdbRecord, version, caps0, hdrValid, backlightControl, localDimming, replayPsrSwitch, replaySprs,
              panelReplay, extraValid, minRefresh, maxRefresh, mccsVcpCode, eotf0, eotf1, eotfPq, eotf3, eotfPqInterim,
              eotf5, panelType, maxLuminance1, minLuminance1, maxLuminance2, minLuminance2, extra24, extra19,
              extra19Valid, dpcdOffset, dpcdOffsetValid)
REEDID_FIELDS(NvidiaVsdbRecord, version, vrrMinRefresh)
REEDID_FIELDS(DolbyVisionRecord, version, size, yuv422_12bit, supports2160p60, globalDimming, colorimetryP3,
              backlightControl, backlightMinLuminance, interfaces, lowLatency, parity, rgb444, dmMajor, dmMinor,
              targetMinLuminance, targetMaxLuminance, targetMinPq, targetMaxPq, redX, redY, greenX, greenY, blueX,
              blueY, whiteX, whiteY)
REEDID_FIELDS(DolbyAudioRecord, version, centerZone, surroundZone, heightZone, headphoneOnly, matPcm48Only, unknownFlag)
REEDID_FIELDS(Hdr10PlusRecord, applicationVersion, fullFramePeakIndex, peakIndex)
REEDID_FIELDS(DynamicHdrEntry, type, flagCount, flags)
REEDID_FIELDS(DynamicHdrRecord, count, entries)
REEDID_FIELDS(H14b3dEntry, twoD_VIC_order, threeD_Structure, threeD_Detail)
REEDID_FIELDS(H14b3dRecord, physAddr, max_TMDS_Clock, supportsAI, DC_48bit, DC_36bit, DC_30bit, DC_Y444, DVI_Dual,
              latencyPresent, iLatencyPresent, hdmiVideoPresent, cnc, videoLatency, audioLatency, iVideoLatency,
              iAudioLatency, threeD_present, threeD_Multi_present, imageSize, hdmiVicLen, hdmiVics, entryCount, entries,
              threeD_Structure_ALL, threeD_MASK)
REEDID_FIELDS(HfScdsRecord, version, Max_FRL_Rate, TMDS_Character_Rate, scdcPresent, rrCapable, cableStatus, ccbpci,
              lte340Scramble, independentView, dualView, osdDisparity3d, UHD_VIC, dc48bit420, dc36bit420, dc30bit420,
              fapaEndExtended, QMS, mDelta, cinemaVrr, cnmVrr, fva, allm, fapaStartLocation, VRRmax, VRRmin, DSC_1p2,
              dscNative420, QMS_TFRmax, QMS_TFRmin, dscAllBpp, dsc16bpc, dsc12bpc, dsc10bpc, DSC_Max_FRL_Rate,
              DSC_MaxSlices, DSC_TotalChunkKBytes)
REEDID_FIELDS(ExtensionOverrideRecord, extensionBlocks)
REEDID_FIELDS(AudioFormat, formatCode, extFormatCode, channels, level, rate32k, rate44k1, rate48k, rate88k2, rate96k,
              rate176k4, rate192k, bits16, bits20, bits24, joc, jocAcmod28, dtsX, matObjects, matNoHash, frames1024,
              frames960, systemH, mpegSurroundExplicit, lowComplexityProfile, baselineProfile, formatDependent,
              maxBitrate)
REEDID_FIELDS(AudioFormatsRecord, count, formats)
REEDID_FIELDS(NativeResolutionRecord, width, height, reference, sizeUnit)
REEDID_FIELDS(FormatPreferenceRecord, count, references)
REEDID_FIELDS(InfoFrameEntry, type, oui, payloadLength, payload)
REEDID_FIELDS(InfoFrameRecord, additionalVendor, headerLength, header, count, entries)
REEDID_FIELDS(RoomRecord, displayPlace, locations, speakerCount, speakers, maxX, maxY, maxZ, displayX, displayY,
              displayZ)
REEDID_FIELDS(SpeakerLocationEntry, coordinates, active, channel, speakerId, x, y, z)
REEDID_FIELDS(SpeakerLocationRecord, count, entries)
REEDID_FIELDS(DispIdBlock, type, version, revision, productType, extensionCount, dataBlockCount, checksum,
              checksumValid, payloadUsed, sectionSize)
REEDID_FIELDS(DisplayParamsRecord, hImageSize, vImageSize, hPixels, vPixels, gammaX100, audio, separateAudio,
              audioOverride, powerManagement, fixedTiming, fixedPixelFormat, supportsAI, deinterlacing, aspectRatioX100,
              nativeColorDepth, overallColorDepth)
REEDID_FIELDS(DisplayParams20Record, sizeIn1mm, hImageSize, vImageSize, hPixels, vPixels, features, redX, redY, greenX,
              greenY, blueX, blueY, whiteX, whiteY, maxLuminanceFull, maxLuminance10, minLuminance, colorDepth,
              technology, gammaX100)
REEDID_FIELDS(DispIdRangeLimits, minPixelClock, maxPixelClock, minHRate, maxHRate, minHBlank, minVRate, maxVRate,
              minVBlank, interlaced, cvtStandard, cvtReduced, discreteFrequency, seamlessTransition)

REEDID_FIELDS(AudioFmtCap, lpcm, dts, dtsHd, dtsHdExt1, dtsHdExt2, dtsHdExt3, ac3, eac3, eac3Ext, mat, matExt)
REEDID_FIELDS(VdbRecord, nativeVic, vicCount, vics)
REEDID_FIELDS(Vic420Record, vicCount, vics)
REEDID_FIELDS(AdbRecord, sadCount, sads)
REEDID_FIELDS(TimingCodeRecord, codeType, reserved, twoByteCodes, codeCount)
REEDID_FIELDS(ProductIdRecord, manufacturerId, productCode, serialNumber, week, year, nameLength)

template <class JsonObject, reedid::document::Listed Record>
void to_json(JsonObject& json, const Record& record) {
  reedid::document::WriteJson(reedid::document::kRecordInfo<Record>, &record, json);
}

// Records with a buffer of the caller's.
template <class JsonObject>
void to_json(JsonObject& json, const TimingCodeRecord& record) {
  reedid::document::WriteJson(reedid::document::kRecordInfo<TimingCodeRecord>, &record, json);
  json["codes"] = std::vector<unsigned>(record.codes, record.codes + record.codeCount);
}
template <class JsonObject>
void to_json(JsonObject& json, const ProductIdRecord& record) {
  reedid::document::WriteJson(reedid::document::kRecordInfo<ProductIdRecord>, &record, json);
  json["name"] = std::string(record.name);
}
