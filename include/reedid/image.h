/**
 * @file image.h
 * the EDID image: a list of blocks, opened from bytes and written back to bytes.
 *
 * Conventions of the whole interface
 *
 * 1. Results. Calls that return int32_t return 0 when done and -1 on failure unless their text says otherwise. Open
 * calls return a new object or a null pointer. The true of a predicate is any value but 0. A refused call leaves models and
 * images as they were; what it was to fill (a record, slot, block or data block) may be cleared or begun where its
 * text says so, and is to be used after a 0 only.
 * 2. Ownership. What an open call returns is released by the matching close call, which accepts null. The library
 * copies whatever it keeps of a caller's buffer; no call keeps a caller's pointer.
 * 3. Diagnostics. A refused call prints one line on standard output, "[ERR:function:line]: message", unless its text
 * says that it is silent or prints those of the calls that it makes; findings that do not stop a call are printed as
 * "[WARN:...". A null pointer, a wrong block type, tag or size is "invalid parameters". docs/diagnostics.md explains
 * every line.
 * 4. Flags are single bytes that hold 0 or 1. A setter takes bit 0 of a flag and lets wider values wrap as an unsigned
 *    store of the field's width would, unless its text says otherwise.
 * 5. Units stand with each field. "kHz" is 1000 Hz, rates are in Hz.
 * 6. Threads. The library holds no state of its own, so threads may work at once, each on images and models of its own.
 *    Whoever hands one on must see to it that only one thread works on it.
 * 7. Structures have natural alignment and no bit fields; their fields stand in the order of their documentation.
 * 8. Where a call does other than its name makes you expect, docs/oddities.md tells what that does to a real EDID and
 *    what to call instead.
 */
#ifndef REEDID_IMAGE_H
#define REEDID_IMAGE_H

#include <stddef.h>
#include <stdint.h>

#include "reedid/tags.h"
#include "reedid/version.h"

#ifdef __cplusplus
extern "C" {
#endif

/** What an EdidBlock holds. */
typedef enum EdidBlockType {
  EDID_BLOCK_UNKNOWN = 0,      /**< an extension that the library does not know */
  EDID_BLOCK_VESA = 1,         /**< what an EDID begins with, taken for the base block unseen */
  EDID_BLOCK_MAP = 2,          /**< an extension block with tag 0xF0, block map (EDID 1.4, 3.11) */
  EDID_BLOCK_CEA = 3,          /**< an extension block with tag 0x02, CTA-861 extension */
  EDID_BLOCK_DISPID_FIRST = 4, /**< what a standalone DisplayID structure begins with */
  EDID_BLOCK_DISPID_NEXT = 5,  /**< each section that follows it */
  EDID_BLOCK_DISPID_EXT = 6    /**< an extension block with tag 0x70, a DisplayID section inside an EDID */
} EdidBlockType;

/** 128 bytes of an EDID, or a section of DisplayID that stands alone. */
typedef struct EdidBlock {
  uint8_t type;      /**< an EdidBlockType value */
  uint16_t capacity; /**< room for its bytes: 128 when an EDID was opened, 256 in a standalone DisplayID structure */
  uint16_t size;     /**< bytes in use: 128, or all of the section with header and checksum */
  uint8_t* bytes;    /**< max(size, capacity) bytes, owned by the handle; byte size - 1 is the checksum */
} EdidBlock;

/** An opened image. Adding or deleting a block moves the entries: pointers to them go stale. */
typedef struct EdidHandle {
  uint8_t blockCount; /**< entries of blocks in use, 0..255 */
  EdidBlock* blocks;  /**< in image order, the handle's own; null is taken for no blocks */
} EdidHandle;

/**
 * The checksum byte that makes `length` bytes add up to 0 modulo 256; the last of them, where the checksum stands, is
 * not read. Defined for 1 to 256 bytes (the sum is taken with an 8-bit index); 0 for a length of 1, a length of 0 or
 * null.
 */
REEDID_API uint32_t GetChecksum(const uint8_t* bytes, uint32_t length);

/** Whether the first 8 bytes are the EDID header 00 FF FF FF FF FF FF 00 (EDID 1.4, table 3.1). 0 for null. */
REEDID_API int32_t isEdidHeader(const uint8_t* bytes);

/**
 * Opens an image: an EDID (its header, then whole 128-byte blocks) or, without the EDID header, a standalone
 * DisplayID structure (a chain of sections). Copies the bytes. Neither checksums nor the extension count are compared
 * with the data; an extension of unknown kind is kept and reported with a warning. Returns null for no data, for an
 * EDID whose length is not a whole number of blocks ("invalid edid size"), for DisplayID data below 5 bytes ("invalid
 * displayid size") or without one whole section, and when memory runs out ("malloc fail"). When it runs out over a
 * block's bytes, the result is a handle that ends before that block.
 */
REEDID_API EdidHandle* EDID_Open(const uint8_t* data, uint32_t length);

/** Frees a handle, its entries and their bytes. Null is ignored. */
REEDID_API void EDID_Close(EdidHandle* handle);

/**
 * Inserts a copy of `block` at min(index, blockCount); type, capacity and size are taken as they are. Refreshes block
 * 0's extension count byte (byte 126 of a base block, byte 3 of a DisplayID section) and its checksum; an extension
 * keeps the checksum that it came with. Refuses bad arguments and a 256th block. The handle is unchanged on failure.
 */
REEDID_API int32_t EDID_AddBlock(EdidHandle* handle, const EdidBlock* block, uint32_t index);

/**
 * Removes `entry`, which must be the address of one of the handle's entries, frees its bytes and refreshes block 0 as
 * EDID_AddBlock does. Any other address removes nothing and is no error.
 */
REEDID_API int32_t EDID_DeleteBlock(EdidHandle* handle, const EdidBlock* entry);

/**
 * Writes the image to `out` and returns the number of bytes written, or -1 when `capacity` bytes are too few ("not
 * enough space", nothing written) or the handle is empty. The extension count byte is set in `out`, but block 0
 * brings the checksum that it had, and only the handle's own block 0 gets a fresh one: after block 0's bytes were
 * changed by hand, or when its count was wrong, refresh it first (any EDID_DeleteBlock does).
 */
REEDID_API int32_t EDID_GenerateEdid(EdidHandle* handle, uint8_t* out, uint32_t capacity);

#ifdef __cplusplus
}
#endif

#endif
