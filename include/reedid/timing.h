/**
 * @file timing.h
 * the decoded timing and what converts to and from it: detailed timing descriptors
 * (EDID 1.4, 3.10.2), the formats of CTA-861 and of VESA DMT, standard and established timings, the
 * CVT 1.2 formula; and the PQ curve. The conventions are those of reedid/image.h. The caller owns every record; nothing
 * here allocates.
 */
#ifndef REEDID_TIMING_H
#define REEDID_TIMING_H

#include <stdint.h>

#include "reedid/tags.h"
#include "reedid/version.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Picture aspect codes used by every record that has an `aspectRatio`. */
typedef enum AspectCode {
  ASPECT_1_1 = 0,
  ASPECT_5_4 = 1,
  ASPECT_4_3 = 2,
  ASPECT_5_3 = 3, /**< the 15:9 of EDID and CVT */
  ASPECT_16_9 = 4,
  ASPECT_16_10 = 5,
  ASPECT_64_27 = 6,
  ASPECT_256_135 = 7,
  ASPECT_UNKNOWN = 8
} AspectCode;

/** One timing, wherever it came from. 36 bytes. */
typedef struct DtdTiming {
  uint32_t pixelClock;   /**< kHz */
  uint16_t hactive;      /**< pixels */
  uint16_t hblank;       /**< pixels */
  uint16_t hfrontPorch;  /**< pixels */
  uint16_t hsyncWidth;   /**< pixels */
  uint16_t vactive;      /**< lines; of one field when interlaced */
  uint16_t vblank;       /**< lines */
  uint16_t vfrontPorch;  /**< lines */
  uint16_t vsyncWidth;   /**< lines */
  uint8_t hsyncPositive; /**< 1 positive, 0 negative or not stated */
  uint8_t vsyncPositive; /**< 1 positive, 0 negative or not stated */
  uint8_t interlaced;    /**< 1 interlaced */
  uint8_t frameRate;     /**< Hz, rounded; the field rate when interlaced; 0 where the source of the timing sets none */
  uint16_t aspectRatio;  /**< an AspectCode */
  uint8_t preferred;     /**< 1 marked preferred, by a DisplayID descriptor or as slot 0 of the base block */
  uint8_t reserved;      /**< cleared by VESA_GetDTD, otherwise unused */
  uint16_t hImageSize;   /**< mm */
  uint16_t vImageSize;   /**< mm */
  uint32_t reservedFinal; /**< cleared by VESA_GetDTD, otherwise unused */
} DtdTiming;

/** An 18-byte descriptor as it stands in the EDID, behind a flag that tells what it is. 19 bytes. */
typedef struct DtdSlot {
  uint8_t flag;      /**< 1 detailed timing; else the display descriptor tag (0xF7..0xFF), or 0 for an empty slot */
  uint8_t bytes[18]; /**< EDID 1.4, tables 3.21 and 3.22 */
} DtdSlot;

/** A timing given by a formula: what the CVT codecs exchange and Cvt2ToDtd expands. 16 bytes. */
typedef struct CvtTiming {
  uint8_t formula;     /**< 0 CVT standard blanking, 1 reduced blanking version 1, 2 reduced blanking version 2 */
  uint8_t aspectRatio; /**< an AspectCode */
  uint16_t hactive;    /**< pixels */
  uint16_t frameRate;  /**< Hz; the field rate when interlaced */
  uint8_t interlaced;  /**< 1 interlaced */
  uint8_t preferred;   /**< preferred flag of the 3-byte and 7-byte forms */
  uint8_t ycc420;      /**< byte 0 bit 7 of a 6-byte descriptor, YCbCr 4:2:0 */
  uint8_t flagA;       /**< byte 0 bit 4 of all formulas but 3; formula 2: the rate is scaled by 1000/1001 */
  uint8_t flagB;       /**< byte 0 bit 4 when formula is 3 */
  uint16_t vactive;    /**< lines of the frame; 0 = from hactive and aspectRatio */
  uint8_t extraBits42; /**< bits 4..2 of the extra byte of a type X descriptor */
  uint8_t extraBits75; /**< bits 7..5 of that byte */
} CvtTiming;

/** A standard timing (EDID 1.4, 3.9), decoded. */
typedef struct StdTiming {
  uint8_t valid;       /**< 1 the entry holds a timing */
  uint8_t frameRate;   /**< Hz, 60..123 */
  uint16_t hactive;    /**< pixels, 256..2288, multiples of 8 */
  uint8_t aspectRatio; /**< ASPECT_5_4, ASPECT_4_3, ASPECT_16_9 or ASPECT_16_10 */
} StdTiming;

/**
 * Decodes a detailed timing descriptor. Any other slot (a flag other than 1) is refused and leaves the record alone,
 * else the whole record is written: polarities from digital separate sync only, `aspectRatio` is 8, `frameRate` is
 * rounded (0 where a total is 0). Borders and stereo bits are not read.
 */
REEDID_API int32_t VESA_GetDTD(const DtdSlot* slot, DtdTiming* timing);

/**
 * Encodes a detailed timing descriptor with digital separate sync and no border. Accepts clocks of 10..655359 kHz
 * (stored in units of 10 kHz, truncated), actives, blankings and image sizes below 4096, horizontal porch and sync
 * below 1024, vertical ones below 64. Anything else is "invalid timing: ...", -1, and leaves a slot with flag 1 and 18
 * zero bytes.
 */
REEDID_API int32_t VESA_SetDTD(const DtdTiming* timing, DtdSlot* slot);

/*
 * The VIC table has one row for each CTA-861 video format. Its index equals the VIC for 1..127; indexes 129..155 are
 * VIC 193 to 219, less 64; there is nothing at 128. The DMT table has the VESA DMT identifiers 1..88
 * (0x01..0x58) and 89, 2560x1440 at 60 Hz with reduced blanking. Rates in the tables are whole Hz. None of the lookups
 * prints anything; null pointers give 0 (no identifier) or -1.
 *
 * The searches compare counts with a tolerance of 2 and rates with a tolerance of 1, from the highest row down.
 */

/** Identifier of a format; an aspect code of 8 or more matches any. 0 when there is none. */
REEDID_API uint32_t FindVic(int32_t hactive, uint32_t vactive, uint32_t frameRate, uint32_t aspectRatio,
                            uint8_t interlaced);
/** The same in the DMT table. */
REEDID_API uint32_t FindDmt(int32_t hactive, uint32_t vactive, uint32_t frameRate, uint32_t aspectRatio,
                            uint8_t interlaced);

/**
 * Identifier of a full timing: all eight counts, rate and interlace; clock and polarities are not compared. With an
 * unknown aspect a 16:9 row wins, else the lowest row that matches. 0 when there is none.
 */
REEDID_API uint32_t DtdToVic(const DtdTiming* timing);
/** The same in the DMT table. */
REEDID_API uint32_t DtdToDmt(const DtdTiming* timing);

/**
 * The timing of a VIC table index (the low 8 bits count; 0, 128 and 156..255 are refused) or of a DMT identifier
 * (1..89). Image sizes, `preferred` and the reserved fields of the record stay as they were. -1 when refused, record
 * untouched. These rows are for finding: for the mode of a display take VicToMode and DmtToMode (reedid/offers.h), which
 * have borders and rates right.
 */
REEDID_API int32_t VicToDtd(uint32_t index, DtdTiming* timing);
/** The timing of a DMT identifier, 1..89. -1 when refused, record untouched. */
REEDID_API int32_t DmtToDtd(uint32_t id, DtdTiming* timing);

/**
 * Established timings I and II have indexes 0..16 (bit i mod 8 of byte 35 + i / 8; 16 is bit 7 of byte 37); established
 * timings III have codes 128..175 (128 + 8 * byte + bit of the descriptor's bitmap). The two directions are separate
 * tables that differ for codes 140..143. DMT identifier 0 = none; index 17 and code 176 = none.
 */
REEDID_API uint32_t Est12ToDmt(uint32_t index);
/** DMT identifier of an established timing III code; 0 for none. EstToMode (reedid/offers.h) knows every mode. */
REEDID_API uint32_t Est3ToDmt(uint32_t code);
/** Established timing I or II index of a DMT identifier; 17 for none. */
REEDID_API uint32_t DmtToEst12(uint32_t id);
/** Established timing III code of a DMT identifier; 176 for none. */
REEDID_API uint32_t DmtToEst3(uint32_t id);

/**
 * Expands a standard timing through the DMT table (the lowest identifier with the same width, rate and aspect); there
 * is no formula behind it. -1 with "invalid parameters" for null, an invalid entry, a zero rate or width or an aspect
 * above 7; -1 without a message when no DMT timing fits. The record is untouched unless the result is 0. StdToMode
 * (reedid/offers.h) gives the mode that a display means, by formula too.
 */
REEDID_API int32_t StdToDtd(const StdTiming* std, DtdTiming* timing);

/**
 * Makes a standard timing: rates 60..123 Hz, widths 256..2288, aspects 5:4, 4:3, 16:9, 16:10, progressive; else a
 * warning and -1 with `std` untouched. A decoded DTD has no aspect code: set one first.
 */
REEDID_API int32_t DtdToStd(const DtdTiming* timing, StdTiming* std);

/**
 * Expands a formula timing by CVT 1.2: clock, counts, polarities, interlace, rate and aspect. Refuses ("invalid
 * parameters") a zero width or rate and requests that leave no time for a line, and with messages of their own formulas
 * above 2, reduced blanking version 1 at rates that are no multiple of 60 Hz, and flagA for formulas 0 and 1. `out` is
 * cleared first, so a refused request leaves it all 0.
 */
REEDID_API int32_t Cvt2ToDtd(const CvtTiming* request, DtdTiming* out);

/** Luminance in cd/m2 of a 12-bit PQ code (SMPTE ST 2084; 4096 = 10000 cd/m2), truncated. 10000 outside 0..4096. */
REEDID_API int32_t PQtoLuminace(int32_t code);

/** PQ code of a luminance in cd/m2, truncated; 4096 above 10000. */
REEDID_API int32_t LuminacetoPQ(uint32_t nits);

/* Constants of the PQ curve. Their names are short: define REEDID_NO_PQ_CONSTANTS to keep them out of a source file. */
#ifndef REEDID_NO_PQ_CONSTANTS
REEDID_API extern const float m1; /**< exponent of the luminance (SMPTE ST 2084, 5.1) */
REEDID_API extern const float m2; /**< outer exponent */
REEDID_API extern const float c1; /**< c3 - c2 + 1 */
REEDID_API extern const float c2; /**< factor of the numerator */
REEDID_API extern const float c3; /**< factor of the denominator */
#endif

#ifdef __cplusplus
}
#endif

#endif
