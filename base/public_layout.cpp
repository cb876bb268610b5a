// The layout of the public structures is part of the interface: sizes and key offsets, the same for every compiler.

#include <cstddef>

#include "reedid/reedid.h"

#define PIN(type, field, offset) static_assert(offsetof(type, field) == (offset), #type "." #field)

// Offsets behind a pointer differ with its size.
constexpr size_t kPointer = sizeof(void*);

static_assert(sizeof(EdidBlock) == (kPointer == 8 ? 16 : 12));
PIN(EdidBlock, capacity, 2);
PIN(EdidBlock, size, 4);
PIN(EdidBlock, bytes, 8);
static_assert(sizeof(EdidHandle) == 2 * kPointer);
PIN(EdidHandle, blocks, kPointer);

static_assert(sizeof(DtdTiming) == 36);
PIN(DtdTiming, hactive, 4);
PIN(DtdTiming, vactive, 12);
PIN(DtdTiming, hsyncPositive, 20);
PIN(DtdTiming, frameRate, 23);
PIN(DtdTiming, aspectRatio, 24);
PIN(DtdTiming, preferred, 26);
PIN(DtdTiming, hImageSize, 28);
PIN(DtdTiming, reservedFinal, 32);
static_assert(sizeof(DtdSlot) == 19);
PIN(DtdSlot, bytes, 1);
static_assert(sizeof(CvtTiming) == 16);
PIN(CvtTiming, hactive, 2);
PIN(CvtTiming, frameRate, 4);
PIN(CvtTiming, ycc420, 8);
PIN(CvtTiming, vactive, 12);
PIN(CvtTiming, extraBits75, 15);
static_assert(sizeof(StdTiming) == 6);
PIN(StdTiming, hactive, 2);
PIN(StdTiming, aspectRatio, 4);

PIN(VesaBlock, manufacturer, 8);
PIN(VesaBlock, productCode, 12);
PIN(VesaBlock, serialNumber, 16);
PIN(VesaBlock, year, 22);
PIN(VesaBlock, redX, 44);
PIN(VesaBlock, established, 60);
PIN(VesaBlock, standardTimings, 78);
PIN(VesaBlock, descriptors, 126);
PIN(VesaBlock, extensionCount, 202);
static_assert(sizeof(VesaBlock) == 208);
static_assert(sizeof(RangeLimits) == 44);
PIN(RangeLimits, maxPixelClock, 8);
PIN(RangeLimits, gtfStartFreq, 14);
PIN(RangeLimits, cvtVersionMajor, 21);
PIN(RangeLimits, cvtClockPrecision, 24);
PIN(RangeLimits, cvtAspect, 28);
PIN(RangeLimits, preferredRefresh, 41);
static_assert(sizeof(VesaCvtCode) == 10);
static_assert(sizeof(VesaCvtRecord) == 42);
PIN(VesaCvtRecord, codes, 2);
static_assert(sizeof(Est3Record) == 49);

static_assert(sizeof(CeaDataBlock) == (kPointer == 8 ? 16 : 8));
PIN(CeaDataBlock, size, 2);
PIN(CeaBlock, dataBlockCount, 7);
PIN(CeaBlock, dataBlocks, 8);
PIN(CeaBlock, dtds, 8 + 2 * kPointer);
PIN(CeaBlock, checksumValid, 8 + 3 * kPointer + 2);
static_assert(sizeof(VdbRecord) == 33);
static_assert(sizeof(SadRecord) == 15);
static_assert(sizeof(AdbRecord) == 151);
static_assert(sizeof(SpeakerRecord) == 20);
static_assert(sizeof(ColorimetryRecord) == 11);
static_assert(sizeof(VideoCapRecord) == 5);
static_assert(sizeof(Vic420Record) == 32);
static_assert(sizeof(H14bRecord) == 36);
PIN(H14bRecord, max_TMDS_Clock, 8);
PIN(H14bRecord, videoLatency, 18);
PIN(H14bRecord, hdmiVics, 26 + 2);
static_assert(sizeof(HfVsdbRecord) == 34);
PIN(HfVsdbRecord, TMDS_Character_Rate, 2);
PIN(HfVsdbRecord, Max_FRL_Rate, 11);
PIN(HfVsdbRecord, VRRmax, 22);
PIN(HfVsdbRecord, DSC_1p2, 25);
static_assert(sizeof(StaticHdrRecord) == 8);
static_assert(sizeof(Cea20ByteDtdRecord) == 40);
PIN(Cea20ByteDtdRecord, timing, 4);

static_assert(sizeof(DispIdDataBlock) == 4 + (kPointer == 8 ? 4 : 0) + kPointer);
PIN(DispIdBlock, dataBlocks, 8);
PIN(DispIdBlock, payloadUsed, 8 + kPointer + 2);
PIN(DispIdBlock, sectionSize, 8 + kPointer + 4);
PIN(ProductIdRecord, productCode, 4);
PIN(ProductIdRecord, serialNumber, 8);
PIN(ProductIdRecord, year, 14);
PIN(ProductIdRecord, nameLength, 16);
PIN(ProductIdRecord, name, kPointer == 8 ? 24 : 20);
static_assert(sizeof(DisplayParamsRecord) == 22);
PIN(DisplayParamsRecord, gammaX100, 8);
PIN(DisplayParamsRecord, audio, 10);
PIN(DisplayParamsRecord, aspectRatioX100, 18);
PIN(DisplayParamsRecord, overallColorDepth, 21);
static_assert(sizeof(DisplayParams20Record) == 44);
PIN(DisplayParams20Record, hImageSize, 4);
PIN(DisplayParams20Record, features, 16);
PIN(DisplayParams20Record, redX, 18);
PIN(DisplayParams20Record, maxLuminanceFull, 34);
PIN(DisplayParams20Record, technology, 41);
PIN(DisplayParams20Record, gammaX100, 42);
static_assert(sizeof(TimingCodeRecord) == (kPointer == 8 ? 16 : 8));
PIN(TimingCodeRecord, codeCount, 3);
static_assert(sizeof(DispIdRangeLimits) == 28);
PIN(DispIdRangeLimits, minHRate, 8);
PIN(DispIdRangeLimits, minVBlank, 18);
PIN(DispIdRangeLimits, interlaced, 20);
PIN(DispIdRangeLimits, seamlessTransition, 24);
