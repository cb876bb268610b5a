/**
 * @file extensions.h
 * EDID extension blocks that hold one record, both of VESA: display information and video timings. The conventions are those of
 * reedid/image.h; reserved bits are left out, and a setter refuses what its getter would not give back.
 */
#ifndef REEDID_EXTENSIONS_H
#define REEDID_EXTENSIONS_H

#include <stdint.h>

#include "reedid/image.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Display Information Extension, EDID_EXTENSION_DISPLAY_INFO (VESA DI-EXT). */
typedef struct DisplayInfoRecord {
  uint16_t maxClock;        /**< MHz per link, 0 = not told */
  uint16_t crossover;       /**< MHz from which both links are in use, 65535 = single link */
  uint16_t vFrequency;      /**< 0.01 Hz, 0 = not told */
  uint16_t hFrequency;      /**< 0.01 kHz, 0 = not told */
  uint8_t version;          /**< 1 */
  uint8_t digitalInterface; /**< 0 analogue, 1 DVI, 2 DVI single link, 3 DVI dual link for high resolution, 4 for many
                                  colours, 5 DVI for consumers, 6 Plug & Display, 7 DFP, 8 OpenLDI single, 9 dual, 10 for
                                  consumers */
  uint8_t standardKind;     /**< `standard` is 0 nothing, 1 version and release, 2 a letter, 3 a date; 0..3 */
  uint8_t standard[4]; /**< 1: a.b, c.d; 2: the second; 3: year - 1990, month, day behind the first; the first 0..63 */
  uint8_t dataEnable;  /**< byte 7 bit 7 */
  uint8_t dataEnableHigh;    /**< byte 7 bit 6 */
  uint8_t clockEdge;         /**< 0 not told, 1 rising, 2 falling, 3 both */
  uint8_t hdcp;              /**< byte 7 bit 3 */
  uint8_t doubleClock;       /**< byte 7 bit 2 */
  uint8_t packetized;        /**< byte 7 bit 1 */
  uint8_t dataFormat;        /**< 0x15 8 over 8 bits, 0x19 12 over 12, 0x24 24, 0x48 and 0x49 48 bits */
  uint8_t minClock;          /**< MHz per link, 0 = not told */
  uint8_t subPixelLayout;    /**< 0 not told, 1 RGB, 2 BGR, 3 quad with green bottom left, 4 bottom right */
  uint8_t subPixelConfig;    /**< 1 delta, 2 stripe, 3 stripe with an offset, 4 quad */
  uint8_t subPixelShape;     /**< 1 round, 2 square, 3 rectangle, 4 oval, 5 ellipse */
  uint8_t hPitch;            /**< 0.01 mm */
  uint8_t vPitch;            /**< 0.01 mm */
  uint8_t fixedPixelFormat;  /**< byte 19 bit 7 */
  uint8_t viewDirection;     /**< 1 direct, 2 reflected, 3 both */
  uint8_t transparent;       /**< byte 19 bit 4 */
  uint8_t implementation;    /**< 1 for large groups, 2 desktop, 3 eyepiece */
  uint8_t ddcCi;             /**< byte 19 bit 1 */
  uint8_t legacyModes;       /**< all modes of VGA and DOS */
  uint8_t stereo;            /**< 0 none, 1 field sequential, 2 columns, 3 lines; 0..7 */
  uint8_t scaler;            /**< byte 20 bit 3 */
  uint8_t centering;         /**< byte 20 bit 2 */
  uint8_t conditionalUpdate; /**< byte 20 bit 1 */
  uint8_t interlaced;        /**< byte 20 bit 0 */
  uint8_t frameLock;         /**< byte 21 bit 7 */
  uint8_t rateConversion;    /**< 0 none, 1 vertical, 2 horizontal, 3 both */
  uint8_t orientationKind;   /**< 1 fixed, 2 pivots, this is its default, 3 pivots, this is how it stands; 0..3 */
  uint8_t portrait;          /**< byte 26 bit 5 */
  uint8_t zeroPixel;         /**< 0 upper left, 1 upper right, 2 lower left, 3 lower right */
  uint8_t scanDirection;     /**< 1 along the long axis, 2 along the short one; 0..3 */
  uint8_t projector;         /**< byte 26 bit 0 */
  uint8_t defaultColor;   /**< 1 BGR, 2..4 S-Video NTSC, PAL, SECAM, 5..7 YCrCb 4:4:4, 4:2:2, 4:2:0, 8 YCrCb SMPTE 260M,
                                  9 YPbPr 240M, 10 YCrCb 274M, 11 YPbPr 274M, 12 BetaCam, 13 M-2, 14 monochrome */
  uint8_t preferredColor; /**< 0 the default, 1 BGR, 2 S-Video, 3 Yxx, 4 monochrome */
  uint8_t colorCaps[14];  /**< flags in the order of defaultColor */
  uint8_t dithering;      /**< byte 31 bit 7 */
  uint8_t depthBGR[3];    /**< bits, 0 = none */
  uint8_t depthCbYCr[3];  /**< bits, 0 = none */
  uint8_t aspectFull;     /**< byte 38 bit 7: how another aspect ratio is shown */
  uint8_t aspectZoom;     /**< bit 6 */
  uint8_t aspectSqueeze;  /**< bit 5 */
  uint8_t aspectVariable; /**< bit 4 */
  uint8_t gammaKind;      /**< 0 none, 1 a white curve, 2 three curves; 0..3 */
  uint8_t gammaCount;     /**< of a curve, 0..63; the standard has up to 45, or up to 15 of three */
  uint8_t gamma[45];      /**< white, or blue, green and red with 15 each */
} DisplayInfoRecord;

/** Decodes an extension block of version 1. 0, or -1 when refused. */
REEDID_API int32_t EDID_GetDisplayInfo(const EdidBlock* block, DisplayInfoRecord* record);
/** Writes the block into `out` (bytes and capacity, 128 or more, given by the caller) with its checksum. */
REEDID_API int32_t EDID_SetDisplayInfo(const DisplayInfoRecord* record, EdidBlock* out);

/** Video Timing Block Extension, EDID_EXTENSION_VIDEO_TIMING (VESA VTB-EXT). */
typedef struct VideoTimingsRecord {
  uint8_t version;       /**< 1 */
  uint8_t dtdCount;      /**< detailed timings, 18 bytes each, 0..6: VESA_GetDTD of a slot with these bytes */
  uint8_t cvtCount;      /**< CVT codes, 3 bytes each as in a descriptor, 0..40 */
  uint8_t standardCount; /**< standard timings, 2 bytes each as in the base block, 0..61 */
  uint8_t items[122];    /**< the three lists one after another, as they stand; behind them 0 */
} VideoTimingsRecord;

/** Decodes an extension block of version 1 whose lists fit into it. 0, or -1 when refused. */
REEDID_API int32_t EDID_GetVideoTimings(const EdidBlock* block, VideoTimingsRecord* record);
/** Writes the block into `out` (bytes and capacity, 128 or more, given by the caller) with its checksum. */
REEDID_API int32_t EDID_SetVideoTimings(const VideoTimingsRecord* record, EdidBlock* out);

#ifdef __cplusplus
}
#endif

#endif
