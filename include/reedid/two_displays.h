/**
 * @file two_displays.h
 * edits of one image by what another display is: what a splitter shows that feeds two displays, and a receiver that plays
 * the sound of a television's picture. The conventions are those of reedid/transforms.h.
 *
 * `handle` is edited and `other` only read; they may be the same. What the edit has no reason to change stays byte for
 * byte. Data blocks are found in all CTA extensions and in DisplayID blocks that hold some (tag 0x81); they are read and
 * written by the codecs of reedid/cea_vendor.h, cea_hdmi.h and cea_media.h, and one that these refuse keeps its bytes.
 * Null for a handle or its block array is "invalid parameters".
 */
#ifndef REEDID_TWO_DISPLAYS_H
#define REEDID_TWO_DISPLAYS_H

#include <stdint.h>

#include "reedid/cea_vendor.h"
#include "reedid/image.h"

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Makes a Dolby Vision record of version 2 from one of version 1, with low latency as its only interface. YCbCr 4:2:2 with 12
 * bits, global dimming and the display management version are kept; there is no backlight control and no 4:4:4.
 * Luminances, in whole cd/m2, become the nearest codes of version 2, chromaticities the nearest that it can hold. Whether
 * the display takes low latency is `v1->lowLatency`, and not asked here. 0; -1 with "invalid parameters", `v2` untouched,
 * for null and for a record of another version.
 */
REEDID_API int32_t DolbyV1toV2LowlatencyOnly(const DolbyVisionRecord* v1, DolbyVisionRecord* v2);

/**
 * Leaves Dolby Vision in low latency only, for a source that renders the display's picture itself, or a repeater that draws
 * on it: version 2 loses the standard interface, version 1 with low latency becomes version 2 as by
 * DolbyV1toV2LowlatencyOnly, version 1 without it and version 0 go. Allocates nothing.
 */
REEDID_API void EDID_LimitToDolbyLowlatency(EdidHandle* handle);

/**
 * Leaves of Dolby Vision what both displays can do. Without a block in `other` those of `handle` go. Of one version: flags that
 * both have, the lower display management version, interfaces and depth in 4:4:4 of both, the brighter minimum and the
 * dimmer maximum; chromaticities stay. Version 1 beside version 2 counts as its low-latency version 2, or goes when it has
 * no low latency; version 0 mixes with version 0 only. Allocates nothing.
 */
REEDID_API void EDID_MIX_DolbyVision(EdidHandle* handle, const EdidHandle* other);

/**
 * Leaves in the first HDMI 1.4b VSDB of `handle` what the first one of `other` has too: flags and content types of both, the
 * lower TMDS clock, HDMI VICs that both list (`other` in any of its lists of timings), 3D formats that both have for
 * the same VIC. Address, latencies and the meaning of the size stay. Without such a block `other` counts as a display
 * with no feature and 165 MHz. Allocates nothing.
 */
REEDID_API void EDID_MIX_H14bVSDB(EdidHandle* handle, const EdidHandle* other);

/**
 * The same for the HDMI Forum VSDB, or the sink capability block that stands for it: flags of both; the lower TMDS clock, FRL
 * rate, DSC rate, slices and chunks; DSC goes unless both have it. A range of variable rates is what lies in both, or
 * none. Without such a block in `other`, that of `handle` goes. Allocates nothing.
 */
REEDID_API void EDID_MIX_HFVSDB(EdidHandle* handle, const EdidHandle* other);

/**
 * Leaves in `handle` what both displays take: take this for a splitter, once for each display beyond the first. All of the mixes
 * above, and:
 * - Timings that `other` offers too, in whatever list: the same picture, totals and clock (but for 1/1000), in YCbCr 4:2:0 or
 *   in full colour as both have it, and no faster than both links carry; a display without HDMI block beside one with
 *   it counts for 165 MHz. 640x480 at 60 Hz stays; without any timing left it is told.
 * - The preferred timing is the first detailed one that stays; when none is left, the largest timing becomes one.
 * - Audio: the overlaps of the short audio descriptors, speakers of both, basic audio when both have it. L-PCM gets no more
 *   channels than speakers are left.
 * - Colour: YCbCr, bits a colour, colorimetry and selectable ranges of both; HDR curves of both with the lower maximum and
 *   the higher minimum, and none when no BT.2020 or depth for it is left. HDR10+ the lower of two.
 * - Range limits that meet. A formula for timings of the source's own stays when it is that of both.
 * - Other vendors' blocks, dynamic metadata, Adaptive-Sync, speaker places stay where `other` has the very same.
 * Names, sizes, primaries, latencies and the address remain those of `handle`. Common with itself, an image stays as it is;
 * the other way round the same is offered. 0; -1, image unchanged: "invalid parameters", "malloc fail" (it works on a
 * copy).
 */
REEDID_API int32_t EDID_LimitToCommon(EdidHandle* handle, const EdidHandle* other);

/**
 * Puts the sound of `from` in place of that of `handle`: audio data blocks, speaker allocation, room and speaker places, HDMI
 * and vendor audio, and the basic audio flag. Take this for a receiver that plays the sound of a television's picture.
 * They come where the sound stood, else behind the video formats, of the first CTA extension with room; an image without
 * such an extension gets one. 0; -1, image unchanged: "invalid parameters", "malloc fail" (it works on a copy), "no base
 * block", "not enough space".
 */
REEDID_API int32_t EDID_TakeAudio(EdidHandle* handle, const EdidHandle* from);

#ifdef __cplusplus
}
#endif

#endif
