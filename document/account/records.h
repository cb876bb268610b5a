// The library's records, each field listed once: tables that serve JSON in both directions, its schema, and tests. A key
// is the field's name in the header; fields stand in the header's order. What stands behind a pointer is not listed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "document/json.h"
#include "reedid/reedid.h"

namespace reedid::document {

enum class NumberType : uint8_t { kU8, kU16, kU32, kI8, kI16, kChar };

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
  static_assert(std::is_integral_v<Item> && (std::is_unsigned_v<Item> || sizeof(Item) <= 2), "no type of a field");
  if constexpr (std::is_same_v<Item, char>) return NumberType::kChar;
  if constexpr (sizeof(Item) == 1) return std::is_signed_v<Item> ? NumberType::kI8 : NumberType::kU8;
  if constexpr (sizeof(Item) == 2) return std::is_signed_v<Item> ? NumberType::kI16 : NumberType::kU16;
  return NumberType::kU32;
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
REEDID_FIELDS(AdaptiveSyncRange, minRefresh, maxRefresh, nativeRange, mode, noSeamless, increaseNoJitter,
              decreaseNoJitter, maxIncrease, maxDecrease, extra)
REEDID_FIELDS(AdaptiveSyncRecord, revision, descriptorSize, count, ranges)
REEDID_FIELDS(TiledDisplayRecord, tileWidth, tileHeight, serialNumber, productCode, pixelMultiplier, vendorId, revision,
              singleEnclosure, bezelPresent, someTilesBehavior, oneTileBehavior, hTiles, vTiles, hLocation, vLocation,
              bezelTop, bezelBottom, bezelRight, bezelLeft)
REEDID_FIELDS(ColorEotf, colorSpace, eotf)
REEDID_FIELDS(InterfaceFeaturesRecord, revision, rgbDepths, ycc444Depths, ycc422Depths, ycc420Depths, min420PixelRate,
              audio32k, audio44k1, audio48k, colorEotfs, additionalCount, additional)
REEDID_FIELDS(DisplayInterfaceRecord, revision, interfaceType, links, version, release, rgbDepths, ycc444Depths,
              ycc422Depths, contentProtection, protectionVersion, protectionRelease, spreadType, spreadPercent,
              attribute1, attribute2)
REEDID_FIELDS(ContainerIdRecord, revision, id)
REEDID_FIELDS(DispIdVendorRecord, revision, flags, vendor, length, data)
REEDID_FIELDS(VesaVendorRecord, dscBppX16, dscPresent, revision, structureType, nativeColor, overlapPixels, multiSst)
REEDID_FIELDS(ColorPoint, x, y)
REEDID_FIELDS(DispIdColorRecord, primaries, whites, standardColorSpace, revision, cie1976, transferId, temporal,
              primaryCount, whiteCount)
REEDID_FIELDS(DispIdTransferRecord, revision, identifier, firstIsWhite, individualCurves, fourParameters, length,
              curves)
REEDID_FIELDS(StereoRecord, revision, timingSupport, method, parameterCount, parameters, codeLength, codes)
REEDID_FIELDS(BrightnessRecord, minSdrLuminance, maxSdrLuminance, maxBoostLuminance, revision)
REEDID_FIELDS(DisplayDeviceRecord, nativeWidth, nativeHeight, aspectRatioX100, responseTime, hPitch, vPitch, revision,
              technology, operatingMode, backlightSwitchable, backlightDimmable, orientation, rotation, zeroPixel,
              scanDirection, subPixels, bitDepth, whiteToBlack)
REEDID_FIELDS(PowerSequencingRecord, revision, minT1, maxT1, maxT2, maxT3, minT4, minT5, minT6)
REEDID_FIELDS(HeadMountedRecord, rightFocal, leftFocal, rightCenterY, rightCenterX, leftCenterY, leftCenterX, rightX,
              rightY, leftX, leftY, width, height, rightLens, leftLens, interocularAngle, lensMin, lensRange, ipdOffset,
              ipdMin, ipdRange, hFov, rightFov, leftFov, revision, dualLayer, interleaveStacked, extendedMode, displays,
              streams, layers, layerMetadata, replication, rightRotation, leftRotation, lensAdjustable, lensMotion,
              lensDistance, ipdUseful, rightDisplay, leftDisplay, rightEye, leftEye, foveated, layer0Streams,
              layer1Streams)
REEDID_FIELDS(HeadMountedLayerRecord, serialNumber, productCode, vendorId, revision, layer, configurable, cropping,
              lensCorrection, lensConfigurable, gamma, degamma, mura, blankingData, reprojection,
              reprojectionSwitchable, scalings, scalingConfigurable, otherScaling, layerStreams)
REEDID_FIELDS(VesaDeviceRecord, maxClock, nativeWidth, nativeHeight, aspectRatioX100, primary4X, primary4Y, primary5X,
              primary5Y, primary6X, primary6Y, responseTime, audioDelay, interfaceType, channels, version, release,
              contentProtection, minClock, orientation, rotation, zeroPixel, scanDirection, subPixels, hPitch, vPitch,
              dithering, directDrive, noOverdrive, deinterlacing, audio, separateAudio, audioOverride, audioDelayTold,
              rateConversion, rateRange, nominalRate, interfaceDepth, displayDepth, extraPrimaries, whiteToBlack,
              hOverscan, vOverscan)
REEDID_FIELDS(VesaTransferRecord, curve, count, samples)
REEDID_FIELDS(VideoFormatEntry, rid, base50, rate24, base60, rate144, factors, rate48)
REEDID_FIELDS(VideoFormatsRecord, ycc420, fractionalPreferred, descriptorSize, count, entries)
REEDID_FIELDS(HdmiAudioFormat, formatCode, channels, rate32k, rate44k1, rate48k, rate88k2, rate96k, rate176k4, rate192k,
              bits16, bits20, bits24, formatDependent)
REEDID_FIELDS(HdmiAudioRecord, maxStreams, nonMixed, count, formats, speakers, LSd_RSd, speakerSystem)
REEDID_FIELDS(ToneMappingPoint, percent, peak)
REEDID_FIELDS(ToneMappingRecord, redX, redY, greenX, greenY, blueX, blueY, whiteX, whiteY, version, grdmSupport, drdm,
              hgigDrdm, useHgig, maxRgb, gamut, minBrightness10, peakBrightness100, pointCount, points)
REEDID_FIELDS(FilmmakerRecord, contentType, contentSubtype)
REEDID_FIELDS(MicrosoftVsdbRecord, version, desktopUsage, thirdPartyUsage, primaryUse, containerId)
REEDID_FIELDS(ProductInformationRecord, oui, version, length, name)
REEDID_FIELDS(DisplayInfoRecord, maxClock, crossover, vFrequency, hFrequency, version, digitalInterface, standardKind,
              standard, dataEnable, dataEnableHigh, clockEdge, hdcp, doubleClock, packetized, dataFormat, minClock,
              subPixelLayout, subPixelConfig, subPixelShape, hPitch, vPitch, fixedPixelFormat, viewDirection,
              transparent, implementation, ddcCi, legacyModes, stereo, scaler, centering, conditionalUpdate, interlaced,
              frameLock, rateConversion, orientationKind, portrait, zeroPixel, scanDirection, projector, defaultColor,
              preferredColor, colorCaps, dithering, depthBGR, depthCbYCr, aspectFull, aspectZoom, aspectSqueeze,
              aspectVariable, gammaKind, gammaCount, gamma)
REEDID_FIELDS(VideoTimingsRecord, version, dtdCount, cvtCount, standardCount, items)

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
