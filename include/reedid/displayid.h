/*
 * reedid/displayid.h - DisplayID 1.x and 2.0 sections, standalone or as an EDID extension: an editable model of a
 * section's data blocks and the codecs of its data blocks. DispID_ is DisplayID 1.x, DispID20_ is 2.0; where a form
 * exists in both, only the tag and the clock unit differ. The conventions are those of reedid/image.h, and for codecs:
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

/* One data block of a section. */
typedef struct DispIdDataBlock {
  uint8_t tag;         /* byte 0 */
  uint8_t revision;    /* byte 1 bits 2..0 */
  uint8_t headerFlags; /* byte 1 bits 7..3 */
  uint8_t size;        /* bytes with the 3-byte header */
  uint8_t* bytes;      /* the whole block; inside a model a heap copy owned by it (null if it could not be had) */
} DispIdDataBlock;

/* A section (DisplayID 1.3, table 2-1; DisplayID 2.0, table 2-1). */
typedef struct DispIdBlock {
  uint8_t type;                /* EDID_BLOCK_DISPID_FIRST, _NEXT or _EXT */
  uint8_t version;             /* 1 for DisplayID 1.x, 2 for 2.0 */
  uint8_t revision;            /* byte 0 bits 3..0 */
  uint8_t productType;         /* byte 2 bits 3..0; 2.0 primary use cases 2..15 stand as 0x12..0x1F */
  uint8_t extensionCount;      /* byte 3 */
  uint8_t dataBlockCount;      /* entries of dataBlocks */
  DispIdDataBlock* dataBlocks; /* owned; null when there is no data block, which cannot be generated */
  uint8_t checksum;            /* the section's checksum as read */
  uint8_t checksumValid;       /* 1 the checksum (and, inside an EDID, the block's) was right when read */
  uint8_t payloadUsed;         /* bytes of all data blocks with their headers */
  uint16_t sectionSize;        /* bytes of the section: payload + 5, at most 256 (126 inside an EDID) */
} DispIdBlock;

/*
 * Parses a section. Null for bad arguments, "invalid block type", "error version" (version 0) and no memory. Wrong
 * checksums and lengths beyond the block are warnings; parsing goes on with what there is.
 */
REEDID_API DispIdBlock* DispID_Open(const EdidBlock* block);
REEDID_API void DispID_Close(DispIdBlock* model);

/*
 * Writes the section into `out` (bytes and capacity given by the caller: 128 for an extension, else sectionSize) with
 * fresh checksums. Data blocks that do not fit are reported and left out; the call still succeeds.
 */
REEDID_API int32_t DispID_GenerateBlock(const DispIdBlock* model, EdidBlock* out);

/* Inserts a copy of `entry` at min(index, count). "not enough space" when the section has too little room. */
REEDID_API int32_t DispID_AddDB(DispIdBlock* model, const DispIdDataBlock* entry, uint32_t index);

/* Removes the entry at this address; another address changes nothing and is no error. */
REEDID_API int32_t DispID_DeleteDB(DispIdBlock* model, const DispIdDataBlock* entry);

/* Replaces the content of `oldEntry` by a copy of `newEntry`; it keeps its place. */
REEDID_API int32_t DispID_ReplaceDB(DispIdBlock* model, DispIdDataBlock* oldEntry, const DispIdDataBlock* newEntry);

/* The first entry with this tag; null if there is none. */
REEDID_API DispIdDataBlock* DispID_FindDB(const DispIdBlock* model, uint32_t tag);

#ifdef __cplusplus
}
#endif

#endif
