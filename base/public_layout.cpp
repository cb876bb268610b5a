// The layout of the public structures is part of the interface, the same for every compiler. A line of PIN has a run of
// fields of one size, each behind the one before, and where the run begins; a line of SIZE ends a structure. Every field
// of every structure stands here: the exports test compares the names with the headers.

#include <cstddef>
#include <initializer_list>

#include "reedid/reedid.h"

namespace {

struct Place {
  size_t offset, size;
};

constexpr bool IsRun(size_t offset, size_t size, std::initializer_list<Place> fields) {
  for (const Place& field : fields) {
    if (field.offset != offset || field.size != size) return false;
    offset += size;
  }
  return true;
}

constexpr size_t kPointer = sizeof(void*);

// The preprocessor's loop over a list of up to 64 names.
#define PLACE(type, field) Place{offsetof(type, field), sizeof(type::field)},
#define AGAIN(...) AGAIN3(AGAIN3(AGAIN3(AGAIN3(__VA_ARGS__))))
#define AGAIN3(...) AGAIN2(AGAIN2(AGAIN2(AGAIN2(__VA_ARGS__))))
#define AGAIN2(...) AGAIN1(AGAIN1(AGAIN1(AGAIN1(__VA_ARGS__))))
#define AGAIN1(...) __VA_ARGS__
#define PARENTHESES ()
#define FOR_EACH(type, field, ...) PLACE(type, field) __VA_OPT__(FOR_EACH_LATER PARENTHESES(type, __VA_ARGS__))
#define FOR_EACH_LATER() FOR_EACH
#define PIN(type, offset, size, ...) \
  static_assert(IsRun(offset, size, {AGAIN(FOR_EACH(type, __VA_ARGS__))}), #type ": " #__VA_ARGS__)
#define SIZE(type, size) static_assert(sizeof(type) == (size), #type)

// NOLINTBEGIN(bugprone-sizeof-expression): some fields are pointers
PIN(EdidBlock, 0, 1, type);
PIN(EdidBlock, 2, 2, capacity, size);
PIN(EdidBlock, 8, kPointer, bytes);
SIZE(EdidBlock, 8 + kPointer);
PIN(EdidHandle, 0, 1, blockCount);
PIN(EdidHandle, kPointer, kPointer, blocks);
SIZE(EdidHandle, 2 * kPointer);

PIN(DtdTiming, 0, 4, pixelClock);
PIN(DtdTiming, 4, 2, hactive, hblank, hfrontPorch, hsyncWidth, vactive, vblank, vfrontPorch, vsyncWidth);
PIN(DtdTiming, 20, 1, hsyncPositive, vsyncPositive, interlaced, frameRate);
PIN(DtdTiming, 24, 2, aspectRatio);
PIN(DtdTiming, 26, 1, preferred, reserved);
PIN(DtdTiming, 28, 2, hImageSize, vImageSize);
PIN(DtdTiming, 32, 4, reservedFinal);
SIZE(DtdTiming, 36);
PIN(DtdSlot, 0, 1, flag);
PIN(DtdSlot, 1, 18, bytes);
SIZE(DtdSlot, 19);
PIN(CvtTiming, 0, 1, formula, aspectRatio);
PIN(CvtTiming, 2, 2, hactive, frameRate);
PIN(CvtTiming, 6, 1, interlaced, preferred, ycc420, flagA, flagB);
PIN(CvtTiming, 12, 2, vactive);
PIN(CvtTiming, 14, 1, extraBits42, extraBits75);
SIZE(CvtTiming, 16);
PIN(StdTiming, 0, 1, valid, frameRate);
PIN(StdTiming, 2, 2, hactive);
PIN(StdTiming, 4, 1, aspectRatio);
SIZE(StdTiming, 6);

PIN(OfferedTiming, 0, 36, timing);
PIN(OfferedTiming, 36, 4, rate, vTotalHalfLines);
PIN(OfferedTiming, 44, 2, offset, index);
PIN(OfferedTiming, 48, 1, block, container, dataBlock, variant, source, vic, dmt, hdmiVic, hBorder, vBorder, ycc420,
    native);
SIZE(OfferedTiming, 60);

PIN(VesaBlock, 0, 8, header);
PIN(VesaBlock, 8, 4, manufacturer);
PIN(VesaBlock, 12, 2, productCode);
PIN(VesaBlock, 16, 4, serialNumber);
PIN(VesaBlock, 20, 1, week);
PIN(VesaBlock, 22, 2, year);
PIN(VesaBlock, 24, 1, version, revision, digitalInput, bitDepth, interfaceType, hScreenSize, vScreenSize);
PIN(VesaBlock, 32, 2, aspectRatioX100, gammaX100);
PIN(VesaBlock, 36, 1, standby, suspend, activeOff, colorType, sRgbDefault, preferredNative, continuousFreq);
PIN(VesaBlock, 44, 2, redX, redY, greenX, greenY, blueX, blueY, whiteX, whiteY);
PIN(VesaBlock, 60, 17, established);
PIN(VesaBlock, 78, 48, standardTimings);
PIN(VesaBlock, 126, 76, descriptors);
PIN(VesaBlock, 202, 1, extensionCount, checksum, checksumValid);
SIZE(VesaBlock, 208);
PIN(RangeLimits, 0, 2, minVRate, maxVRate, minHRate, maxHRate);
PIN(RangeLimits, 8, 4, maxPixelClock);
PIN(RangeLimits, 12, 1, timingFormula);
PIN(RangeLimits, 14, 2, gtfStartFreq, gtfM);
PIN(RangeLimits, 18, 1, gtfC, gtfK, gtfJ, cvtVersionMajor, cvtVersionMinor);
PIN(RangeLimits, 24, 2, cvtClockPrecision, cvtMaxHactive);
PIN(RangeLimits, 28, 6, cvtAspect);
PIN(RangeLimits, 34, 1, cvtPreferredAspect, cvtStandardBlanking, cvtReducedBlanking, hShrink, hStretch, vShrink,
    vStretch, preferredRefresh);
SIZE(RangeLimits, 44);
PIN(VesaCvtCode, 0, 2, lines);
PIN(VesaCvtCode, 2, 1, aspectRatio, preferredRate, rate50, rate60, rate75, rate85, rate60rb);
SIZE(VesaCvtCode, 10);
PIN(VesaCvtRecord, 0, 1, version);
PIN(VesaCvtRecord, 2, 40, codes);
SIZE(VesaCvtRecord, 42);
PIN(Est3Record, 0, 1, version);
PIN(Est3Record, 1, 48, flags);
SIZE(Est3Record, 49);

PIN(CeaDataBlock, 0, 1, tag, extTag, size);
PIN(CeaDataBlock, kPointer, kPointer, bytes);
SIZE(CeaDataBlock, 2 * kPointer);
PIN(CeaBlock, 0, 1, revision, dtdOffset, underscan, basicAudio, ycbcr444, ycbcr422, nativeDtdCount, dataBlockCount);
PIN(CeaBlock, 8, kPointer, dataBlocks);
PIN(CeaBlock, 8 + kPointer, 1, dtdCount);
PIN(CeaBlock, 8 + 2 * kPointer, kPointer, dtds);
PIN(CeaBlock, 8 + 3 * kPointer, 1, checksum, freeSpace, checksumValid);
SIZE(CeaBlock, 8 + 4 * kPointer);
PIN(VdbRecord, 0, 1, nativeVic, vicCount);
PIN(VdbRecord, 2, 31, vics);
SIZE(VdbRecord, 33);
PIN(SadRecord, 0, 1, formatCode, extFormatCode, channels, rate32k, rate44k1, rate48k, rate88k2, rate96k, rate176k4,
    rate192k, bits16, bits20, bits24, maxBitrate, formatDependent);
SIZE(SadRecord, 15);
PIN(AdbRecord, 0, 1, sadCount);
PIN(AdbRecord, 1, 150, sads);
SIZE(AdbRecord, 151);
PIN(SpeakerRecord, 0, 1, FL_FR, LFE1, FC, BL_BR, BC, FLc_FRc, RLC_RRC, FLw_FRw, TpFL_TpFR, TpC, TpFC, LS_RS, LFE2, TpBC,
    SiL_SiR, TpSiL_TpSiR, TpBL_TpBR, BtFC, BtFL_BtFR, TpLS_TpRS);
SIZE(SpeakerRecord, 20);
PIN(ColorimetryRecord, 0, 1, xvYCC601, xvYCC709, sYCC601, opYCC601, opRGB, BT2020cYCC, BT2020YCC, BT2020RGB,
    metadataProfiles, ICtCp, DCI_P3);
SIZE(ColorimetryRecord, 11);
PIN(VideoCapRecord, 0, 1, QY, QS, S_PT, S_IT, S_CE);
SIZE(VideoCapRecord, 5);
PIN(Vic420Record, 0, 1, vicCount);
PIN(Vic420Record, 1, 31, vics);
SIZE(Vic420Record, 32);
PIN(H14bRecord, 0, 2, physAddr);
PIN(H14bRecord, 2, 1, supportsAI, DC_48bit, DC_36bit, DC_30bit, DC_Y444, DVI_Dual);
PIN(H14bRecord, 8, 2, max_TMDS_Clock);
PIN(H14bRecord, 10, 1, latencyPresent, iLatencyPresent, hdmiVideoPresent);
PIN(H14bRecord, 13, 4, cnc);
PIN(H14bRecord, 18, 2, videoLatency, audioLatency, iVideoLatency, iAudioLatency);
PIN(H14bRecord, 26, 1, imageSize, hdmiVicLen);
PIN(H14bRecord, 28, 8, hdmiVics);
SIZE(H14bRecord, 36);
PIN(HfVsdbRecord, 0, 1, version);
PIN(HfVsdbRecord, 2, 2, TMDS_Character_Rate);
PIN(HfVsdbRecord, 4, 1, scdcPresent, rrCapable, ccbpci, lte340Scramble, independentView, dualView, osdDisparity3d,
    Max_FRL_Rate, dc48bit420, dc36bit420, dc30bit420, mDelta, cinemaVrr, cnmVrr, fva, allm, fapaStartLocation);
PIN(HfVsdbRecord, 22, 2, VRRmax);
PIN(HfVsdbRecord, 24, 1, VRRmin, DSC_1p2, dscNative420, dscAllBpp, dsc16bpc, dsc12bpc, dsc10bpc, DSC_Max_FRL_Rate,
    DSC_MaxSlices, DSC_TotalChunkKBytes);
SIZE(HfVsdbRecord, 34);
PIN(StaticHdrRecord, 0, 1, eotfSdr, eotfHdr, eotfPq, eotfHlg, staticMetadataType1, maxLuminance, maxFrameAvgLuminance,
    minLuminance);
SIZE(StaticHdrRecord, 8);
PIN(Cea20ByteDtdRecord, 0, 1, flagBit3, extraBytes, preferred);
PIN(Cea20ByteDtdRecord, 4, 36, timing);
SIZE(Cea20ByteDtdRecord, 40);
PIN(AmdVsdbRecord, 0, 1, version, caps0, hdrValid, backlightControl, localDimming, replayPsrSwitch, replaySprs,
    panelReplay, extraValid, minRefresh);
PIN(AmdVsdbRecord, 10, 2, maxRefresh);
PIN(AmdVsdbRecord, 12, 1, mccsVcpCode, eotf0, eotf1, eotfPq, eotf3, eotfPqInterim, eotf5, panelType, maxLuminance1,
    minLuminance1, maxLuminance2, minLuminance2);
PIN(AmdVsdbRecord, 24, 4, extra24);
PIN(AmdVsdbRecord, 28, 1, extra19, extra19Valid, dpcdOffset, dpcdOffsetValid);
SIZE(AmdVsdbRecord, 32);
PIN(NvidiaVsdbRecord, 0, 1, version, vrrMinRefresh);
SIZE(NvidiaVsdbRecord, 2);
PIN(DolbyVisionRecord, 0, 1, version, size, yuv422_12bit, supports2160p60, globalDimming, colorimetryP3,
    backlightControl, backlightMinLuminance, interfaces, lowLatency, parity, rgb444, dmMajor, dmMinor,
    targetMinLuminance, targetMaxLuminance);
PIN(DolbyVisionRecord, 16, 2, targetMinPq, targetMaxPq, redX, redY, greenX, greenY, blueX, blueY, whiteX, whiteY);
SIZE(DolbyVisionRecord, 36);
PIN(DolbyAudioRecord, 0, 1, version, centerZone, surroundZone, heightZone, headphoneOnly, matPcm48Only, unknownFlag);
SIZE(DolbyAudioRecord, 7);
PIN(Hdr10PlusRecord, 0, 1, applicationVersion, fullFramePeakIndex, peakIndex);
SIZE(Hdr10PlusRecord, 3);
PIN(DynamicHdrEntry, 0, 2, type);
PIN(DynamicHdrEntry, 2, 1, flagCount);
PIN(DynamicHdrEntry, 3, 27, flags);
SIZE(DynamicHdrEntry, 30);
PIN(DynamicHdrRecord, 0, 2, count);
PIN(DynamicHdrRecord, 2, 300, entries);
SIZE(DynamicHdrRecord, 302);
PIN(H14b3dEntry, 0, 1, twoD_VIC_order, threeD_Structure, threeD_Detail);
SIZE(H14b3dEntry, 3);
PIN(H14b3dRecord, 0, 2, physAddr, max_TMDS_Clock);
PIN(H14b3dRecord, 4, 1, supportsAI, DC_48bit, DC_36bit, DC_30bit, DC_Y444, DVI_Dual, latencyPresent, iLatencyPresent,
    hdmiVideoPresent);
PIN(H14b3dRecord, 13, 4, cnc);
PIN(H14b3dRecord, 17, 1, videoLatency, audioLatency, iVideoLatency, iAudioLatency, threeD_present, threeD_Multi_present,
    imageSize, hdmiVicLen);
PIN(H14b3dRecord, 25, 7, hdmiVics);
PIN(H14b3dRecord, 32, 1, entryCount);
PIN(H14b3dRecord, 33, 93, entries);
PIN(H14b3dRecord, 126, 2, threeD_Structure_ALL, threeD_MASK);
SIZE(H14b3dRecord, 130);
PIN(HfScdsRecord, 0, 1, version, Max_FRL_Rate);
PIN(HfScdsRecord, 2, 2, TMDS_Character_Rate);
PIN(HfScdsRecord, 4, 1, scdcPresent, rrCapable, cableStatus, ccbpci, lte340Scramble, independentView, dualView,
    osdDisparity3d, UHD_VIC, dc48bit420, dc36bit420, dc30bit420, fapaEndExtended, QMS, mDelta, cinemaVrr, cnmVrr, fva,
    allm, fapaStartLocation);
PIN(HfScdsRecord, 24, 2, VRRmax);
PIN(HfScdsRecord, 26, 1, VRRmin, DSC_1p2, dscNative420, QMS_TFRmax, QMS_TFRmin, dscAllBpp, dsc16bpc, dsc12bpc, dsc10bpc,
    DSC_Max_FRL_Rate, DSC_MaxSlices, DSC_TotalChunkKBytes);
SIZE(HfScdsRecord, 38);
PIN(ExtensionOverrideRecord, 0, 1, extensionBlocks);
SIZE(ExtensionOverrideRecord, 1);
PIN(AudioFormat, 0, 1, formatCode, extFormatCode, channels, level, rate32k, rate44k1, rate48k, rate88k2, rate96k,
    rate176k4, rate192k, bits16, bits20, bits24, joc, jocAcmod28, dtsX, matObjects, matNoHash, frames1024, frames960,
    systemH, mpegSurroundExplicit, lowComplexityProfile, baselineProfile, formatDependent);
PIN(AudioFormat, 26, 2, maxBitrate);
SIZE(AudioFormat, 28);
PIN(AudioFormatsRecord, 0, 2, count);
PIN(AudioFormatsRecord, 2, 280, formats);
SIZE(AudioFormatsRecord, 282);
PIN(NativeResolutionRecord, 0, 2, width, height);
PIN(NativeResolutionRecord, 4, 1, reference, sizeUnit);
SIZE(NativeResolutionRecord, 6);
PIN(FormatPreferenceRecord, 0, 1, count);
PIN(FormatPreferenceRecord, 1, 30, references);
SIZE(FormatPreferenceRecord, 31);
PIN(InfoFrameEntry, 0, 1, type);
PIN(InfoFrameEntry, 1, 3, oui);
PIN(InfoFrameEntry, 4, 1, payloadLength);
PIN(InfoFrameEntry, 5, 7, payload);
SIZE(InfoFrameEntry, 12);
PIN(InfoFrameRecord, 0, 1, additionalVendor, headerLength);
PIN(InfoFrameRecord, 2, 7, header);
PIN(InfoFrameRecord, 9, 1, count);
PIN(InfoFrameRecord, 10, 336, entries);
SIZE(InfoFrameRecord, 346);
PIN(RoomRecord, 0, 1, displayPlace, locations, speakerCount);
PIN(RoomRecord, 3, 20, speakers);
PIN(RoomRecord, 23, 1, maxX, maxY, maxZ, displayX, displayY, displayZ);
SIZE(RoomRecord, 29);
PIN(SpeakerLocationEntry, 0, 1, coordinates, active, channel, speakerId, x, y, z);
SIZE(SpeakerLocationEntry, 7);
PIN(SpeakerLocationRecord, 0, 1, count);
PIN(SpeakerLocationRecord, 1, 105, entries);
SIZE(SpeakerLocationRecord, 106);

PIN(DispIdDataBlock, 0, 1, tag, revision, headerFlags, size);
PIN(DispIdDataBlock, kPointer, kPointer, bytes);
SIZE(DispIdDataBlock, 2 * kPointer);
PIN(DispIdBlock, 0, 1, type, version, revision, productType, extensionCount, dataBlockCount);
PIN(DispIdBlock, 8, kPointer, dataBlocks);
PIN(DispIdBlock, 8 + kPointer, 1, checksum, checksumValid, payloadUsed);
PIN(DispIdBlock, 12 + kPointer, 2, sectionSize);
SIZE(DispIdBlock, 16 + kPointer);
PIN(ProductIdRecord, 0, 3, manufacturerId);
PIN(ProductIdRecord, 4, 2, productCode);
PIN(ProductIdRecord, 8, 4, serialNumber);
PIN(ProductIdRecord, 12, 1, week);
PIN(ProductIdRecord, 14, 2, year, nameLength);
PIN(ProductIdRecord, 16 + kPointer, kPointer, name);
SIZE(ProductIdRecord, 16 + 2 * kPointer);
PIN(DisplayParamsRecord, 0, 2, hImageSize, vImageSize, hPixels, vPixels, gammaX100);
PIN(DisplayParamsRecord, 10, 1, audio, separateAudio, audioOverride, powerManagement, fixedTiming, fixedPixelFormat,
    supportsAI, deinterlacing);
PIN(DisplayParamsRecord, 18, 2, aspectRatioX100);
PIN(DisplayParamsRecord, 20, 1, nativeColorDepth, overallColorDepth);
SIZE(DisplayParamsRecord, 22);
PIN(DisplayParams20Record, 0, 1, sizeIn1mm);
PIN(DisplayParams20Record, 4, 4, hImageSize, vImageSize);
PIN(DisplayParams20Record, 12, 2, hPixels, vPixels);
PIN(DisplayParams20Record, 16, 1, features);
PIN(DisplayParams20Record, 18, 2, redX, redY, greenX, greenY, blueX, blueY, whiteX, whiteY, maxLuminanceFull,
    maxLuminance10, minLuminance);
PIN(DisplayParams20Record, 40, 1, colorDepth, technology);
PIN(DisplayParams20Record, 42, 2, gammaX100);
SIZE(DisplayParams20Record, 44);
PIN(TimingCodeRecord, 0, 1, codeType, reserved, twoByteCodes, codeCount);
PIN(TimingCodeRecord, kPointer, kPointer, codes);
SIZE(TimingCodeRecord, 2 * kPointer);
PIN(DispIdRangeLimits, 0, 4, minPixelClock, maxPixelClock);
PIN(DispIdRangeLimits, 8, 2, minHRate, maxHRate, minHBlank, minVRate, maxVRate, minVBlank);
PIN(DispIdRangeLimits, 20, 1, interlaced, cvtStandard, cvtReduced, discreteFrequency, seamlessTransition);
SIZE(DispIdRangeLimits, 28);
PIN(AdaptiveSyncRange, 0, 2, minRefresh, maxRefresh);
PIN(AdaptiveSyncRange, 4, 1, nativeRange, mode, noSeamless, increaseNoJitter, decreaseNoJitter, maxIncrease,
    maxDecrease);
PIN(AdaptiveSyncRange, 11, 7, extra);
SIZE(AdaptiveSyncRange, 18);
PIN(AdaptiveSyncRecord, 0, 1, revision, descriptorSize);
PIN(AdaptiveSyncRecord, 2, 2, count);
PIN(AdaptiveSyncRecord, 4, 738, ranges);
SIZE(AdaptiveSyncRecord, 742);
PIN(TiledDisplayRecord, 0, 4, tileWidth, tileHeight, serialNumber);
PIN(TiledDisplayRecord, 12, 2, productCode, pixelMultiplier);
PIN(TiledDisplayRecord, 16, 3, vendorId);
PIN(TiledDisplayRecord, 19, 1, revision, singleEnclosure, bezelPresent, someTilesBehavior, oneTileBehavior, hTiles,
    vTiles, hLocation, vLocation, bezelTop, bezelBottom, bezelRight, bezelLeft);
SIZE(TiledDisplayRecord, 32);
PIN(ColorEotf, 0, 1, colorSpace, eotf);
SIZE(ColorEotf, 2);
PIN(InterfaceFeaturesRecord, 0, 1, revision, rgbDepths, ycc444Depths, ycc422Depths, ycc420Depths, min420PixelRate,
    audio32k, audio44k1, audio48k, colorEotfs, additionalCount);
PIN(InterfaceFeaturesRecord, 11, 14, additional);
SIZE(InterfaceFeaturesRecord, 25);
PIN(DisplayInterfaceRecord, 0, 1, revision, interfaceType, links, version, release, rgbDepths, ycc444Depths,
    ycc422Depths, contentProtection, protectionVersion, protectionRelease, spreadType, spreadPercent, attribute1,
    attribute2);
SIZE(DisplayInterfaceRecord, 15);
PIN(ContainerIdRecord, 0, 1, revision);
PIN(ContainerIdRecord, 1, 16, id);
SIZE(ContainerIdRecord, 17);
PIN(DispIdVendorRecord, 0, 1, revision, flags);
PIN(DispIdVendorRecord, 2, 3, vendor);
PIN(DispIdVendorRecord, 5, 1, length);
PIN(DispIdVendorRecord, 6, 245, data);
SIZE(DispIdVendorRecord, 251);
PIN(VesaVendorRecord, 0, 2, dscBppX16);
PIN(VesaVendorRecord, 2, 1, dscPresent, revision, structureType, nativeColor, overlapPixels, multiSst);
SIZE(VesaVendorRecord, 8);
PIN(ColorPoint, 0, 2, x, y);
SIZE(ColorPoint, 4);
PIN(DispIdColorRecord, 0, 28, primaries);
PIN(DispIdColorRecord, 28, 60, whites);
PIN(DispIdColorRecord, 88, 2, standardColorSpace);
PIN(DispIdColorRecord, 90, 1, revision, cie1976, transferId, temporal, primaryCount, whiteCount);
SIZE(DispIdColorRecord, 96);
PIN(DispIdTransferRecord, 0, 1, revision, identifier, firstIsWhite, individualCurves, fourParameters, length);
PIN(DispIdTransferRecord, 6, 247, curves);
SIZE(DispIdTransferRecord, 253);
PIN(StereoRecord, 0, 1, revision, timingSupport, method, parameterCount);
PIN(StereoRecord, 4, 246, parameters);
PIN(StereoRecord, 250, 1, codeLength);
PIN(StereoRecord, 251, 246, codes);
SIZE(StereoRecord, 497);
PIN(BrightnessRecord, 0, 2, minSdrLuminance, maxSdrLuminance, maxBoostLuminance, revision);
SIZE(BrightnessRecord, 8);
PIN(DisplayDeviceRecord, 0, 4, nativeWidth, nativeHeight);
PIN(DisplayDeviceRecord, 8, 2, aspectRatioX100, responseTime, hPitch, vPitch);
PIN(DisplayDeviceRecord, 16, 1, revision, technology, operatingMode, backlightSwitchable, backlightDimmable,
    orientation, rotation, zeroPixel, scanDirection, subPixels, bitDepth, whiteToBlack);
SIZE(DisplayDeviceRecord, 28);
PIN(PowerSequencingRecord, 0, 1, revision, minT1, maxT1, maxT2, maxT3, minT4, minT5, minT6);
SIZE(PowerSequencingRecord, 8);
PIN(HeadMountedRecord, 0, 4, rightFocal, leftFocal, rightCenterY, rightCenterX, leftCenterY, leftCenterX);
PIN(HeadMountedRecord, 24, 2, rightX, rightY, leftX, leftY, width, height, rightLens, leftLens, interocularAngle,
    lensMin, lensRange, ipdOffset, ipdMin, ipdRange, hFov);
PIN(HeadMountedRecord, 54, 8, rightFov);
PIN(HeadMountedRecord, 62, 8, leftFov);
PIN(HeadMountedRecord, 70, 1, revision, dualLayer, interleaveStacked, extendedMode, displays, streams, layers,
    layerMetadata, replication, rightRotation, leftRotation, lensAdjustable, lensMotion, lensDistance, ipdUseful,
    rightDisplay, leftDisplay, rightEye, leftEye, foveated, layer0Streams, layer1Streams);
SIZE(HeadMountedRecord, 92);
PIN(HeadMountedLayerRecord, 0, 4, serialNumber);
PIN(HeadMountedLayerRecord, 4, 2, productCode);
PIN(HeadMountedLayerRecord, 6, 3, vendorId);
PIN(HeadMountedLayerRecord, 9, 1, revision, layer, configurable, cropping, lensCorrection, lensConfigurable, gamma,
    degamma, mura, blankingData, reprojection, reprojectionSwitchable, scalings, scalingConfigurable);
PIN(HeadMountedLayerRecord, 23, 4, otherScaling);
PIN(HeadMountedLayerRecord, 27, 1, layerStreams);
SIZE(HeadMountedLayerRecord, 28);
PIN(VesaDeviceRecord, 0, 2, maxClock, nativeWidth, nativeHeight, aspectRatioX100, primary4X, primary4Y, primary5X,
    primary5Y, primary6X, primary6Y, responseTime, audioDelay);
PIN(VesaDeviceRecord, 24, 1, interfaceType, channels, version, release, contentProtection, minClock, orientation,
    rotation, zeroPixel, scanDirection, subPixels, hPitch, vPitch, dithering, directDrive, noOverdrive, deinterlacing,
    audio, separateAudio, audioOverride, audioDelayTold, rateConversion, rateRange, nominalRate, interfaceDepth,
    displayDepth, extraPrimaries, whiteToBlack, hOverscan, vOverscan);
SIZE(VesaDeviceRecord, 54);
PIN(VesaTransferRecord, 0, 1, curve, count);
PIN(VesaTransferRecord, 2, 64, samples);
SIZE(VesaTransferRecord, 66);
PIN(VideoFormatEntry, 0, 1, rid, base50, rate24, base60, rate144, factors, rate48);
SIZE(VideoFormatEntry, 7);
PIN(VideoFormatsRecord, 0, 1, ycc420, fractionalPreferred, descriptorSize, count);
PIN(VideoFormatsRecord, 4, 210, entries);
SIZE(VideoFormatsRecord, 214);
PIN(HdmiAudioFormat, 0, 1, formatCode, channels, rate32k, rate44k1, rate48k, rate88k2, rate96k, rate176k4, rate192k,
    bits16, bits20, bits24, formatDependent);
SIZE(HdmiAudioFormat, 13);
PIN(HdmiAudioRecord, 0, 1, maxStreams, nonMixed, count);
PIN(HdmiAudioRecord, 3, 78, formats);
PIN(HdmiAudioRecord, 81, 20, speakers);
PIN(HdmiAudioRecord, 101, 1, LSd_RSd, speakerSystem);
SIZE(HdmiAudioRecord, 103);
PIN(ToneMappingPoint, 0, 1, percent, peak);
SIZE(ToneMappingPoint, 2);
PIN(ToneMappingRecord, 0, 2, redX, redY, greenX, greenY, blueX, blueY, whiteX, whiteY);
PIN(ToneMappingRecord, 16, 1, version, grdmSupport, drdm, hgigDrdm, useHgig, maxRgb, gamut, minBrightness10,
    peakBrightness100, pointCount);
PIN(ToneMappingRecord, 26, 8, points);
SIZE(ToneMappingRecord, 34);
PIN(FilmmakerRecord, 0, 1, contentType, contentSubtype);
SIZE(FilmmakerRecord, 2);
PIN(MicrosoftVsdbRecord, 0, 1, version, desktopUsage, thirdPartyUsage, primaryUse);
PIN(MicrosoftVsdbRecord, 4, 16, containerId);
SIZE(MicrosoftVsdbRecord, 20);
PIN(ProductInformationRecord, 0, 3, oui);
PIN(ProductInformationRecord, 3, 1, version, length);
PIN(ProductInformationRecord, 5, 26, name);
SIZE(ProductInformationRecord, 31);
PIN(DisplayInfoRecord, 0, 2, maxClock, crossover, vFrequency, hFrequency);
PIN(DisplayInfoRecord, 8, 1, version, digitalInterface, standardKind);
PIN(DisplayInfoRecord, 11, 4, standard);
PIN(DisplayInfoRecord, 15, 1, dataEnable, dataEnableHigh, clockEdge, hdcp, doubleClock, packetized, dataFormat,
    minClock, subPixelLayout, subPixelConfig, subPixelShape, hPitch, vPitch, fixedPixelFormat, viewDirection,
    transparent, implementation, ddcCi, legacyModes, stereo, scaler, centering, conditionalUpdate, interlaced,
    frameLock, rateConversion, orientationKind, portrait, zeroPixel, scanDirection, projector, defaultColor,
    preferredColor);
PIN(DisplayInfoRecord, 48, 14, colorCaps);
PIN(DisplayInfoRecord, 62, 1, dithering);
PIN(DisplayInfoRecord, 63, 3, depthBGR);
PIN(DisplayInfoRecord, 66, 3, depthCbYCr);
PIN(DisplayInfoRecord, 69, 1, aspectFull, aspectZoom, aspectSqueeze, aspectVariable, gammaKind, gammaCount);
PIN(DisplayInfoRecord, 75, 45, gamma);
SIZE(DisplayInfoRecord, 120);
PIN(VideoTimingsRecord, 0, 1, version, dtdCount, cvtCount, standardCount);
PIN(VideoTimingsRecord, 4, 122, items);
SIZE(VideoTimingsRecord, 126);

PIN(AudioFmtCap, 0, 1, lpcm, dts, dtsHd, dtsHdExt1, dtsHdExt2, dtsHdExt3, ac3, eac3, eac3Ext, mat, matExt);
SIZE(AudioFmtCap, 11);
PIN(EdidLink, 0, 4, maxTmdsClock, maxPixelClock);
PIN(EdidLink, 8, 1, maxFrlRate, ycc420, dsc, dvi, maxBitsPerColour);
PIN(EdidLink, 14, 2, maxWidth, maxHeight);
PIN(EdidLink, 20, 4, maxRate);
PIN(EdidLink, 24, kPointer, rates);
PIN(EdidLink, 24 + kPointer, 4, rateCount);
SIZE(EdidLink, 24 + 2 * kPointer);
// NOLINTEND(bugprone-sizeof-expression)

}  // namespace
