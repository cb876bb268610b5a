/**
 * @file cea_hdmi.h
 * data blocks of HDMI in full: the vendor-specific blocks with the fields that H14bRecord and HfVsdbRecord leave out,
 * and the blocks of HDMI 2.1 that stand beside them. Getters and setters are as in reedid/cea_vendor.h: what a setter
 * takes is what its getter gives.
 */
#ifndef REEDID_CEA_HDMI_H
#define REEDID_CEA_HDMI_H

#include <stdint.h>

#include "reedid/cea.h"
#include "reedid/image.h"

#ifdef __cplusplus
extern "C" {
#endif

/** A format that is taken in 3D (HDMI 1.4b, table 8-16 and table H-2). */
typedef struct H14b3dEntry {
  uint8_t twoD_VIC_order; /**< index of its video descriptor, 0..15 from the first of the EDID on */
  /** 0 frame packing, 1 field alternative, 2 line alternative, 3 side by side in full, 4 L and depth, 5 and graphics,
   * 6 top and bottom, 8 side by side in half; 0..15 */
  uint8_t threeD_Structure;
  uint8_t threeD_Detail; /**< structures 8..15: 0 all, 1 horizontal, 6 quincunx, 7..10 one of its kinds; 0..15 */
} H14b3dEntry;

/** HDMI 1.4b Vendor-Specific Data Block with its 3D part (HDMI 1.4b, table 8-16). */
typedef struct H14b3dRecord {
  uint16_t physAddr;        /**< CEC physical address, 0x1200 = 1.2.0.0 */
  uint16_t max_TMDS_Clock;  /**< MHz, multiples of 5 */
  uint8_t supportsAI;       /**< byte 6 bit 7 */
  uint8_t DC_48bit;         /**< byte 6 bit 6 */
  uint8_t DC_36bit;         /**< byte 6 bit 5 */
  uint8_t DC_30bit;         /**< byte 6 bit 4 */
  uint8_t DC_Y444;          /**< byte 6 bit 3 */
  uint8_t DVI_Dual;         /**< byte 6 bit 0 */
  uint8_t latencyPresent;   /**< byte 8 bit 7: videoLatency and audioLatency follow */
  uint8_t iLatencyPresent;  /**< byte 8 bit 6: so do those of interlaced formats, behind the others only */
  uint8_t hdmiVideoPresent; /**< byte 8 bit 5: all below follows */
  uint8_t cnc[4];           /**< content types: graphics, photo, cinema, game */
  uint8_t videoLatency;     /**< code: 0 not stated, 1..251 2 * (code - 1) ms, 255 no video; likewise below */
  uint8_t audioLatency;     /**< code */
  uint8_t iVideoLatency;    /**< code */
  uint8_t iAudioLatency;    /**< code */
  uint8_t threeD_present;   /**< takes the 3D formats that are mandatory */
  /** 0 no lists for all formats, 1 threeD_Structure_ALL, 2 threeD_MASK as well, 3 reserved */
  uint8_t threeD_Multi_present;
  uint8_t imageSize;       /**< what the base block's size means: 0 nothing, 1 aspect ratio, 2 cm, 3 5 cm */
  uint8_t hdmiVicLen;      /**< 0..7 */
  uint8_t hdmiVics[7];     /**< 1 = 2160p30, 2 = 2160p25, 3 = 2160p24, 4 = 4096x2160p24 */
  uint8_t entryCount;      /**< 0..31 */
  H14b3dEntry entries[31]; /**< the first entryCount are used, the others 0 */
  /** bit n: structure n, of the first 16 formats or those of threeD_MASK; bit 15 side by side in half, quincunx */
  uint16_t threeD_Structure_ALL;
  uint16_t threeD_MASK; /**< bit n: the video descriptor with index n */
} H14b3dRecord;

/** What the block or the length of its lists ends in is left out, with what announces it. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetH14b3D(const CeaDataBlock* entry, H14b3dRecord* record);
/** Up to the last byte that says something, 6 to 32 bytes; unlike CEA_SetH14bVSDB no value is reported. */
REEDID_API int32_t CEA_SetH14b3D(const H14b3dRecord* record, CeaDataBlock* entry);

/** The sink capability data structure of HDMI 2.1 (HDMI 2.1, table 10-6), which two kinds of block hold. */
typedef struct HfScdsRecord {
  uint8_t version;              /**< byte 4 */
  uint8_t Max_FRL_Rate;         /**< 0 none, 1 9G/3 lanes, 2 18G/3, 3 24G, 4 32G, 5 40G, 6 48G; 0..15 */
  uint16_t TMDS_Character_Rate; /**< MHz, multiples of 5; 0 = at most 340 */
  uint8_t scdcPresent;          /**< byte 6 bit 7 */
  uint8_t rrCapable;            /**< byte 6 bit 6 */
  uint8_t cableStatus;          /**< byte 6 bit 5 */
  uint8_t ccbpci;               /**< byte 6 bit 4 */
  uint8_t lte340Scramble;       /**< byte 6 bit 3 */
  uint8_t independentView;      /**< byte 6 bit 2 */
  uint8_t dualView;             /**< byte 6 bit 1 */
  uint8_t osdDisparity3d;       /**< byte 6 bit 0 */
  uint8_t UHD_VIC;              /**< byte 7 bit 3: takes the HDMI VICs by their CTA VICs, too */
  uint8_t dc48bit420;           /**< byte 7 bit 2 */
  uint8_t dc36bit420;           /**< byte 7 bit 1 */
  uint8_t dc30bit420;           /**< byte 7 bit 0 */
  uint8_t fapaEndExtended;      /**< byte 8 bit 7 */
  uint8_t QMS;                  /**< byte 8 bit 6: quick media switching */
  uint8_t mDelta;               /**< byte 8 bit 5 */
  uint8_t cinemaVrr;            /**< byte 8 bit 4, deprecated */
  uint8_t cnmVrr;               /**< byte 8 bit 3: takes negative M_VRR */
  uint8_t fva;                  /**< byte 8 bit 2 */
  uint8_t allm;                 /**< byte 8 bit 1 */
  uint8_t fapaStartLocation;    /**< byte 8 bit 0 */
  uint16_t VRRmax;              /**< Hz, 0..1023; the standard has 0 or 100 and more */
  uint8_t VRRmin;               /**< Hz, 0..63; the standard has up to 48 */
  uint8_t DSC_1p2;              /**< byte 11 bit 7 */
  uint8_t dscNative420;         /**< byte 11 bit 6 */
  uint8_t QMS_TFRmax;           /**< byte 11 bit 5 */
  uint8_t QMS_TFRmin;           /**< byte 11 bit 4 */
  uint8_t dscAllBpp;            /**< byte 11 bit 3 */
  uint8_t dsc16bpc;             /**< byte 11 bit 2 */
  uint8_t dsc12bpc;             /**< byte 11 bit 1 */
  uint8_t dsc10bpc;             /**< byte 11 bit 0 */
  uint8_t DSC_Max_FRL_Rate;     /**< as Max_FRL_Rate */
  uint8_t DSC_MaxSlices;        /**< code, 0..15 */
  uint8_t DSC_TotalChunkKBytes; /**< KiB, 1..64; 0 in a block that ends before it */
} HfScdsRecord;

/** The HDMI Forum VSDB with all its fields. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetHFVSDBScds(const CeaDataBlock* entry, HfScdsRecord* record);
/** Up to the last byte that says something, 8 to 14 bytes; unlike CEA_SetHFVSDB no value is reported. */
REEDID_API int32_t CEA_SetHFVSDBScds(const HfScdsRecord* record, CeaDataBlock* entry);

/** The HDMI Forum Sink Capability Data Block, CEA_EXT_TAG_SINK_CAPABILITY, that stands for the VSDB. */
REEDID_API int32_t CEA_GetHFSCDB(const CeaDataBlock* entry, HfScdsRecord* record);
/** As CEA_SetHFVSDBScds. */
REEDID_API int32_t CEA_SetHFSCDB(const HfScdsRecord* record, CeaDataBlock* entry);

/** HDMI Forum EDID Extension Override Data Block, CEA_EXT_TAG_EXTENSION_OVERRIDE (HDMI 2.1, 10.3.6). */
typedef struct ExtensionOverrideRecord {
  uint8_t extensionBlocks; /**< how many extension blocks there are, whatever the base block says */
} ExtensionOverrideRecord;

/** Decodes an Extension Override Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_GetHFEEODB(const CeaDataBlock* entry, ExtensionOverrideRecord* record);
/** Encodes an Extension Override Data Block. 0, or -1 when refused. */
REEDID_API int32_t CEA_SetHFEEODB(const ExtensionOverrideRecord* record, CeaDataBlock* entry);

#ifdef __cplusplus
}
#endif

#endif
