// CTA-861 data blocks inside a DisplayID block, tag 0x81: from byte 3 on one after another, each with its own header. A
// header byte 0 begins padding. The last block may claim more bytes than there are; displays do that.

#include "cea/codec.h"
#include "displayid/codec.h"
#include "reedid/displayid_blocks.h"

namespace reedid {
namespace {

constexpr bool HoldsCta(const DispIdDataBlock* entry) {
  return Matches(entry, DISPID20_TAG_CTA, kDispIdHeaderSize) && entry->size <= REEDID_DISPID_DATA_BLOCK_SIZE;
}

// Up to `most` blocks into `blocks`, when there is such; gives back how many there are of them.
uint32_t Walk(const DispIdDataBlock& entry, CeaDataBlock* blocks, uint32_t most) {
  uint32_t count = 0;
  for (unsigned at = kDispIdHeaderSize; at < entry.size && entry.bytes[at] != 0 && count < most; ++count) {
    const CeaHeader header(entry.bytes[at]);
    const unsigned left = entry.size - at;
    const uint8_t size = Low8(header.size < left ? header.size : left);
    if (blocks != nullptr) {
      const uint8_t extTag = header.tag == CEA_TAG_EXTENDED && size > 1 ? entry.bytes[at + 1] : uint8_t{0};
      blocks[count] = {header.tag, extTag, size, entry.bytes + at};
    }
    at += size;
  }
  return count;
}

// Whether these blocks fit and would be read again.
bool Fit(const CeaDataBlock* blocks, uint32_t count) {
  unsigned payload = 0;
  for (uint32_t i = 0; i < count; ++i) {
    const CeaDataBlock& block = blocks[i];
    if (block.bytes == nullptr || block.size == 0 || block.bytes[0] == 0) return false;
    const unsigned told = CeaHeader(block.bytes[0]).size;
    const bool cut = i + 1 == count && block.size < told;
    payload += block.size;
    if ((block.size != told && !cut) || payload > kMaxDispIdPayload) return false;
  }
  return true;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t DispID20_GetCtaCnt(const DispIdDataBlock* entry) {
  if (!HoldsCta(entry)) {
    REEDID_ERR("invalid parameters");
    return 0;
  }
  return static_cast<int32_t>(Walk(*entry, nullptr, kMaxDispIdPayload));
}

int32_t DispID20_GetCtaBlocks(const DispIdDataBlock* entry, CeaDataBlock* blocks, uint32_t requested) {
  if (!HoldsCta(entry) || blocks == nullptr) return REEDID_ERR("invalid parameters");
  Walk(*entry, blocks, requested);
  return 0;
}

int32_t DispID20_SetCtaBlocks(const CeaDataBlock* blocks, uint32_t count, DispIdDataBlock* entry) {
  if (blocks == nullptr || !CanHold(entry) || !Fit(blocks, count)) {
    return REEDID_ERR("invalid parameters");
  }
  uint8_t payload[kMaxDispIdPayload];  // for blocks that stand in the entry's own bytes
  unsigned size = 0;
  for (uint32_t i = 0; i < count; size += blocks[i++].size) {
    std::memcpy(payload + size, blocks[i].bytes, blocks[i].size);
  }
  BeginDataBlock(*entry, {DISPID20_TAG_CTA}, size);
  std::memcpy(entry->bytes + kDispIdHeaderSize, payload, size);
  return 0;
}
