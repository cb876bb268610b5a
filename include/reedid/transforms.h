/**
 * @file transforms.h
 * questions about a whole image and edits of a whole image. Blocks are taken one after another, each as the
 * model of its family, which goes back into the image when it was edited; what does not open is passed over. The
 * conventions are those of reedid/image.h.
 *
 * Where a changed block cannot be generated, the block keeps the bytes that it had, and the edit goes on with the next.
 *
 * Edits of a whole image (EDID_..., DeleteEODB) are done whole or not at all where memory is short: when an allocation
 * fails, the image is what it was, "malloc fail" is printed, and those that return something return -1. They keep a copy
 * of the image for that while they work. Blocks stay where they are in memory, but for those that the edit removes; when
 * an edit fails that had removed blocks, all blocks are in new buffers. The edits of single models (VESA_..., CEA_...,
 * DispID_...) leave the entry as it was that there is no memory for.
 */
#ifndef REEDID_TRANSFORMS_H
#define REEDID_TRANSFORMS_H

#include <stdint.h>

#include "reedid/cea.h"
#include "reedid/displayid.h"
#include "reedid/image.h"
#include "reedid/timing.h"
#include "reedid/vesa.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Whether every block is of a known kind, opens and has a right checksum; a block map makes an image invalid, an image
 * without blocks is valid. 0 with "invalid parameters" for a null handle or block array.
 */
REEDID_API int32_t isValidEdid(const EdidHandle* handle);

/**
 * Whether no CTA extension has an HDMI 1.4b VSDB: the image describes a DVI sink. An HDMI Forum VSDB alone is
 * DVI. 0 without memory to look ("malloc fail").
 */
REEDID_API int32_t isDVIEdid(const EdidHandle* handle);

/**
 * Makes an HDMI sink of a DVI one: block 1 is removed (a CTA extension is reused) and a CTA extension with a
 * two-channel L-PCM audio block, a front left/right speaker block and an HDMI VSDB with this physical address is
 * appended. An image that is HDMI already is left alone, 0. -1 also when nothing of that fits the reused extension, which
 * is gone then.
 */
REEDID_API int32_t EDID_DVItoHDMI(EdidHandle* handle, uint16_t physAddr);

/** The CEC physical address of the first HDMI 1.4b VSDB, 0xFFFF when there is none or no memory to look. */
REEDID_API uint16_t EDID_GetPhyAddr(const EdidHandle* handle);

/**
 * Decodes the first HDMI 1.4b VSDB and encodes it anew with this physical address; what H14bRecord does not carry is
 * lost. -1, image unchanged, when there is none, silently, or when the new block (9 bytes at least) does not fit.
 */
REEDID_API int32_t EDID_SetPhyAddr(EdidHandle* handle, uint16_t physAddr);

/**
 * All whole-number frame rates (Hz) that the image offers anywhere, highest first without repeats, into an array of
 * `maxCount` (at most 255). Returns their number. Stops taking rates when the array is full.
 *
 * The rates are those of the tables and of whole numbers: established 640x480 comes out as 63 and 77 Hz, because the DMT
 * table leaves its borders out of the totals, and 59.94 as 60. For the rates that the display has, take EDID_GetRates
 * (reedid/offers.h).
 */
REEDID_API uint32_t EDID_GetAllFrameRate(const EdidHandle* handle, uint16_t* frameRates, uint32_t maxCount);

/** Number of detailed timings of the image (modulo 256). */
REEDID_API uint32_t EDID_GetDTDCnt(const EdidHandle* handle);

/**
 * Decodes all detailed timings, in block order. `list` has room for EDID_GetDTDCnt records; `capacity` is not
 * consulted. Where memory can run out between the two calls, give room for 255 records, which is always enough. The
 * record of base block slot 0 gets `preferred` 1. Returns the number of records; of an image so large that the count
 * can have wrapped, 0 with "malloc fail" when there is no memory to collect them in.
 */
REEDID_API uint32_t EDID_FindOutAllDTD(const EdidHandle* handle, DtdTiming* list, uint32_t capacity);

/**
 * Sorts by falling active area (hactive * vactive), or by falling rate. The order by rate compares each row of the
 * exchange sort with the rate that stood there when the row began: more than two rates need not come out in strict
 * order.
 */
REEDID_API void SortDTDbyResolution(DtdTiming* list, uint32_t count);
/** The same by rate; see SortDTDbyResolution. */
REEDID_API void SortDTDbyFrameRate(DtdTiming* list, int32_t count);

/**
 * The timing that a source should use: the one that a Video Format Preference Data Block (CTA-861, 7.5.12) names first,
 * else the first detailed timing (a larger one of at least 1920 pixels replaces one narrower than 1920), else the
 * native VIC. `out` is written only when there is an answer.
 */
REEDID_API void EDID_GetPreferredTiming(const EdidHandle* handle, DtdTiming* out);

/**
 * Link limits. Timings above the limit are re-clocked to the first rate of the list that fits, or dropped; VICs are
 * replaced by slower ones of the same format. `frameRates` are acceptable rates in Hz, usually highest first, as
 * EDID_GetAllFrameRate gives them. HDMI 2.0: 600000 kHz. HDMI 1.4: 340000 kHz, and DisplayID blocks, 4:2:0 blocks and
 * the HDMI Forum VSDB are removed.
 */
REEDID_API void EDID_LimitToHDMI20(EdidHandle* handle, const uint16_t* frameRates, uint32_t frameRateCount);
/** The HDMI 2.0 limit of a base block model. */
REEDID_API int32_t VESA_LimitToHDMI20(VesaBlock* model, const uint16_t* frameRates, uint32_t frameRateCount);
/** The HDMI 2.0 limit of a CTA extension model. */
REEDID_API void CEA_LimitToHDMI20(CeaBlock* model, const uint16_t* frameRates, uint32_t frameRateCount);
/** The HDMI 2.0 limit of a DisplayID section model. */
REEDID_API void DispID_LimitToHDMI20(DispIdBlock* model, const uint16_t* frameRates, uint32_t frameRateCount);
/** The HDMI 1.4 limit of a whole image; see EDID_LimitToHDMI20. */
REEDID_API void EDID_LimitToHDMI14(EdidHandle* handle, const uint16_t* frameRates, uint32_t frameRateCount);
/** The HDMI 1.4 limit of a base block model. */
REEDID_API int32_t VESA_LimitToHDMI14(VesaBlock* model, const uint16_t* frameRates, uint32_t frameRateCount);
/** The HDMI 1.4 limit of a CTA extension model. */
REEDID_API void CEA_LimitToHDMI14(CeaBlock* model, const uint16_t* frameRates, uint32_t frameRateCount);

/**
 * Cuts an image of three or more blocks down to base block and first extension, and moves into them what they can
 * hold of the whole image's frame rates, high ones first, within the HDMI 2.0 limit. 0, or -1 for bad arguments or no
 * memory.
 */
REEDID_API int32_t EDID_HighRefreshRate(EdidHandle* handle);

/**
 * Takes extension override blocks (CEA_EXT_TAG_EXTENSION_OVERRIDE; HDMI 2.1, 10.3.6) out of all CTA extensions; an
 * extension without one keeps its bytes.
 */
REEDID_API void DeleteEODB(EdidHandle* handle);

/** Audio formats found in the audio data blocks; one flag each. */
typedef struct AudioFmtCap {
  uint8_t lpcm;      /**< format 1 */
  uint8_t dts;       /**< format 7 */
  uint8_t dtsHd;     /**< format 11 */
  uint8_t dtsHdExt1; /**< format 11 with one of the bits 2..0 of formatDependent */
  uint8_t dtsHdExt2; /**< format 11 with bit 2 or 1 */
  uint8_t dtsHdExt3; /**< format 11 with bit 2 */
  uint8_t ac3;       /**< format 2 */
  uint8_t eac3;      /**< format 10 */
  uint8_t eac3Ext;   /**< format 10 with a formatDependent other than 0 */
  uint8_t mat;       /**< format 12 */
  uint8_t matExt;    /**< format 12 with bit 0 of formatDependent */
} AudioFmtCap;

/** The union over the first audio data block of each CTA extension examined. 0, or -1 with "invalid parameters". */
REEDID_API int32_t EDID_GetAudioFmtCap(const EdidHandle* handle, AudioFmtCap* cap);

/** Leaves two-channel L-PCM and the front speakers of an HDMI image. */
REEDID_API void EDID_LimitToPCM2CH(EdidHandle* handle);

/** Caps the FRL rates of the HDMI Forum VSDB at 5 (40 Gbit/s). */
REEDID_API void EDID_LimitToFrl40G(EdidHandle* handle);

/** Removes Dolby Vision, HDR static metadata and HDR dynamic metadata blocks. */
REEDID_API void EDID_LimitToSDR(EdidHandle* handle);

/*
 * Edits by bytes. The functions above work on models and write whole blocks anew, as documented; those below change the
 * bytes that the edit is about, the checksums of their blocks, and nothing else. Where both exist, take these: what
 * they leave is no worse than what they found.
 */

/**
 * Writes the image to `out`, right as a whole, and returns the number of bytes: the number of extensions in byte 126
 * (1 beside an HDMI Forum EDID Extension Override Data Block, which then holds the number), block maps, and the
 * checksums of all blocks and DisplayID sections. Everything else comes out as it stands in the handle, which is not
 * changed; an image that was right comes out byte for byte. Take this to write any image; EDID_GenerateEdid leaves
 * checksums as they are and knows no override. -1: "not enough space" for less than the sum of the blocks' sizes,
 * "malloc fail" (it works on a copy), "invalid parameters" for null or an empty handle; nothing is written then.
 */
REEDID_API int32_t EDID_GenerateImage(const EdidHandle* handle, uint8_t* out, uint32_t capacity);

/**
 * Whether a port can have this CEC physical address (HDMI 1.4b, 8.7.2): a path from the root, digits other than 0 and
 * then zeros. 0.0.0.0 is the display's own, F.F.F.F says that there is none. Ask this of an address that comes from
 * outside: EDID_PatchPhyAddr writes any.
 */
REEDID_API int32_t EDID_IsPortAddress(uint16_t physAddr);

/**
 * Sets the CEC physical address, 0x1200 for 1.2.0.0, in every HDMI 1.4b VSDB of the image, also in those that
 * DisplayID data blocks hold: two bytes and the checksums over them. Take this to set the address; EDID_SetPhyAddr
 * writes the VSDB anew from the fields that it knows. Allocates nothing. -1, image unchanged: no HDMI block with an
 * address.
 */
REEDID_API int32_t EDID_PatchPhyAddr(EdidHandle* handle, uint16_t physAddr);

/** What a link carries. Zero is "no limit" where it is not said otherwise. */
typedef struct EdidLink {
  uint32_t maxTmdsClock;    /**< kHz, TMDS character rate at 8 bits a colour */
  uint32_t maxPixelClock;   /**< kHz, a limit of its own, also in 4:2:0 */
  uint8_t maxFrlRate;       /**< HDMI FRL rate, 0..6 as HfVsdbRecord.Max_FRL_Rate; 0 = no FRL */
  uint8_t ycc420;           /**< 1 YCbCr 4:2:0 passes, at half the clock; 0 = it does not */
  uint8_t dsc;              /**< 1 compressed video passes, over FRL; 0 = it does not */
  uint8_t dvi;              /**< 1 a link of DVI: everything that makes a display one of HDMI goes, sound with it */
  uint8_t maxBitsPerColour; /**< 8, 10, 12, 16 */
  uint16_t maxWidth;        /**< pixels */
  uint16_t maxHeight;       /**< lines of a frame */
  uint32_t maxRate;         /**< mHz, of fields when interlaced; half a Hz more passes */
  const uint32_t* rates;    /**< rateCount wanted rates in mHz, owned by the caller; may be null for none */
  uint32_t rateCount;       /**< 0 = the display's own rates are wanted */
} EdidLink;

REEDID_API extern const EdidLink EDID_LINK_HDMI14;         /**< HDMI 1.4: 340 MHz, no 4:2:0, no FRL */
REEDID_API extern const EdidLink EDID_LINK_HDMI20;         /**< HDMI 2.0: 600 MHz, 4:2:0 */
REEDID_API extern const EdidLink EDID_LINK_DVI;            /**< DVI, single link: 165 MHz, 8 bits, no sound */
REEDID_API extern const EdidLink EDID_LINK_300MHZ_420;     /**< 300 MHz with 4:2:0: 2160p60 on hardware of HDMI 1.4 */
REEDID_API extern const EdidLink EDID_LINK_CAPTURE_165MHZ; /**< capture of HDMI up to 165 MHz, 8 bits */
REEDID_API extern const EdidLink EDID_LINK_FRL3;           /**< HDMI 2.1 with FRL 3, 24 Gbit/s, and DSC */
REEDID_API extern const EdidLink EDID_LINK_FRL4;           /**< FRL 4, 32 Gbit/s */
REEDID_API extern const EdidLink EDID_LINK_FRL5;           /**< FRL 5, 40 Gbit/s */
REEDID_API extern const EdidLink EDID_LINK_FRL6;           /**< FRL 6, 48 Gbit/s: all of HDMI 2.1 */

/** Why EDID_LimitToLink and EDID_MakeHdmi could not; the image is unchanged. */
typedef enum EdidLinkFailure {
  EDID_LINK_NO_TIMING = -2, /**< "no timing fits the link": not even 640x480 at 60 Hz could be preferred */
  EDID_LINK_NO_ROOM = -3,   /**< "block %u: no room ...": that extension is full */
  EDID_LINK_DAMAGED = -4    /**< "block %u: timings that cannot be limited": bytes of no timing where one is counted */
} EdidLinkFailure;

/**
 * Limits an image to a link. Take this for every limit; EDID_LimitToHDMI20 and EDID_LimitToHDMI14 write whole blocks
 * anew, may choose rates that no display has, and need not leave a preferred timing.
 *
 * What the link carries stays byte for byte; an image with nothing above comes out as it went in. Of the rest:
 * - A detailed timing (DTD, DisplayID types I, II, VII) is slowed down to the highest rate that the display offers in
 *   detailed timings, VICs or DisplayID timings, else to 60, 50, 30, 25 or 24 Hz, within its range limits. It goes when
 *   there is none, or when the image offers the same picture at that rate already. With wanted rates only those count.
 * - A VIC becomes a slower one of the same format under the same conditions, or goes. One that the display takes in
 *   4:2:0 too, and the link in that form only, becomes a 4:2:0-only one; with wanted rates, if its rate is one of them.
 * - Other timings go.
 * - The preferred timing stays a timing: slowed down, else another mode of the same size (VIC, CVT with reduced
 *   blanking), else the next detailed timing or the largest that is left.
 * - Free slots of the base block become dummy descriptors. The 4:2:0 map, HDMI 3D formats, short video references and
 *   the native count, which refer to timings by their place, stay true; no native mark appears.
 * - Range limits, HDMI and HDMI Forum blocks tell no more than the link has, and enough for the timings. The HDMI Forum
 *   block goes when the link has no FRL, no 4:2:0 and at most 340 MHz.
 * - A display that takes DVI only (`dvi`) has no HDMI block to say that image sizes are shapes: they become millimetres.
 * DisplayID extensions stay, with their timings limited: a source that does not know them does not read them. So do the
 * ranges of variable refresh rate (AMD, Adaptive-Sync): a source varies the rate of a timing, so that the part of a range
 * above all timings is never used.
 *
 * Done twice equals once. Each change of a timing is told by an INFO line. 0; an EdidLinkFailure; -1 with "invalid
 * parameters" or "malloc fail" (it works on a copy). When it is not 0 the image is unchanged.
 */
REEDID_API int32_t EDID_LimitToLink(EdidHandle* handle, const EdidLink* link);

/**
 * Takes away all that tells of high dynamic range: HDR static and dynamic metadata, Dolby Vision, HDR10+ and
 * source-based tone mapping, in CTA extensions and in DisplayID; ICtCp of the colorimetry; ST 2084 and hybrid log of
 * the DisplayID interface features. Wide colour (BT.2020, DCI-P3) stays: pictures of standard range have it too. Take
 * this to limit to SDR; EDID_LimitToSDR leaves HDR10+ and what stands in DisplayID. Allocates nothing. 0, or -1 with
 * "invalid parameters".
 */
REEDID_API int32_t EDID_StripHdr(EdidHandle* handle);

/**
 * Makes a digital display (DVI, DisplayPort, unsaid) one of HDMI with this physical address. Take this for it;
 * EDID_DVItoHDMI leaves a source without video formats and with a TMDS clock that its timings exceed. What is missing
 * is added to the first CTA extension, which becomes the first of all extensions (behind a block map), or to a new one
 * when it is full:
 * - a video data block with the display's timings that are VICs, and 640x480 at 60 Hz;
 * - basic audio, two-channel L-PCM and the front speakers, where no audio block is;
 * - the HDMI 1.4b VSDB, with a TMDS clock that covers the timings and deep colour when the display has more than 8 bits
 *   or HDR; above 340 MHz an HDMI Forum VSDB with SCDC;
 * - a video capability data block: RGB range selectable, nothing overscanned.
 * The socket of EDID 1.4 becomes HDMI. Timings that HDMI 2.0 does not carry are limited as by EDID_LimitToLink; limit
 * further afterwards. Before EDID 1.4 a block map comes with the second extension. 640x480 as the only video format
 * widens range limits that leave it out. An image that is HDMI already is left alone. 0; an EdidLinkFailure; -1 with
 * "invalid parameters", an address that is no port's, an analog input, "malloc fail". When it is not 0 the image is
 * unchanged.
 */
REEDID_API int32_t EDID_MakeHdmi(EdidHandle* handle, uint16_t physAddr);

/**
 * Brings an image of three blocks or more into two, for sources that read no more. Take this for it;
 * EDID_HighRefreshRate writes both blocks anew, may take range limits and names out for timings, and holds the display to
 * HDMI 2.0. The base block and the first CTA extension (the first extension, without one) stay byte for byte; what the
 * blocks that go tell of timings comes in, where there is room behind the timings of the extension or in free slots of
 * the base block:
 * - timings that the two blocks lack, as they are when they need at most 600 MHz, high rates first;
 * - high rates that are still missing (99 Hz and more), as 1920x1080 by CVT with reduced blanking;
 * - timings that need more, slowed down to a rate of the display.
 * Progressive ones only. They have the image size of the first timing and are not native; range limits are widened to
 * hold them. The screen size of DisplayID goes to the base block where that tells none or a smaller one. 0, also for two
 * blocks and less; -1, image unchanged: "invalid parameters", "malloc fail" (it works on a copy).
 */
REEDID_API int32_t EDID_FitTwoBlocks(EdidHandle* handle);

/**
 * Leaves two channels of L-PCM of all sound: other formats, rooms and speakers beyond front left and right go, an
 * L-PCM descriptor of more channels gets two. An audio data block without L-PCM gets basic audio: 32 to 48 kHz, 16 bit.
 * Take this to limit the sound; EDID_LimitToPCM2CH writes extensions anew, reaches one audio block of each, and does
 * nothing to a display without HDMI block. Allocates nothing. 0, or -1 with "invalid parameters".
 */
REEDID_API int32_t EDID_LimitToStereo(EdidHandle* handle);

#ifdef __cplusplus
}
#endif

#endif
