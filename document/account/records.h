// The library's records as JSON objects. A key is the field's name in the header; fields stand in the header's order.
#pragma once

#include <nlohmann/json.hpp>

#include "reedid/reedid.h"

#ifndef REEDID_TO_JSON  // tests make more of the same lists
#define REEDID_TO_JSON(Type, ...)                                            \
  template <class JsonObject>                                                \
  void to_json(JsonObject& nlohmann_json_j, const Type& nlohmann_json_t) {   \
    NLOHMANN_JSON_EXPAND(NLOHMANN_JSON_PASTE(NLOHMANN_JSON_TO, __VA_ARGS__)) \
  }
#endif

REEDID_TO_JSON(DtdTiming, pixelClock, hactive, hblank, hfrontPorch, hsyncWidth, vactive, vblank, vfrontPorch,
               vsyncWidth, hsyncPositive, vsyncPositive, interlaced, frameRate, aspectRatio, preferred, hImageSize,
               vImageSize)
REEDID_TO_JSON(CvtTiming, formula, aspectRatio, hactive, frameRate, interlaced, preferred, ycc420, flagA, flagB,
               vactive, extraBits42, extraBits75)
REEDID_TO_JSON(StdTiming, valid, frameRate, hactive, aspectRatio)
REEDID_TO_JSON(RangeLimits, minVRate, maxVRate, minHRate, maxHRate, maxPixelClock, timingFormula, gtfStartFreq, gtfM,
               gtfC, gtfK, gtfJ, cvtVersionMajor, cvtVersionMinor, cvtClockPrecision, cvtMaxHactive, cvtAspect,
               cvtPreferredAspect, cvtStandardBlanking, cvtReducedBlanking, hShrink, hStretch, vShrink, vStretch,
               preferredRefresh)
REEDID_TO_JSON(VesaCvtCode, lines, aspectRatio, preferredRate, rate50, rate60, rate75, rate85, rate60rb)
REEDID_TO_JSON(VesaCvtRecord, version, codes)
REEDID_TO_JSON(Est3Record, version, flags)
REEDID_TO_JSON(VesaBlock, manufacturer, productCode, serialNumber, week, year, version, revision, digitalInput,
               bitDepth, interfaceType, hScreenSize, vScreenSize, aspectRatioX100, gammaX100, standby, suspend,
               activeOff, colorType, sRgbDefault, preferredNative, continuousFreq, redX, redY, greenX, greenY, blueX,
               blueY, whiteX, whiteY, established, standardTimings, extensionCount, checksum, checksumValid)
REEDID_TO_JSON(CeaBlock, revision, dtdOffset, underscan, basicAudio, ycbcr444, ycbcr422, nativeDtdCount, dataBlockCount,
               dtdCount, checksum, freeSpace, checksumValid)
REEDID_TO_JSON(SadRecord, formatCode, extFormatCode, channels, rate32k, rate44k1, rate48k, rate88k2, rate96k, rate176k4,
               rate192k, bits16, bits20, bits24, maxBitrate, formatDependent)
REEDID_TO_JSON(SpeakerRecord, FL_FR, LFE1, FC, BL_BR, BC, FLc_FRc, RLC_RRC, FLw_FRw, TpFL_TpFR, TpC, TpFC, LS_RS, LFE2,
               TpBC, SiL_SiR, TpSiL_TpSiR, TpBL_TpBR, BtFC, BtFL_BtFR, TpLS_TpRS)
REEDID_TO_JSON(ColorimetryRecord, xvYCC601, xvYCC709, sYCC601, opYCC601, opRGB, BT2020cYCC, BT2020YCC, BT2020RGB,
               metadataProfiles, ICtCp, DCI_P3)
REEDID_TO_JSON(VideoCapRecord, QY, QS, S_PT, S_IT, S_CE)
REEDID_TO_JSON(H14bRecord, physAddr, supportsAI, DC_48bit, DC_36bit, DC_30bit, DC_Y444, DVI_Dual, max_TMDS_Clock,
               latencyPresent, iLatencyPresent, hdmiVideoPresent, cnc, videoLatency, audioLatency, iVideoLatency,
               iAudioLatency, imageSize, hdmiVicLen, hdmiVics)
REEDID_TO_JSON(HfVsdbRecord, version, TMDS_Character_Rate, scdcPresent, rrCapable, ccbpci, lte340Scramble,
               independentView, dualView, osdDisparity3d, Max_FRL_Rate, dc48bit420, dc36bit420, dc30bit420, mDelta,
               cinemaVrr, cnmVrr, fva, allm, fapaStartLocation, VRRmax, VRRmin, DSC_1p2, dscNative420, dscAllBpp,
               dsc16bpc, dsc12bpc, dsc10bpc, DSC_Max_FRL_Rate, DSC_MaxSlices, DSC_TotalChunkKBytes)
REEDID_TO_JSON(StaticHdrRecord, eotfSdr, eotfHdr, eotfPq, eotfHlg, staticMetadataType1, maxLuminance,
               maxFrameAvgLuminance, minLuminance)
REEDID_TO_JSON(Cea20ByteDtdRecord, flagBit3, extraBytes, preferred, timing)
REEDID_TO_JSON(AmdVsdbRecord, version, caps0, hdrValid, backlightControl, localDimming, replayPsrSwitch, replaySprs,
               panelReplay, extraValid, minRefresh, maxRefresh, mccsVcpCode, eotf0, eotf1, eotfPq, eotf3, eotfPqInterim,
               eotf5, panelType, maxLuminance1, minLuminance1, maxLuminance2, minLuminance2, extra24, extra19,
               extra19Valid, dpcdOffset, dpcdOffsetValid)
REEDID_TO_JSON(NvidiaVsdbRecord, version, vrrMinRefresh)
REEDID_TO_JSON(DolbyVisionRecord, version, size, yuv422_12bit, supports2160p60, globalDimming, colorimetryP3,
               backlightControl, backlightMinLuminance, interfaces, lowLatency, parity, rgb444, dmMajor, dmMinor,
               targetMinLuminance, targetMaxLuminance, targetMinPq, targetMaxPq, redX, redY, greenX, greenY, blueX,
               blueY, whiteX, whiteY)
REEDID_TO_JSON(DolbyAudioRecord, version, centerZone, surroundZone, heightZone, headphoneOnly, matPcm48Only,
               unknownFlag)
REEDID_TO_JSON(Hdr10PlusRecord, applicationVersion, fullFramePeakIndex, peakIndex)
REEDID_TO_JSON(DynamicHdrEntry, type, flagCount, flags)
REEDID_TO_JSON(DynamicHdrRecord, count, entries)
REEDID_TO_JSON(H14b3dEntry, twoD_VIC_order, threeD_Structure, threeD_Detail)
REEDID_TO_JSON(H14b3dRecord, physAddr, max_TMDS_Clock, supportsAI, DC_48bit, DC_36bit, DC_30bit, DC_Y444, DVI_Dual,
               latencyPresent, iLatencyPresent, hdmiVideoPresent, cnc, videoLatency, audioLatency, iVideoLatency,
               iAudioLatency, threeD_present, threeD_Multi_present, imageSize, hdmiVicLen, hdmiVics, entryCount,
               entries, threeD_Structure_ALL, threeD_MASK)
REEDID_TO_JSON(HfScdsRecord, version, Max_FRL_Rate, TMDS_Character_Rate, scdcPresent, rrCapable, cableStatus, ccbpci,
               lte340Scramble, independentView, dualView, osdDisparity3d, UHD_VIC, dc48bit420, dc36bit420, dc30bit420,
               fapaEndExtended, QMS, mDelta, cinemaVrr, cnmVrr, fva, allm, fapaStartLocation, VRRmax, VRRmin, DSC_1p2,
               dscNative420, QMS_TFRmax, QMS_TFRmin, dscAllBpp, dsc16bpc, dsc12bpc, dsc10bpc, DSC_Max_FRL_Rate,
               DSC_MaxSlices, DSC_TotalChunkKBytes)
REEDID_TO_JSON(ExtensionOverrideRecord, extensionBlocks)
REEDID_TO_JSON(AudioFormat, formatCode, extFormatCode, channels, level, rate32k, rate44k1, rate48k, rate88k2, rate96k,
               rate176k4, rate192k, bits16, bits20, bits24, joc, jocAcmod28, dtsX, matObjects, matNoHash, frames1024,
               frames960, systemH, mpegSurroundExplicit, lowComplexityProfile, baselineProfile, formatDependent,
               maxBitrate)
REEDID_TO_JSON(AudioFormatsRecord, count, formats)
REEDID_TO_JSON(NativeResolutionRecord, width, height, reference, sizeUnit)
REEDID_TO_JSON(FormatPreferenceRecord, count, references)
REEDID_TO_JSON(InfoFrameEntry, type, oui, payloadLength, payload)
REEDID_TO_JSON(InfoFrameRecord, additionalVendor, headerLength, header, count, entries)
REEDID_TO_JSON(RoomRecord, displayPlace, locations, speakerCount, speakers, maxX, maxY, maxZ, displayX, displayY,
               displayZ)
REEDID_TO_JSON(SpeakerLocationEntry, coordinates, active, channel, speakerId, x, y, z)
REEDID_TO_JSON(SpeakerLocationRecord, count, entries)
REEDID_TO_JSON(DispIdBlock, type, version, revision, productType, extensionCount, dataBlockCount, checksum,
               checksumValid, payloadUsed, sectionSize)
REEDID_TO_JSON(DisplayParamsRecord, hImageSize, vImageSize, hPixels, vPixels, gammaX100, audio, separateAudio,
               audioOverride, powerManagement, fixedTiming, fixedPixelFormat, supportsAI, deinterlacing,
               aspectRatioX100, nativeColorDepth, overallColorDepth)
REEDID_TO_JSON(DisplayParams20Record, sizeIn1mm, hImageSize, vImageSize, hPixels, vPixels, features, redX, redY, greenX,
               greenY, blueX, blueY, whiteX, whiteY, maxLuminanceFull, maxLuminance10, minLuminance, colorDepth,
               technology, gammaX100)
REEDID_TO_JSON(DispIdRangeLimits, minPixelClock, maxPixelClock, minHRate, maxHRate, minHBlank, minVRate, maxVRate,
               minVBlank, interlaced, cvtStandard, cvtReduced, discreteFrequency, seamlessTransition)

REEDID_TO_JSON(AudioFmtCap, lpcm, dts, dtsHd, dtsHdExt1, dtsHdExt2, dtsHdExt3, ac3, eac3, eac3Ext, mat, matExt)

// Records whose arrays are in use up to a count.
template <class JsonObject>
void to_json(JsonObject& json, const VdbRecord& record) {
  json["nativeVic"] = record.nativeVic;
  json["vicCount"] = record.vicCount;
  json["vics"] = std::vector<unsigned>(record.vics, record.vics + record.vicCount);
}
template <class JsonObject>
void to_json(JsonObject& json, const Vic420Record& record) {
  json["vicCount"] = record.vicCount;
  json["vics"] = std::vector<unsigned>(record.vics, record.vics + record.vicCount);
}
template <class JsonObject>
void to_json(JsonObject& json, const AdbRecord& record) {
  json["sadCount"] = record.sadCount;
  json["sads"] = std::vector<SadRecord>(record.sads, record.sads + record.sadCount);
}
template <class JsonObject>
void to_json(JsonObject& json, const TimingCodeRecord& record) {
  json["codeType"] = record.codeType;
  json["reserved"] = record.reserved;
  json["twoByteCodes"] = record.twoByteCodes;
  json["codeCount"] = record.codeCount;
  json["codes"] = std::vector<unsigned>(record.codes, record.codes + record.codeCount);
}
template <class JsonObject>
void to_json(JsonObject& json, const ProductIdRecord& record) {
  json["manufacturerId"] = record.manufacturerId;
  json["productCode"] = record.productCode;
  json["serialNumber"] = record.serialNumber;
  json["week"] = record.week;
  json["year"] = record.year;
  json["nameLength"] = record.nameLength;
  json["name"] = std::string(record.name);
}
