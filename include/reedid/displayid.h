/**
 * @file displayid.h
 * Sections of DisplayID, versions 1.x and 2.0, alone or within an EDID extension: an editable model of a section's
 * data blocks and the codecs of single blocks. DispID_ is DisplayID 1.x, DispID20_ is 2.0; where a form exists in
 * both, only the tag and the clock unit differ. The conventions are those of reedid/image.h, and for codecs:
 *
 * - A getter needs the entry's bytes, its tag and a size that holds what it reads; it never reads past `size`.
 * - A setter fills an entry whose `bytes` the caller supplies (251 bytes hold every data block): tag, revision,
 *   headerFlags, size and the whole block with its 3-byte header. Hand the entry to DispID_AddDB or DispID_ReplaceDB.
 */
#ifndef REEDID_DISPLAYID_H
#define REEDID_DISPLAYID_H

#include <stdint.h>

#include "reedid/image.h"
#include "reedid/timing.h"

#ifdef __cplusplus
extern "C" {
#endif

/** One data block of a section. */
typedef struct DispIdDataBlock {
  uint8_t tag;         /**< byte 0 */
  uint8_t revision;    /**< byte 1 bits 2..0 */
  uint8_t headerFlags; /**< byte 1 bits 7..3 */
  uint8_t size;        /**< bytes with the 3-byte header */
  uint8_t* bytes;      /**< the whole block; inside a model a heap copy owned by it (null if it could not be had) */
} DispIdDataBlock;

/** A section (DisplayID 1.3, table 2-1; DisplayID 2.0, table 2-1). */
typedef struct DispIdBlock {
  uint8_t type;                /**< EDID_BLOCK_DISPID_FIRST, _NEXT or _EXT */
  uint8_t version;             /**< 1 for DisplayID 1.x, 2 for 2.0 */
  uint8_t revision;            /**< byte 0 bits 3..0 */
  uint8_t productType;         /**< byte 2 bits 3..0; 2.0 primary use cases 2..15 stand as 0x12..0x1F */
  uint8_t extensionCount;      /**< byte 3 */
  uint8_t dataBlockCount;      /**< entries of dataBlocks */
  DispIdDataBlock* dataBlocks; /**< owned; null when there is no data block, which cannot be generated */
  uint8_t checksum;            /**< the section's checksum as read */
  uint8_t checksumValid;       /**< 1 the checksum (and, inside an EDID, the block's) was right when read */
  uint8_t payloadUsed;         /**< bytes of all data blocks with their headers */
  uint16_t sectionSize;        /**< bytes of the section: payload + 5, at most 256 (126 inside an EDID) */
} DispIdBlock;

/**
 * Parses a section. Null for bad arguments, "invalid block type", "error version" (version 0) and no memory. A wrong
 * checksum, or a length beyond the block, is warned of, and the rest read. When memory runs out over the
 * bytes of an entry ("malloc fail"), the model has a gap there: ask DispID_IsComplete before you generate it.
 */
REEDID_API DispIdBlock* DispID_Open(const EdidBlock* block);
/** Frees a model, its entries and their bytes. Null is ignored. */
REEDID_API void DispID_Close(DispIdBlock* model);

/**
 * Whether a model has the bytes of all its data blocks: 1, or 0 for one that DispID_Open had too little memory for.
 * Generating such a model loses what it lacks. 0 with "invalid parameters" for null.
 */
REEDID_API int32_t DispID_IsComplete(const DispIdBlock* model);

/**
 * Writes the section into `out` (bytes and capacity given by the caller: 128 for an extension, else sectionSize) with
 * fresh checksums. Data blocks that do not fit are reported and left out; the call still succeeds. What a model without
 * all its memory lacks is left out without a word (DispID_IsComplete).
 */
REEDID_API int32_t DispID_GenerateBlock(const DispIdBlock* model, EdidBlock* out);

/** Inserts a copy of `entry` at min(index, count). "not enough space" when the section has too little room. */
REEDID_API int32_t DispID_AddDB(DispIdBlock* model, const DispIdDataBlock* entry, uint32_t index);

/** Removes the entry at this address; another address changes nothing and is no error. */
REEDID_API int32_t DispID_DeleteDB(DispIdBlock* model, const DispIdDataBlock* entry);

/** Replaces the content of `oldEntry` by a copy of `newEntry`; it keeps its place. */
REEDID_API int32_t DispID_ReplaceDB(DispIdBlock* model, DispIdDataBlock* oldEntry, const DispIdDataBlock* newEntry);

/** The first entry with this tag; null if there is none. */
REEDID_API DispIdDataBlock* DispID_FindDB(const DispIdBlock* model, uint32_t tag);

/** Product identification, tag 0x00 (1.x) and 0x20 (2.0). */
typedef struct ProductIdRecord {
  uint8_t manufacturerId[3]; /**< bytes 3..5: three letters (1.x) or an OUI (2.0) */
  uint16_t productCode;      /**< a number of the maker */
  uint32_t serialNumber;     /**< 0 = not stated */
  uint8_t week;              /**< 1..54, 255 = `year` is a model year */
  uint16_t year;             /**< full year, from 2000 */
  uint16_t nameLength;       /**< characters, 0..233 */
  char* name;                /**< the caller's buffer; the getter writes up to 234 characters with the terminating 0 */
} ProductIdRecord;

/** Decodes the 1.x form. 0, or -1 when refused. */
REEDID_API int32_t DispID_GetPIDB(const DispIdDataBlock* entry, ProductIdRecord* record);
/** Encodes the 1.x form; a bad week or year is reported and written all the same. */
REEDID_API int32_t DispID_SetPIDB(const ProductIdRecord* record, DispIdDataBlock* entry);
/** Decodes the 2.0 form. 0, or -1 when refused. */
REEDID_API int32_t DispID20_GetPIDB(const DispIdDataBlock* entry, ProductIdRecord* record);
/** Encodes the 2.0 form; a bad week or year is reported and written all the same. */
REEDID_API int32_t DispID20_SetPIDB(const ProductIdRecord* record, DispIdDataBlock* entry);

/** Display parameters 1.x, tag 0x01 (DisplayID 1.3, table 4-6). */
typedef struct DisplayParamsRecord {
  uint16_t hImageSize;       /**< 0.1 mm */
  uint16_t vImageSize;       /**< 0.1 mm */
  uint16_t hPixels;          /**< native format */
  uint16_t vPixels;          /**< lines of the native format */
  uint16_t gammaX100;        /**< 100..354, 0 = not stated */
  uint8_t audio;             /**< byte 11 bit 7 */
  uint8_t separateAudio;     /**< bit 6 */
  uint8_t audioOverride;     /**< bit 5 */
  uint8_t powerManagement;   /**< bit 4 */
  uint8_t fixedTiming;       /**< bit 3 */
  uint8_t fixedPixelFormat;  /**< bit 2 */
  uint8_t supportsAI;        /**< bit 1 */
  uint8_t deinterlacing;     /**< bit 0 */
  uint16_t aspectRatioX100;  /**< 100..355 */
  uint8_t nativeColorDepth;  /**< bits per colour, 1..16 */
  uint8_t overallColorDepth; /**< bits per colour, 1..16 */
} DisplayParamsRecord;

/** Decodes display parameters 1.x. 0, or -1 when refused. */
REEDID_API int32_t DispID_GetDPDB(const DispIdDataBlock* entry, DisplayParamsRecord* record);
/** An aspect ratio above 1.00 is written over block byte 0, the tag; the entry's `tag` stays 0x01. */
REEDID_API int32_t DispID_SetDPDB(const DisplayParamsRecord* record, DispIdDataBlock* entry);

/** Display parameters 2.0, tag 0x21 (DisplayID 2.0, table 4-2). */
typedef struct DisplayParams20Record {
  uint8_t sizeIn1mm;         /**< header byte 1 bit 7: the block's sizes are in 1 mm */
  uint32_t hImageSize;       /**< 0.1 mm, whatever the block's unit */
  uint32_t vImageSize;       /**< 0.1 mm */
  uint16_t hPixels;          /**< native format */
  uint16_t vPixels;          /**< lines of the native format */
  uint8_t features;          /**< byte 11, raw */
  uint16_t redX;             /**< red, x, units of 1/4096 */
  uint16_t redY;             /**< red, y, units of 1/4096 */
  uint16_t greenX;           /**< green, x, units of 1/4096 */
  uint16_t greenY;           /**< green, y, units of 1/4096 */
  uint16_t blueX;            /**< blue, x, units of 1/4096 */
  uint16_t blueY;            /**< blue, y, units of 1/4096 */
  uint16_t whiteX;           /**< white point, x, units of 1/4096 */
  uint16_t whiteY;           /**< white point, y, units of 1/4096 */
  uint16_t maxLuminanceFull; /**< half-precision code, full coverage */
  uint16_t maxLuminance10;   /**< half-precision code, 10 % coverage */
  uint16_t minLuminance;     /**< half-precision code */
  uint8_t colorDepth;        /**< bits per colour, 0 = not defined */
  uint8_t technology;        /**< 0 not specified, 1 LCD, 2 OLED */
  uint16_t gammaX100;        /**< 100..354, 0 = not stated */
} DisplayParams20Record;

/** Decodes display parameters 2.0. 0, or -1 when refused. */
REEDID_API int32_t DispID20_GetDPDB(const DispIdDataBlock* entry, DisplayParams20Record* record);
/** Encodes display parameters 2.0. 0, or -1 when refused. */
REEDID_API int32_t DispID20_SetDPDB(const DisplayParams20Record* record, DispIdDataBlock* entry);

/**
 * Timings of a data block, by its tag and size: 0 for a tag without timings, -1 with a message for a null entry or a
 * size below 3 or above 251. For the two bitmaps this is bits + 1 (modulo 256): element 0 is unused.
 *
 * The getters below deliver min(requested, this count) records into the caller's array; 0 requested delivers nothing.
 * Setters take 1 to as many records as stands with them; a bad record is reported ("invalid timing") and ends the call
 * with -1, with earlier records already in the buffer. `frameRate` of a detailed timing is left 0.
 */
REEDID_API int32_t DispID_GetTimingCnt(const DispIdDataBlock* entry);

/** Type I (tag 0x03, 10 kHz units) and type VII (tag 0x22, 1 kHz units) detailed timings, 20 bytes each; 1..12. */
REEDID_API int32_t DispID_Get20ByteDTD(const DispIdDataBlock* entry, DtdTiming* timings, uint32_t requested);
/** Encodes 1 to 12 type I timings. 0, or -1 when refused. */
REEDID_API int32_t DispID_Set20ByteDTD(const DtdTiming* timings, uint32_t count, DispIdDataBlock* entry);
/** Decodes type VII timings, clock in units of 1 kHz. 0, or -1 when refused. */
REEDID_API int32_t DispID20_Get20ByteDTD(const DispIdDataBlock* entry, DtdTiming* timings, uint32_t requested);
/** Keeps the entry's revision and headerFlags. */
REEDID_API int32_t DispID20_Set20ByteDTD(const DtdTiming* timings, uint32_t count, DispIdDataBlock* entry);

/** Type II detailed timings (tag 0x04), 11 bytes each, horizontal counts in units of 8 pixels; 1..22. */
REEDID_API int32_t DispID_Get11ByteDTD(const DispIdDataBlock* entry, DtdTiming* timings, uint32_t requested);
/** Encodes 1 to 22 type II timings. 0, or -1 when refused. */
REEDID_API int32_t DispID_Set11ByteDTD(const DtdTiming* timings, uint32_t count, DispIdDataBlock* entry);

/**
 * Type VI detailed timings (tag 0x13), 14 bytes each, or 17 with an aspect code; at most 248 bytes. The
 * 12-bit and the 4-bit value of bytes 15..16 stand in hImageSize and vImageSize. Keeps the entry's headerFlags.
 */
REEDID_API int32_t DispID_Get17ByteDTD(const DispIdDataBlock* entry, DtdTiming* timings, uint32_t requested);
/** Encodes type VI timings. 0, or -1 when refused. */
REEDID_API int32_t DispID_Set17ByteDTD(const DtdTiming* timings, uint32_t count, DispIdDataBlock* entry);

/** Type III short timings (tag 0x05), 3 bytes each; up to 82. */
REEDID_API int32_t DispID_Get3ByteCVT(const DispIdDataBlock* entry, CvtTiming* timings, uint32_t requested);
/** Encodes type III timings. 0, or -1 when refused. */
REEDID_API int32_t DispID_Set3ByteCVT(const CvtTiming* timings, uint32_t count, DispIdDataBlock* entry);

/** Type V short timings (tag 0x11), 7 bytes each; 1..35. */
REEDID_API int32_t DispID_Get7ByteCVT(const DispIdDataBlock* entry, CvtTiming* timings, uint32_t requested);
/** Encodes type V timings. 0, or -1 when refused. */
REEDID_API int32_t DispID_Set7ByteCVT(const CvtTiming* timings, uint32_t count, DispIdDataBlock* entry);

/**
 * Type IX (tag 0x24) and type X (tag 0x2A) formula timings, 6 bytes each, plus (headerFlags >> 1) & 7 for type X; at
 * most 248 bytes. The setter needs the tag set on entry and keeps tag, revision and headerFlags.
 */
REEDID_API int32_t DispID20_Get6ByteCVT(const DispIdDataBlock* entry, CvtTiming* timings, uint32_t requested);
/** Encodes type IX or X timings. 0, or -1 when refused. */
REEDID_API int32_t DispID20_Set6ByteCVT(const CvtTiming* timings, uint32_t count, DispIdDataBlock* entry);

/** Timing codes: DisplayID type IV and VIII, and extended tag 0x23 of CTA-861. */
typedef struct TimingCodeRecord {
  uint8_t codeType;     /**< 0 DMT identifier, 1 VIC, 2 HDMI VIC */
  uint8_t reserved;     /**< CTA form: byte 2 bit 5, YCbCr 4:2:0; untouched by the DisplayID codecs */
  uint8_t twoByteCodes; /**< 1 two bytes per code, which is refused */
  uint8_t codeCount;    /**< codes delivered, or to write (1..248) */
  uint8_t* codes;       /**< the caller's buffer */
} TimingCodeRecord;

/** Type IV (tag 0x06) and type VIII (tag 0x23) timing codes; record->codes is the caller's buffer. */
REEDID_API int32_t DispID_GetTimingCode(const DispIdDataBlock* entry, TimingCodeRecord* record, uint32_t requested);
/** Encodes type IV timing codes. 0, or -1 when refused. */
REEDID_API int32_t DispID_SetTimingCode(const TimingCodeRecord* record, DispIdDataBlock* entry);
/** Decodes type VIII timing codes. 0, or -1 when refused. */
REEDID_API int32_t DispID20_GetTimingCode(const DispIdDataBlock* entry, TimingCodeRecord* record, uint32_t requested);
/** Encodes type VIII timing codes. 0, or -1 when refused. */
REEDID_API int32_t DispID20_SetTimingCode(const TimingCodeRecord* record, DispIdDataBlock* entry);

/**
 * VESA (tag 0x07, element i = DMT identifier i) and CTA (tag 0x08, element i = VIC i) timing bitmaps: one byte per
 * timing, element 0 unused. The setters take a non-zero multiple of 8 elements, at most 1992, and write one byte past
 * the entry's size: `entry->bytes` has room for 3 + count / 8 bytes, which is 252 for 1992 elements.
 */
REEDID_API int32_t DispID_GetVESATiming(const DispIdDataBlock* entry, uint8_t* flags, uint32_t requested);
/** Encodes the VESA timing bitmap from `count` bytes, into 3 + count / 8 bytes. 0, or -1 when refused. */
REEDID_API int32_t DispID_SetVESATiming(const uint8_t* flags, uint32_t count, DispIdDataBlock* entry);
/** Decodes the CTA timing bitmap. 0, or -1 when refused. */
REEDID_API int32_t DispID_GetCEATiming(const DispIdDataBlock* entry, uint8_t* flags, uint32_t requested);
/** Encodes the CTA timing bitmap from `count` bytes, into 3 + count / 8 bytes. 0, or -1 when refused. */
REEDID_API int32_t DispID_SetCEATiming(const uint8_t* flags, uint32_t count, DispIdDataBlock* entry);

/** Video timing range limits: tag 0x09 (1.x) and dynamic range limits, tag 0x25 (2.0). */
typedef struct DispIdRangeLimits {
  uint32_t minPixelClock;     /**< kHz */
  uint32_t maxPixelClock;     /**< kHz */
  uint16_t minHRate;          /**< kHz (1.x) */
  uint16_t maxHRate;          /**< kHz (1.x) */
  uint16_t minHBlank;         /**< pixels (1.x) */
  uint16_t minVRate;          /**< Hz */
  uint16_t maxVRate;          /**< Hz */
  uint16_t minVBlank;         /**< lines (1.x) */
  uint8_t interlaced;         /**< 1.x byte 17 bit 7 */
  uint8_t cvtStandard;        /**< 1.x byte 17 bit 6 */
  uint8_t cvtReduced;         /**< 1.x byte 17 bit 5 */
  uint8_t discreteFrequency;  /**< 1.x byte 17 bit 4 */
  uint8_t seamlessTransition; /**< 2.0 byte 11 bit 7 */
} DispIdRangeLimits;

/** Decodes the 1.x form. 0, or -1 when refused. */
REEDID_API int32_t DispID_GetRangeLimits(const DispIdDataBlock* entry, DispIdRangeLimits* limits);
/** A clock out of range is reported ("invalid pclk") and written all the same. */
REEDID_API int32_t DispID_SetRangeLimits(const DispIdRangeLimits* limits, DispIdDataBlock* entry);
/** Decodes the 2.0 form. 0, or -1 when refused. */
REEDID_API int32_t DispID20_GetRangeLimits(const DispIdDataBlock* entry, DispIdRangeLimits* limits);
/** Encodes the 2.0 form. 0, or -1 when refused. */
REEDID_API int32_t DispID20_SetRangeLimits(const DispIdRangeLimits* limits, DispIdDataBlock* entry);

/**
 * ASCII strings: serial number (tag 0x0A) and data string (tag 0x0B). A getter needs textSize of size - 2 or more.
 * Setters cut at 248 characters with a message. Both setters write tag 0x0A.
 */
REEDID_API int32_t DispID_GetSerialNumber(const DispIdDataBlock* entry, char* text, uint32_t textSize);
/** Encodes a serial number. 0, or -1 when refused. */
REEDID_API int32_t DispID_SetSerialNumber(const char* text, DispIdDataBlock* entry);
/** Decodes a data string. 0, or -1 when refused. */
REEDID_API int32_t DispID_GetDataString(const DispIdDataBlock* entry, char* text, uint32_t textSize);
/** Encodes a string, with the tag of a serial number. 0, or -1 when refused. */
REEDID_API int32_t DispID_SetDataString(const char* text, DispIdDataBlock* entry);

#ifdef __cplusplus
}
#endif

#endif
