/**
 * @file cea_vendor.h
 * data blocks of CTA-861 extensions that vendors define, and those about dynamic HDR. The conventions are those of
 * reedid/cea.h, and:
 *
 * - A getter refuses another vendor's block with "invalid OUI", and one of an unknown version or with a size that its
 * version does not have with "invalid parameters"; fields beyond the block's size are 0, reserved bits are left out.
 * - A setter refuses a record with a value that its field cannot hold, or that another version has, with "invalid
 * parameters", and writes nothing then. What it takes is what the getter gives for the block that it writes.
 */
#ifndef REEDID_CEA_VENDOR_H
#define REEDID_CEA_VENDOR_H

#include <stdint.h>

#include "reedid/cea.h"
#include "reedid/image.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * AMD FreeSync, CEA_TAG_VENDOR with REEDID_OUI_AMD. AMD publishes no layout: fields that are called unknown, and the
 * bits of the flags in a version that does not use them, are kept as they are. A luminance code c is 50 * 2^(c / 32)
 * cd/m2, of a minimum its maximum * (c / 255)^2 / 100.
 */
typedef struct AmdVsdbRecord {
  uint8_t version;          /**< 1, 2 or 3 */
  uint8_t caps0;            /**< byte 5 bit 0, unknown; nearly always set */
  uint8_t hdrValid;         /**< bit 1, versions 2 and 3: the fields from eotf0 to minLuminance2 hold data */
  uint8_t backlightControl; /**< bit 2, versions 2 and 3 */
  uint8_t localDimming;     /**< bit 3, versions 2 and 3 */
  uint8_t replayPsrSwitch;  /**< bit 4, unknown; probably changes between Panel Replay and self refresh */
  uint8_t replaySprs;       /**< bit 5, unknown; about Panel Replay */
  uint8_t panelReplay;      /**< bit 6, version 3 */
  uint8_t extraValid;       /**< bit 7, unknown; probably that extra24 holds data */
  uint8_t minRefresh;       /**< Hz */
  uint16_t maxRefresh;      /**< Hz, 0..255; version 3: 0..1023, which byte 7 repeats up to 240 */
  uint8_t mccsVcpCode;      /**< the MCCS code that switches it, 0 = none */
  uint8_t eotf0;            /**< byte 9 bit 0, unknown */
  uint8_t eotf1;            /**< bit 1, unknown */
  uint8_t eotfPq;           /**< bit 2, SMPTE ST 2084 */
  uint8_t eotf3;            /**< bit 3, unknown */
  uint8_t eotfPqInterim;    /**< bit 4, unknown; probably PQ before its final form */
  uint8_t eotf5;            /**< bit 5, unknown */
  uint8_t panelType;        /**< bits 7..6, version 3: 0 not told, 1 Mini-LED, 2 OLED */
  uint8_t maxLuminance1;    /**< code; at full backlight, with local dimming */
  uint8_t minLuminance1;    /**< code */
  uint8_t maxLuminance2;    /**< code; without local dimming or at the least backlight */
  uint8_t minLuminance2;    /**< code */
  uint32_t extra24;         /**< version 3, bytes 16..18, unknown; probably kHz */
  uint8_t extra19;          /**< version 3, byte 19 bits 6..0, unknown */
  uint8_t extra19Valid;     /**< its bit 7 */
  uint8_t dpcdOffset;      /**< version 3, byte 20 bits 6..0, unknown; probably where AMD's DisplayPort registers are */
  uint8_t dpcdOffsetValid; /**< its bit 7 */
} AmdVsdbRecord;

/** Decodes an AMD FreeSync block of 9 to 32 bytes. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetAmdVSDB(const CeaDataBlock* entry, AmdVsdbRecord* record);
/** Writes 9 bytes for version 1, 14 for version 2, and from 16 up to the last one that is not 0 for version 3. */
REEDID_API int32_t CEA_SetAmdVSDB(const AmdVsdbRecord* record, CeaDataBlock* entry);

/** NVIDIA G-SYNC, CEA_TAG_VENDOR with REEDID_OUI_NVIDIA. */
typedef struct NvidiaVsdbRecord {
  uint8_t version;       /**< 1 */
  uint8_t vrrMinRefresh; /**< Hz, the least of a variable refresh rate */
} NvidiaVsdbRecord;

/** Decodes an NVIDIA block of 6 bytes or more. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetNvidiaVSDB(const CeaDataBlock* entry, NvidiaVsdbRecord* record);
/** Encodes an NVIDIA block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetNvidiaVSDB(const NvidiaVsdbRecord* record, CeaDataBlock* entry);

/**
 * Dolby Vision, CEA_EXT_TAG_VENDOR_VIDEO with REEDID_OUI_DOLBY. Chromaticities have units of 1/4096; versions 1 and 2
 * hold multiples of 16 only, and in 12 bytes these ranges: red x 2560..3056, red y 1024..1520, green x 0..2032, green y
 * 2048..4080, blue x 512..624, blue y 128..240.
 */
typedef struct DolbyVisionRecord {
  uint8_t version;               /**< 0, 1 or 2 */
  uint8_t size;                  /**< bytes of the block: 26 for version 0, 15 or 12 for version 1, 12 for version 2 */
  uint8_t yuv422_12bit;          /**< YCbCr 4:2:2 with 12 bits */
  uint8_t supports2160p60;       /**< versions 0, 1; else up to 2160p30 */
  uint8_t globalDimming;         /**< global dimming */
  uint8_t colorimetryP3;         /**< version 1: 0 BT.709, 1 P3-D65 */
  uint8_t backlightControl;      /**< version 2 */
  uint8_t backlightMinLuminance; /**< version 2: 25, 50, 75 or 100 cd/m2 */
  uint8_t interfaces; /**< version 2: 0 low latency, 1 and over HDMI, 2 standard and low latency, 3 all of them */
  uint8_t lowLatency; /**< version 1 in 12 bytes: 0 standard, 1 standard and low latency */
  uint8_t parity;     /**< version 2, byte 7 bit 2: probably that formats above 60 Hz and 8K are taken */
  uint8_t rgb444;     /**< version 2, RGB and YCbCr 4:4:4 in low latency: 0 none, 1 10 bits, 2 12 bits */
  uint8_t dmMajor;    /**< display management version: 0..15; 2..9 for versions 1 and 2 */
  uint8_t dmMinor;    /**< version 0 */
  uint8_t targetMinLuminance; /**< version 1: code 0..127, (code / 127)^2 cd/m2 */
  uint8_t targetMaxLuminance; /**< version 1: code 0..127, 100 + 50 * code cd/m2 */
  uint16_t targetMinPq;       /**< 12-bit PQ code: any for version 0, 20 * (0..31) for version 2 */
  uint16_t targetMaxPq;       /**< 12-bit PQ code: any for version 0, 2055 + 65 * (0..31) for version 2 */
  uint16_t redX;              /**< chromaticity, and so on */
  uint16_t redY;              /**< 1/4096 */
  uint16_t greenX;            /**< 1/4096 */
  uint16_t greenY;            /**< 1/4096 */
  uint16_t blueX;             /**< 1/4096 */
  uint16_t blueY;             /**< 1/4096 */
  uint16_t whiteX;            /**< version 0, 1/4096 */
  uint16_t whiteY;            /**< version 0, 1/4096 */
} DolbyVisionRecord;

/** Version 2 may be longer than its 12 bytes, which are then read. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetDolbyVision(const CeaDataBlock* entry, DolbyVisionRecord* record);
/** Encodes a Dolby Vision block of `version` and `size`. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetDolbyVision(const DolbyVisionRecord* record, CeaDataBlock* entry);

/** Dolby audio, CEA_EXT_TAG_VENDOR_AUDIO with REEDID_OUI_DOLBY. */
typedef struct DolbyAudioRecord {
  uint8_t version;       /**< 1..8 */
  uint8_t centerZone;    /**< byte 5 bit 4: speakers in the centre */
  uint8_t surroundZone;  /**< bit 5: around */
  uint8_t heightZone;    /**< bit 6: above */
  uint8_t headphoneOnly; /**< bit 7 */
  uint8_t matPcm48Only;  /**< byte 6 bit 0: takes MAT with PCM at 48 kHz only, no TrueHD */
  uint8_t unknownFlag;   /**< byte 6 bit 7, which displays set and nobody explains; kept */
} DolbyAudioRecord;

/** Decodes a Dolby audio block of 6 to 32 bytes. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetDolbyAudio(const CeaDataBlock* entry, DolbyAudioRecord* record);
/** Writes 7 bytes, as nearly all displays have them. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetDolbyAudio(const DolbyAudioRecord* record, CeaDataBlock* entry);

/** HDR10+, CEA_EXT_TAG_VENDOR_VIDEO with REEDID_OUI_HDR10_PLUS. */
typedef struct Hdr10PlusRecord {
  uint8_t applicationVersion; /**< 0..3 */
  uint8_t fullFramePeakIndex; /**< of a full white frame, as part of the peak: 0 10 %, 1 20 %, 2 40 %, 3 80 % */
  uint8_t peakIndex;          /**< cd/m2: 1 200, 2 300, 3 400, 4 500, 5 600, 6 800, 7 1000, 8 1200, 9 1500, 10 2000,
                                   11 2500, 12 3000, 13 4000, 14 6000, 15 8000; 0 not told */
} Hdr10PlusRecord;

/** Decodes an HDR10+ block of 6 to 32 bytes. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetHdr10Plus(const CeaDataBlock* entry, Hdr10PlusRecord* record);
/** Encodes an HDR10+ block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetHdr10Plus(const Hdr10PlusRecord* record, CeaDataBlock* entry);

/** One kind of dynamic metadata (CTA-861, 7.5.14). */
typedef struct DynamicHdrEntry {
  uint16_t type;     /**< 1 ST 2094-10, 2 ETSI TS 103 433, 3 ST 2094-30, 4 ST 2094-40, 0x0100 graphics overlay */
  uint8_t flagCount; /**< bytes of flags, 0..27; the standard has 1, and none for type 3 */
  uint8_t flags[27]; /**< first byte: version 3..0; type 2: SL-HDR1 4, SL-HDR2 5, SL-HDR3 6 */
} DynamicHdrEntry;

/** HDR Dynamic Metadata Data Block, CEA_EXT_TAG_DYNAMIC_HDR (CTA-861, 7.5.14). */
typedef struct DynamicHdrRecord {
  uint16_t count;              /**< 0..10 */
  DynamicHdrEntry entries[10]; /**< the first `count` are used, the others 0 */
} DynamicHdrRecord;

/** Entries behind one without a type, or that reaches beyond the block, are left out. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetDynamicHDR(const CeaDataBlock* entry, DynamicHdrRecord* record);
/** Encodes an HDR Dynamic Metadata Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetDynamicHDR(const DynamicHdrRecord* record, CeaDataBlock* entry);

#ifdef __cplusplus
}
#endif

#endif
