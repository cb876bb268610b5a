// Data blocks of which only their makers know what two displays with different ones would have in common.

#include <algorithm>
#include <cstring>

#include "patch/hdmi_video.h"
#include "patch/section.h"
#include "reedid/cea_vendor.h"
#include "transform/common/mixes.h"
#include "transform/common/records.h"

namespace reedid {
namespace {

// Dolby Vision that can be read.
bool IsDolby(const CtaCursor& cursor) {
  DolbyVisionRecord record;
  const CeaDataBlock entry = EntryOf(cursor.bytes());
  return cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_VIDEO) && cursor.bytes().Le24(2) == REEDID_OUI_DOLBY &&
         CEA_GetDolbyVision(&entry, &record) == 0;
}

// What another part compares, and what tells of the display and not of what a source may send.
bool IsOwn(const CtaCursor& cursor) {
  constexpr uint8_t kTags[] = {0, CEA_TAG_AUDIO, CEA_TAG_VIDEO, CEA_TAG_SPEAKERS, CEA_TAG_VESA_TRANSFER};
  constexpr uint8_t kExtended[] = {CEA_EXT_TAG_VIDEO_CAPABILITY,    CEA_EXT_TAG_VESA_DISPLAY_DEVICE,
                                   CEA_EXT_TAG_COLORIMETRY,         CEA_EXT_TAG_STATIC_HDR,
                                   CEA_EXT_TAG_NATIVE_RESOLUTION,   CEA_EXT_TAG_FORMAT_PREFERENCE,
                                   CEA_EXT_TAG_420_VIDEO,           CEA_EXT_TAG_420_MAP,
                                   CEA_EXT_TAG_PRODUCT_INFORMATION, CEA_EXT_TAG_TYPE_VII,
                                   CEA_EXT_TAG_TYPE_VIII,           CEA_EXT_TAG_TYPE_X,
                                   CEA_EXT_TAG_EXTENSION_OVERRIDE};
  constexpr unsigned kLeastForum = 8;  // what is cut off before it no codec reads
  if (IsHdmi14b(cursor) || (IsHdmiForum(cursor) && cursor.bytes().size() >= kLeastForum)) return true;
  if (IsDolby(cursor) || cursor.bytes().size() < 2) return true;
  const bool extended = cursor.tag() == CEA_TAG_EXTENDED;
  return extended ? std::find(std::begin(kExtended), std::end(kExtended), cursor.extTag()) != std::end(kExtended)
                  : std::find(std::begin(kTags), std::end(kTags), cursor.tag()) != std::end(kTags);
}

bool Same(Bytes a, Bytes b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size()) == 0;
}

bool IsHdr10Plus(const CtaCursor& cursor) {
  return cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_VIDEO) && cursor.bytes().Le24(2) == REEDID_OUI_HDR10_PLUS;
}

// False when one of two cannot be read.
bool MixHdr10Plus(CtaCursor& cursor, Bytes block) {
  const CeaDataBlock ourEntry = EntryOf(cursor.bytes()), theirEntry = EntryOf(block);
  Hdr10PlusRecord ours, theirs;
  if (CEA_GetHdr10Plus(&ourEntry, &ours) != 0 || CEA_GetHdr10Plus(&theirEntry, &theirs) != 0) return false;
  Hdr10PlusRecord mix = ours;
  mix.applicationVersion = Lower(ours.applicationVersion, theirs.applicationVersion);
  mix.fullFramePeakIndex = Lower(ours.fullFramePeakIndex, theirs.fullFramePeakIndex);
  mix.peakIndex = ours.peakIndex == 0 || theirs.peakIndex == 0 ? uint8_t{0} : Lower(ours.peakIndex, theirs.peakIndex);
  return SameRecord(mix, ours) || WriteRecord(cursor, mix, CEA_SetHdr10Plus);
}

bool IsShared(SectionCursor& cursor, const EdidHandle& other) {
  bool shared = false;
  for (unsigned i = 0; i < other.blockCount; ++i) {
    for (SectionCursor theirs(other.blocks[i]); theirs.Next();) shared = shared || Same(theirs.bytes(), cursor.bytes());
  }
  return shared;
}

bool TellsFeatures(uint8_t tag) {
  return tag == DISPID20_TAG_ADAPTIVE_SYNC || tag == DISPID_TAG_STEREO || tag == DISPID20_TAG_STEREO ||
         tag == DISPID_TAG_VENDOR || tag == DISPID20_TAG_VENDOR;
}

}  // namespace

void MixOtherBlocks(EdidHandle& image, const EdidHandle& other) {
  const Bytes hdr10Plus = FirstDataBlock(other, IsHdr10Plus);
  VisitDataBlocks(image, [&](CtaCursor& cursor) {
    if (IsOwn(cursor)) return;
    const Bytes same =
        FirstDataBlock(other, [&](const CtaCursor& theirs) { return Same(theirs.bytes(), cursor.bytes()); });
    if (same.size() != 0) return;
    const bool mixed = IsHdr10Plus(cursor) && hdr10Plus.size() != 0 && MixHdr10Plus(cursor, hdr10Plus);
    if (!mixed) cursor.Erase();
  });
  for (unsigned i = 0; i < image.blockCount; ++i) {
    for (SectionCursor cursor(image.blocks[i]); cursor.Next();) {
      if (TellsFeatures(cursor.tag()) && !IsShared(cursor, other)) cursor.Erase();
    }
  }
}

}  // namespace reedid
