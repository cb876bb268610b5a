/**
 * @file offers.h
 * the timings and rates that a display really offers: every list of the image expanded into true modes, with exact
 * totals and the place of each in the bytes. The conventions are those of reedid/image.h.
 *
 * These are the questions to ask before a rate or a link is chosen. EDID_GetAllFrameRate (reedid/transforms.h) answers
 * from the tables as they stand, which give 640x480 without its borders: it tells 63 and 77 Hz of a display that has
 * 59.940 and 72.809, and 60 for 59.94; see docs/oddities.md.
 */
#ifndef REEDID_OFFERS_H
#define REEDID_OFFERS_H

#include <stdint.h>

#include "reedid/image.h"
#include "reedid/timing.h"
#include "reedid/vesa.h"

#ifdef __cplusplus
extern "C" {
#endif

/** The list that a timing stands in. */
typedef enum TimingSource {
  TIMING_ESTABLISHED = 1,     /**< established timings I and II (EDID 1.4, 3.8) */
  TIMING_STANDARD = 2,        /**< a standard timing (EDID 1.4, 3.9), also of descriptor 0xFA */
  TIMING_DETAILED = 3,        /**< an 18-byte detailed timing descriptor */
  TIMING_ESTABLISHED_III = 4, /**< established timings III (EDID 1.4, 3.10.3.9) */
  TIMING_CVT_CODE = 5,        /**< a CVT 3-byte code (EDID 1.4, 3.10.3.8) */
  TIMING_VIC = 6,             /**< a short video descriptor of a Video Data Block (CTA-861, 7.5.1) */
  TIMING_VIC_420 = 7,         /**< one of a YCbCr 4:2:0 Video Data Block (CTA-861, 7.5.10) */
  TIMING_HDMI_VIC = 8,        /**< an HDMI_VIC of the HDMI 1.4b VSDB (HDMI 1.4b, table 8-13) */
  TIMING_TYPE_I = 11,         /**< DisplayID type I, tag 0x03 */
  TIMING_TYPE_II = 12,        /**< DisplayID type II, tag 0x04 */
  TIMING_TYPE_III = 13,       /**< DisplayID type III, tag 0x05 */
  TIMING_TYPE_IV = 14,        /**< DisplayID type IV, tag 0x06 */
  TIMING_TYPE_V = 15,         /**< DisplayID type V, tag 0x11 */
  TIMING_TYPE_VI = 16,        /**< DisplayID type VI, tag 0x13 */
  TIMING_TYPE_VII = 17,       /**< type VII, of DisplayID (tag 0x22) or CTA-861 (extended tag 0x22) */
  TIMING_TYPE_VIII = 18,      /**< type VIII, of DisplayID (tag 0x23) or CTA-861 (extended tag 0x23) */
  TIMING_TYPE_IX = 19,        /**< DisplayID type IX, tag 0x24 */
  TIMING_TYPE_X = 20,         /**< type X, of DisplayID (tag 0x2A) or CTA-861 (extended tag 0x2A) */
  TIMING_DISPLAYID_VESA = 21, /**< DisplayID bitmap of DMT identifiers, tag 0x07 */
  TIMING_DISPLAYID_CTA = 22   /**< DisplayID bitmap of VICs, tag 0x08 */
} TimingSource;

/** What OfferedTiming.ycc420 holds. */
typedef enum Ycc420Support {
  YCC420_NO = 0,   /**< not offered in YCbCr 4:2:0 */
  YCC420_ALSO = 1, /**< offered in YCbCr 4:2:0 too */
  YCC420_ONLY = 2  /**< offered in YCbCr 4:2:0 and nothing else */
} Ycc420Support;

/** No data block: what OfferedTiming.dataBlock and container hold where there is none. */
#define TIMING_NO_BLOCK 255

/**
 * One timing that the display offers. 60 bytes.
 *
 * The rate is exactly 2000 * timing.pixelClock / ((timing.hactive + timing.hblank) * vTotalHalfLines) Hz, of fields
 * when interlaced: all clocks are whole kHz in the standards, so that 59.94 Hz is not rounded before the division.
 */
typedef struct OfferedTiming {
  /**
   * The mode. hblank and vblank hold the borders and so do the front porches, as if the borders were black: the totals
   * and the place of the sync are those of the signal, ready for VESA_SetDTD. `frameRate` is the rate in whole Hz, 0
   * above 255; `preferred` is 1 in slot 0 of the base block and where a DisplayID descriptor has the mark;
   * `aspectRatio` is an AspectCode, 8 where none is told; image sizes are mm, 0 where none are told.
   */
  DtdTiming timing;
  uint32_t rate;            /**< mHz, rounded: 59940, 60000; 1..4294967295 */
  uint32_t vTotalHalfLines; /**< half lines of a picture: an interlaced field mostly has an odd number of them */
  uint16_t offset;          /**< first byte of the descriptor, code or bitmap byte in EdidBlock.bytes */
  uint16_t index;           /**< which of its list: slot, descriptor, code, bit, from 0; in a DisplayID bitmap the id */
  uint8_t block;            /**< index of the block in EdidHandle.blocks */
  uint8_t container;        /**< index of the DisplayID data block 0x81 around the CTA-861 block, or TIMING_NO_BLOCK */
  uint8_t dataBlock;        /**< index of the data block in its extension, section or container, or TIMING_NO_BLOCK */
  uint8_t variant;          /**< which of several timings that one code stands for, from 0 */
  uint8_t source;           /**< a TimingSource */
  uint8_t vic;              /**< VIC as CTA-861 numbers it, 1..219; 0 where the timing is not told by one */
  uint8_t dmt;              /**< DMT identifier, 1..89; 0 where the timing is not told by one or by a code for one */
  uint8_t hdmiVic;          /**< HDMI_VIC, 1..4; 0 where the timing is not told by one */
  uint8_t hBorder;          /**< pixels of border on each side, within hblank */
  uint8_t vBorder;          /**< lines of border on each side, within vblank */
  uint8_t ycc420;           /**< a Ycc420Support */
  uint8_t native;           /**< 1 marked native: a VIC, or one of the first detailed timings of the EDID */
} OfferedTiming;

/**
 * Every timing that the image offers, in the order of its bytes: established and standard timings (real modes: DMT, or
 * GTF or CVT as the range limits tell), detailed timings, CVT codes, VICs, 4:2:0 VICs, HDMI VICs, DisplayID types I to
 * X and bitmaps, and the CTA-861 data blocks inside a DisplayID block 0x81.
 *
 * Writes at most `capacity` records to `list`, owned by the caller, and returns how many there are; a null `list` only
 * counts. Allocates nothing, prints nothing but "invalid parameters" for a null handle or a null block array (0).
 *
 * What is no timing is left out and the rest still told: a descriptor without clock or picture, or of 18 bytes 0xFF;
 * identifiers that no table has; formula 3 (CVT reduced blanking version 3) and video format data blocks. A CTA-861
 * collection is read on behind a data block with the reserved tag 0, where CEA_Open stops, and detailed timings are
 * read on behind one that is none, up to a slot of zeros. Extensions of CTA-861 version 1 and 2 have no data blocks. Checksums do not matter.
 *
 * A VIC is told at the clock that CTA-861 states. Sources may send one of 24, 30, 48, 60, 120 or 240 Hz at 1000/1001 of
 * it too; that is not told apart. A formula timing that is marked so is told twice, variant 1 is the slower one.
 */
REEDID_API uint32_t EDID_GetTimings(const EdidHandle* handle, OfferedTiming* list, uint32_t capacity);

/**
 * The rates of those timings in mHz, highest first without repeats: 60000 and 59940 are two. A clock stated in steps of
 * 10 kHz may differ in the last digits (59943 for a 1280x720 at 59.94 Hz). Writes the highest ones, at most `capacity`,
 * to `millihertz`, owned by the caller, and returns how many there are; a null list only counts. Otherwise as
 * EDID_GetTimings. Established and standard timings count too: for the rates at which a link should run, ask
 * EDID_GetTimings and pass over these sources.
 */
REEDID_API uint32_t EDID_GetRates(const EdidHandle* handle, uint32_t* millihertz, uint32_t capacity);

/**
 * The true mode of one code, with `index`, `block` and `offset` 0 and no data block: as EDID_GetTimings would tell it. Take these
 * where VicToDtd, DmtToDtd and StdToDtd give a row of a table to be matched against: the DMT rows of 640x480 lack their borders, and
 * a standard timing gets the first row that fits, which for 1680x1050 is the one with reduced blanking. They print nothing; -1,
 * record untouched, for a null pointer and where there is no such mode.
 *
 * By VIC as CTA-861 numbers it, 1..127 and 193..219.
 */
REEDID_API int32_t VicToMode(uint32_t vic, OfferedTiming* mode);
/** By DMT identifier, 1..89; see DmtToDtd. */
REEDID_API int32_t DmtToMode(uint32_t id, OfferedTiming* mode);
/** By established timing: 0..16 and 128..175 as for Est12ToDmt and Est3ToDmt, which know DMT identifiers only. */
REEDID_API int32_t EstToMode(uint32_t code, OfferedTiming* mode);
/**
 * By standard timing: a DMT mode, else GTF, or CVT where the range limits of `model` tell so. A null model stands for a display
 * without range limits.
 */
REEDID_API int32_t StdToMode(const VesaBlock* model, const StdTiming* std, OfferedTiming* mode);

#ifdef __cplusplus
}
#endif

#endif
