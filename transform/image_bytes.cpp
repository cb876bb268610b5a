// An image as bytes that are right as a whole, and the one edit that every repeater makes of them.

#include <cstring>

#include "base/log.h"
#include "edid/image.h"
#include "patch/hdmi_video.h"
#include "patch/image.h"
#include "reedid/transforms.h"
#include "transform/phys_addr.h"

namespace reedid {
namespace {

constexpr unsigned kAddressAt = 4;  // in the HDMI 1.4b VSDB

bool IsHdmiWithAddress(const CtaCursor& cursor) {
  return IsHdmi14b(cursor) && cursor.bytes().size() >= kAddressAt + 2;
}

uint32_t SizeOf(const EdidHandle& handle) {
  uint32_t total = 0;
  for (unsigned i = 0; i < handle.blockCount; ++i) total += handle.blocks[i].size;
  return total;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t EDID_GenerateImage(const EdidHandle* handle, uint8_t* out, uint32_t capacity) {
  if (handle == nullptr || out == nullptr || handle->blocks == nullptr || handle->blockCount == 0) {
    return REEDID_ERR("invalid parameters");
  }
  const uint32_t total = SizeOf(*handle);
  if (capacity < total) return REEDID_ERR("not enough space");
  Draft draft(*handle);
  if (!draft.ok()) return REEDID_ERR("malloc fail");
  WriteExtensionCount(draft.image());
  WriteBlockMaps(draft.image());
  uint8_t* at = out;
  for (unsigned i = 0; i < draft.image().blockCount; ++i) {
    EdidBlock& block = draft.image().blocks[i];
    RefreshChecksums(block);
    std::memset(at, 0, block.size);
    BytesOf(block).CopyTo(at);
    at += block.size;
  }
  return static_cast<int32_t>(total);
}

int32_t EDID_IsPortAddress(uint16_t physAddr) {
  return IsPort(physAddr);
}

int32_t EDID_PatchPhyAddr(EdidHandle* handle, uint16_t physAddr) {
  if (handle == nullptr || handle->blocks == nullptr) return REEDID_ERR("invalid parameters");
  bool found = false;
  VisitCtaDataBlocks(*handle, [&](CtaCursor& cursor) {
    if (!IsHdmiWithAddress(cursor)) return;
    cursor.Set(kAddressAt, Low8(physAddr >> 8));
    cursor.Set(kAddressAt + 1, Low8(physAddr));
    found = true;
  });
  if (!found) return REEDID_ERR("no HDMI block with an address");
  return 0;
}
