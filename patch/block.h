// Edits of a block's bytes. A model that is opened and generated again writes what it knows; these edits leave every
// byte alone that they do not have to change, also in blocks that no model would take.
#pragma once

#include <cstdint>

#include "base/bytes.h"
#include "reedid/image.h"

namespace reedid {

inline Bytes BytesOf(const EdidBlock& block) {
  return {block.bytes, block.size};
}

// Whether a block has the bytes that its type promises: 128 in an EDID, those of its own length in a DisplayID
// structure. Other blocks are not edited.
bool IsWhole(const EdidBlock& block);

constexpr bool IsSection(uint8_t type) {
  return type >= EDID_BLOCK_DISPID_FIRST && type <= EDID_BLOCK_DISPID_EXT;
}

// Where the section of a DisplayID block begins: behind the extension tag inside an EDID.
constexpr unsigned SectionStart(uint8_t type) {
  return type == EDID_BLOCK_DISPID_EXT ? 1 : 0;
}

// Sets the checksum of the block, and that of the DisplayID section in it.
void RefreshChecksums(EdidBlock& block);

// Writes bytes over others, with the checksums when any of them differs. What would pass the end changes nothing.
void Overwrite(EdidBlock& block, unsigned at, Bytes fresh);
inline void Overwrite(EdidBlock& block, unsigned at, uint8_t fresh) {
  Overwrite(block, at, Bytes(&fresh, 1));
}

// Puts `fresh` in the place of `size` bytes at `at`. The bytes from there up to `used` move along, what gets free is
// zero, checksums are not touched. False, block unchanged, when they would pass `limit`.
bool Splice(EdidBlock& block, unsigned at, unsigned size, Bytes fresh, unsigned used, unsigned limit);

// The end of the last byte in [begin, end) that is not 0; `begin` when all are.
unsigned UsedEnd(Bytes bytes, unsigned begin, unsigned end);

}  // namespace reedid
