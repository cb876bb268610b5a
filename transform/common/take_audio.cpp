// The sound of one display with the picture of another: what a receiver shows that plays the sound itself.

#include <cstring>

#include "base/log.h"
#include "patch/base_block.h"
#include "patch/image.h"
#include "reedid/two_displays.h"
#include "transform/common/mixes.h"
#include "transform/common/records.h"

namespace reedid {
namespace {

constexpr uint8_t kDataBlockVersion = 3;  // of a CTA extension

// The data blocks of sound, one behind the other.
class SoundBlocks {
 public:
  explicit SoundBlocks(const EdidHandle& image) : image_(image) {}
  // The one with this number; empty behind the last.
  Bytes operator[](unsigned wanted) const {
    unsigned count = 0;
    return FirstDataBlock(image_, [&](const CtaCursor& cursor) { return IsSound(cursor) && count++ == wanted; });
  }

 private:
  const EdidHandle& image_;
};

bool SameSound(const EdidHandle& a, const EdidHandle& b) {
  if (HasCtaFlag(a, kCtaBasicAudio) != HasCtaFlag(b, kCtaBasicAudio)) return false;
  const SoundBlocks first(a), second(b);
  for (unsigned i = 0;; ++i) {
    const Bytes one = first[i], other = second[i];
    if (one.size() != other.size()) return false;
    if (one.size() == 0) return true;
    if (std::memcmp(one.data(), other.data(), one.size()) != 0) return false;
  }
}

bool IsCta(const EdidBlock& block) {
  return block.type == EDID_BLOCK_CEA && IsWhole(block);
}

// Whether there is a CTA extension now. False without memory.
bool EnsureCta(EdidHandle& image) {
  for (unsigned i = 0; i < image.blockCount; ++i) {
    if (IsCta(image.blocks[i])) return true;
  }
  uint8_t bytes[REEDID_BLOCK_SIZE] = {EDID_EXTENSION_CTA, kDataBlockVersion, 4};
  bytes[REEDID_BLOCK_SIZE - 1] = Low8(GetChecksum(bytes, REEDID_BLOCK_SIZE));
  return InsertBlock(image, {EDID_BLOCK_CEA, REEDID_BLOCK_SIZE, REEDID_BLOCK_SIZE, bytes}, CtaPlace(image));
}

// Before how many data blocks of an extension sound belongs: where it stood, else behind the video formats.
unsigned SoundPlace(EdidBlock& cta) {
  unsigned index = 0, behindVideo = 0;
  for (CtaCursor cursor(CollectionOf(cta)); cursor.Next(); ++index) {
    if (IsSound(cursor)) return index;
    if (cursor.Is(CEA_TAG_VIDEO) || cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_EXTENSION_OVERRIDE))
      behindVideo = index + 1;
  }
  return behindVideo;
}

void EraseSound(EdidHandle& image) {
  VisitDataBlocks(image, [](CtaCursor& cursor) {
    if (IsSound(cursor)) cursor.Erase();
  });
}

bool InsertAt(EdidBlock& cta, unsigned index, Bytes block) {
  CtaCursor cursor(CollectionOf(cta));
  for (unsigned i = 0; i <= index && cursor.Next(); ++i) continue;
  if (!cursor.Insert(block)) return false;
  if (cta.bytes[1] < kDataBlockVersion) Overwrite(cta, 1, kDataBlockVersion);
  return true;
}

// Fills one extension after another. False when a data block is left over.
bool InsertSound(EdidHandle& image, const EdidHandle& from, const unsigned (&places)[256]) {
  const SoundBlocks blocks(from);
  unsigned next = 0;
  for (unsigned i = 0; i < image.blockCount; ++i) {
    if (!IsCta(image.blocks[i])) continue;
    for (unsigned at = places[i]; blocks[next].size() != 0 && InsertAt(image.blocks[i], at, blocks[next]); ++at) ++next;
  }
  return blocks[next].size() == 0;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t EDID_TakeAudio(EdidHandle* handle, const EdidHandle* from) {
  if (handle == nullptr || handle->blocks == nullptr || from == nullptr || from->blocks == nullptr) {
    return REEDID_ERR("invalid parameters");
  }
  if (SameSound(*handle, *from)) return 0;
  if (handle->blockCount == 0 || !HasBaseSlots(handle->blocks[0])) return REEDID_ERR("no base block");
  Draft draft(*handle);
  if (!draft.ok() || !EnsureCta(draft.image())) return REEDID_ERR("malloc fail");
  unsigned places[256] = {};
  for (unsigned i = 0; i < draft.image().blockCount; ++i) places[i] = SoundPlace(draft.image().blocks[i]);
  EraseSound(draft.image());
  if (!InsertSound(draft.image(), *from, places)) return REEDID_ERR("not enough space");
  ClearCtaFlags(draft.image(), kCtaBasicAudio);
  if (HasCtaFlag(*from, kCtaBasicAudio)) SetCtaFlags(draft.image(), kCtaBasicAudio);
  draft.Commit(*handle);
  return 0;
}
