/*
 * reedid/transforms.h - questions about a whole image and edits of a whole image. They open each block with its own
 * parser, work on the model, write it back and close it; a block that does not open is skipped. The conventions are
 * those of reedid/image.h.
 *
 * Nothing is lost on refusal: where a changed block cannot be generated, the block keeps the bytes that it had.
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

/*
 * Whether every block is of a known kind, opens and has a right checksum; a block map makes an image invalid, an image
 * without blocks is valid. 0 with "invalid parameters" for a null handle or block array.
 */
REEDID_API int32_t isValidEdid(const EdidHandle* handle);

/* Whether no CTA extension has an HDMI 1.4b VSDB: the image describes a DVI sink. An HDMI Forum VSDB alone is DVI. */
REEDID_API int32_t isDVIEdid(const EdidHandle* handle);

/*
 * Turns a DVI image into an HDMI one: block 1 is removed (a CTA extension is reused) and a CTA extension with a
 * two-channel L-PCM audio block, a front left/right speaker block and an HDMI VSDB with this physical address is
 * appended. An image that is HDMI already is left alone, 0.
 */
REEDID_API int32_t EDID_DVItoHDMI(EdidHandle* handle, uint16_t physAddr);

/* The CEC physical address of the first HDMI 1.4b VSDB, 0xFFFF when there is none. */
REEDID_API uint16_t EDID_GetPhyAddr(const EdidHandle* handle);

/*
 * Rewrites the first HDMI 1.4b VSDB with this physical address and its block's checksum. -1, image unchanged, when
 * there is none or when the rewritten block (9 bytes at least) does not fit.
 */
REEDID_API int32_t EDID_SetPhyAddr(EdidHandle* handle, uint16_t physAddr);

#ifdef __cplusplus
}
#endif

#endif
