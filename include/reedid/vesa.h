/**
 * @file vesa.h
 * the EDID base block (VESA EDID 1.4, section 3): a decoded model of block 0 and the codecs of its
 * display descriptors. The conventions are those of reedid/image.h.
 */
#ifndef REEDID_VESA_H
#define REEDID_VESA_H

#include <stdint.h>

#include "reedid/image.h"
#include "reedid/timing.h"

#ifdef __cplusplus
extern "C" {
#endif

/** The base block in decoded units. "1.4 only" fields are 0 for any other version and not written for it. */
typedef struct VesaBlock {
  uint8_t header[8];            /**< bytes 0..7 */
  char manufacturer[4];         /**< bytes 8..9 as three letters 'A'..'Z', then 0 */
  uint16_t productCode;         /**< bytes 10..11 */
  uint32_t serialNumber;        /**< bytes 12..15 */
  uint8_t week;                 /**< byte 16: 1..54, 255 = `year` is a model year */
  uint16_t year;                /**< byte 17 + 1990 */
  uint8_t version;              /**< byte 18 */
  uint8_t revision;             /**< byte 19 */
  uint8_t digitalInput;         /**< byte 20 bit 7 */
  uint8_t bitDepth;             /**< bits per colour, 6..16, 0 = undefined (1.4 only) */
  uint8_t interfaceType;        /**< byte 20 bits 3..0 (1.4 only) */
  uint8_t hScreenSize;          /**< cm; 0 in 1.4 when bytes 21..22 hold an aspect ratio */
  uint8_t vScreenSize;          /**< cm */
  uint16_t aspectRatioX100;     /**< aspect ratio in hundredths (1.4 only); always written as landscape */
  uint16_t gammaX100;           /**< gamma in hundredths, 100..354; 0 = not stated */
  uint8_t standby;              /**< byte 24 bit 7 */
  uint8_t suspend;              /**< byte 24 bit 6 */
  uint8_t activeOff;            /**< byte 24 bit 5 */
  uint8_t colorType;            /**< byte 24 bits 4..3 (1.4 only) */
  uint8_t sRgbDefault;          /**< byte 24 bit 2 */
  uint8_t preferredNative;      /**< byte 24 bit 1 */
  uint8_t continuousFreq;       /**< byte 24 bit 0 */
  uint16_t redX;                /**< red, x, units of 1/1024 */
  uint16_t redY;                /**< red, y, units of 1/1024 */
  uint16_t greenX;              /**< green, x, units of 1/1024 */
  uint16_t greenY;              /**< green, y, units of 1/1024 */
  uint16_t blueX;               /**< blue, x, units of 1/1024 */
  uint16_t blueY;               /**< blue, y, units of 1/1024 */
  uint16_t whiteX;              /**< white point, x, units of 1/1024 */
  uint16_t whiteY;              /**< white point, y, units of 1/1024 */
  uint8_t established[17];      /**< flags by Est12ToDmt's index: bytes 35, 36 upwards, byte 37 bit 7 */
  StdTiming standardTimings[8]; /**< bytes 38..53 */
  DtdSlot descriptors[4];       /**< bytes 54..125 */
  uint8_t extensionCount;       /**< byte 126 */
  uint8_t checksum;             /**< byte 127 as read; not used for writing */
  uint8_t checksumValid;        /**< 1 the checksum was right when read */
} VesaBlock;

/**
 * Parses an EdidBlock of type EDID_BLOCK_VESA. Null for bad arguments, a wrong header ("error edid header") or no
 * memory. A wrong checksum is a warning. Close with VESA_Close, or free(): the model owns no other memory.
 */
REEDID_API VesaBlock* VESA_Open(const EdidBlock* block);
/** Frees a model. Null is ignored. */
REEDID_API void VESA_Close(VesaBlock* model);

/**
 * Writes the model into `out` (bytes and capacity of at least 128 given by the caller) with a fresh checksum. A wrong
 * header or a manufacturer that is not three letters A..Z is refused and leaves `out` cleared; a bad week, year or
 * standard timing is reported and written all the same.
 */
REEDID_API int32_t VESA_GenerateBlock(const VesaBlock* model, EdidBlock* out);

/** Removes descriptor `index` (0..3); later ones move up and slot 3 becomes empty. */
REEDID_API int32_t VESA_DeleteDescriptor(VesaBlock* model, uint32_t index);

/** Display range limits and timing descriptor, tag 0xFD (EDID 1.4, 3.10.3.3). */
typedef struct RangeLimits {
  uint16_t minVRate;           /**< Hz */
  uint16_t maxVRate;           /**< Hz */
  uint16_t minHRate;           /**< kHz */
  uint16_t maxHRate;           /**< kHz */
  uint32_t maxPixelClock;      /**< kHz, multiples of 10000 */
  uint8_t timingFormula;       /**< 0 GTF by default, 1 GTF with a second curve, 2 CVT, 3 none: limits only */
  uint16_t gtfStartFreq;       /**< kHz, start break frequency of the secondary curve */
  uint16_t gtfM;               /**< secondary GTF M */
  uint8_t gtfC;                /**< secondary GTF C */
  uint8_t gtfK;                /**< secondary GTF K */
  uint8_t gtfJ;                /**< secondary GTF J */
  uint8_t cvtVersionMajor;     /**< high nibble of byte 11 */
  uint8_t cvtVersionMinor;     /**< low nibble of byte 11 */
  uint16_t cvtClockPrecision;  /**< kHz, multiples of 250: additional precision of the maximum pixel clock */
  uint16_t cvtMaxHactive;      /**< pixels, multiples of 8 */
  uint8_t cvtAspect[6];        /**< supported aspects by AspectCode; entries 1 to 5 are used */
  uint8_t cvtPreferredAspect;  /**< an AspectCode; 15:9 is written but reads back as 4:3 */
  uint8_t cvtStandardBlanking; /**< byte 15 bit 3 */
  uint8_t cvtReducedBlanking;  /**< byte 15 bit 4 */
  uint8_t hShrink;             /**< byte 16 bit 7, display scaling support */
  uint8_t hStretch;            /**< bit 6 */
  uint8_t vShrink;             /**< bit 5 */
  uint8_t vStretch;            /**< bit 4 */
  uint8_t preferredRefresh;    /**< Hz */
} RangeLimits;

/** One CVT 3-byte code (EDID 1.4, 3.10.3.8). */
typedef struct VesaCvtCode {
  uint16_t lines;        /**< vertical active lines, even; 0 = unused entry */
  uint8_t aspectRatio;   /**< ASPECT_4_3, ASPECT_16_9, ASPECT_16_10 or ASPECT_5_3 */
  uint8_t preferredRate; /**< Hz: 50, 60, 75 or 85 */
  uint8_t rate50;        /**< 50 Hz with standard blanking supported */
  uint8_t rate60;        /**< 60 Hz with standard blanking */
  uint8_t rate75;        /**< 75 Hz with standard blanking */
  uint8_t rate85;        /**< 85 Hz with standard blanking */
  uint8_t rate60rb;      /**< 60 Hz with reduced blanking */
} VesaCvtCode;

/** CVT 3-byte codes as a descriptor (EDID_DESCRIPTOR_CVT_CODES). */
typedef struct VesaCvtRecord {
  uint8_t version;      /**< 1 */
  VesaCvtCode codes[4]; /**< in order of preference */
} VesaCvtRecord;

/** Established timings III descriptor, tag 0xF7 (EDID 1.4, 3.10.3.9). */
typedef struct Est3Record {
  uint8_t version;   /**< 10 */
  uint8_t flags[48]; /**< flag i is the timing Est3ToDmt(128 + i) */
} Est3Record;

/**
 * Text descriptors: serial number 0xFF, data string 0xFE, product name 0xFC. A getter needs the slot's flag to be the
 * tag and a buffer of 14 bytes or more; it copies up to 13 characters, up to a line feed, and ends them with 0. A
 * setter overwrites the slot with at most 13 characters, a line feed and spaces behind a shorter text.
 */
REEDID_API int32_t VESA_GetSerialNumber(const DtdSlot* slot, char* text, uint32_t textSize);
/** Makes the slot a serial number of at most 13 characters. 0, or -1 when refused. */
REEDID_API int32_t VESA_SetSerialNumber(const char* text, DtdSlot* slot);
/** Reads the data string into `text`. 0, or -1 when refused. */
REEDID_API int32_t VESA_GetDataString(const DtdSlot* slot, char* text, uint32_t textSize);
/** Makes the slot a data string of at most 13 characters. 0, or -1 when refused. */
REEDID_API int32_t VESA_SetDataString(const char* text, DtdSlot* slot);
/** Reads the product name into `text`. 0, or -1 when refused. */
REEDID_API int32_t VESA_GetProductName(const DtdSlot* slot, char* text, uint32_t textSize);
/** Makes the slot a product name of at most 13 characters. 0, or -1 when refused. */
REEDID_API int32_t VESA_SetProductName(const char* text, DtdSlot* slot);

/**
 * Range limits; the model tells the EDID version (rate offsets and CVT fields exist in 1.4 only) and, for the setter,
 * whether continuous frequencies are supported (a formula without that is a warning). A formula above 3 is reported and
 * written as "range limits only".
 */
REEDID_API int32_t VESA_GetRangeLimits(const VesaBlock* model, const DtdSlot* slot, RangeLimits* limits);
/** Encodes range limits for a block of this model. 0, or -1 when refused. */
REEDID_API int32_t VESA_SetRangeLimits(const VesaBlock* model, const RangeLimits* limits, DtdSlot* slot);

/**
 * Six further standard timings, tag 0xFA (EDID 1.4, 3.10.3.6). `timings` is an array of six. The setter keeps five
 * bits of the rate: what is above 91 Hz comes back as another rate.
 */
REEDID_API int32_t VESA_GetStandardTimings(const DtdSlot* slot, StdTiming* timings);
/** Encodes six standard timings. 0, or -1 when refused. */
REEDID_API int32_t VESA_SetStandardTimings(const StdTiming* timings, DtdSlot* slot);

/**
 * CVT 3-byte codes, tag 0xF8. The setter fails on a preferred rate other than 50, 60, 75 or 85 Hz, with the codes
 * before it and the first two bytes of that code written.
 */
REEDID_API int32_t VESA_GetCvtTiming(const DtdSlot* slot, VesaCvtRecord* record);
/** Encodes CVT 3-byte codes. 0, or -1 when refused. */
REEDID_API int32_t VESA_SetCvtTiming(const VesaCvtRecord* record, DtdSlot* slot);

/** Established timings III, tag 0xF7. */
REEDID_API int32_t VESA_GetEst3Timing(const DtdSlot* slot, Est3Record* record);
/** Encodes established timings III. 0, or -1 when refused. */
REEDID_API int32_t VESA_SetEst3Timing(const Est3Record* record, DtdSlot* slot);

#ifdef __cplusplus
}
#endif

#endif
