// HDMI 1.4b, table 8-16 and annex H: 3D structures stand for all of the first 16 short video descriptors, for those of a
// mask, or for single ones. Places in that list mean different VICs in two images, so that the formats are compared as
// sets of structures by VIC.

#include "transform/common/stereo_formats.h"

#include <algorithm>
#include <iterator>

#include "patch/video.h"
#include "transform/common/records.h"

namespace reedid {
namespace {

constexpr unsigned kPlaces = 16;
constexpr unsigned kHalf = 8;                        // structure side by side in half
constexpr unsigned kHorizontal = 8, kQuincunx = 15;  // its bits in a set of structures
constexpr unsigned kHorizontalDetail = 1, kFirstQuincunxDetail = 6;

// VICs of the first 16 short video descriptors; 0 behind the last.
struct Vics {
  explicit Vics(const EdidHandle& image) {
    unsigned count = 0;
    VisitDataBlocks(image, [&](const CtaCursor& cursor) {
      if (cursor.run().holder != 0 || !cursor.Is(CEA_TAG_VIDEO)) return;
      for (unsigned i = 1; i < cursor.bytes().size() && count < kPlaces; ++i) at[count++] = VicOfSvd(cursor.bytes()[i]);
    });
  }
  uint8_t at[kPlaces] = {};
};

// A set of structures: bit n is structure n, bits 8 and 15 are the two ways of side by side in half.
unsigned SetOf(const H14b3dEntry& entry) {
  if (entry.threeD_Structure != kHalf) return 1u << entry.threeD_Structure;
  if (entry.threeD_Detail == 0) return 1u << kHorizontal | 1u << kQuincunx;
  return 1u << (entry.threeD_Detail < kFirstQuincunxDetail ? kHorizontal : kQuincunx);
}

unsigned MaskOf(const H14b3dRecord& record) {
  return record.threeD_Multi_present == 1 ? 0xFFFFu : record.threeD_Multi_present == 2 ? record.threeD_MASK : 0u;
}

// The structures of a VIC in an image.
unsigned StructuresOf(const H14b3dRecord& record, const Vics& vics, uint8_t vic) {
  unsigned set = 0;
  for (unsigned place = 0; place < kPlaces; ++place) {
    if (vic == 0 || vics.at[place] != vic) continue;
    if (Bit(MaskOf(record), place)) set |= record.threeD_Structure_ALL;
    for (unsigned i = 0; i < record.entryCount; ++i) {
      if (record.entries[i].twoD_VIC_order == place) set |= SetOf(record.entries[i]);
    }
  }
  return set;
}

void Add(H14b3dRecord& record, unsigned place, unsigned structure) {
  if (record.entryCount == std::size(record.entries)) return;
  H14b3dEntry& entry = record.entries[record.entryCount++];
  entry.twoD_VIC_order = Low8(place);
  entry.threeD_Structure = Low8(structure == kQuincunx ? kHalf : structure);
  entry.threeD_Detail = Low8(structure == kHorizontal ? kHorizontalDetail
                             : structure == kQuincunx ? kFirstQuincunxDetail
                                                      : 0);
}

// Entries of single places, as far as the other takes them.
void MixEntries(H14b3dRecord& record, const unsigned (&common)[kPlaces]) {
  unsigned kept = 0;
  for (unsigned i = 0; i < record.entryCount; ++i) {
    H14b3dEntry entry = record.entries[i];
    const unsigned set = SetOf(entry), both = set & common[entry.twoD_VIC_order % kPlaces];
    if (both == 0) continue;
    if (both != set) entry.threeD_Detail = Low8(both == 1u << kHorizontal ? kHorizontalDetail : kFirstQuincunxDetail);
    record.entries[kept++] = entry;
  }
  std::fill(record.entries + kept, record.entries + record.entryCount, H14b3dEntry{});
  record.entryCount = Low8(kept);
}

// Structures of many places stay where both have them for the same places; what is left of them becomes entries.
void MixStructures(H14b3dRecord& record, const Vics& vics, unsigned theirAll, const unsigned (&common)[kPlaces]) {
  const unsigned all = record.threeD_Structure_ALL, before = MaskOf(record), shared = all & theirAll;
  unsigned places = 0;
  bool lost = false;
  for (unsigned place = 0; place < kPlaces; ++place) {
    if (!Bit(before, place) || vics.at[place] == 0) continue;
    const bool stays = shared != 0 && (common[place] & shared) == shared;
    places |= (stays ? 1u : 0u) << place;
    lost = lost || !stays;
    const unsigned left = all & common[place] & ~(stays ? shared : 0u);
    for (unsigned structure = 0; structure < kPlaces; ++structure) {
      if (Bit(left, structure)) Add(record, place, structure);
    }
  }
  if (places == 0 && !lost) return;  // nothing that exists
  record.threeD_Structure_ALL = Low16(places == 0 ? 0 : shared);
  if (!lost) return;
  record.threeD_Multi_present = places == 0 ? 0 : 2;
  record.threeD_MASK = Low16(places);
}

}  // namespace

void Mix3dFormats(const EdidHandle& image, H14b3dRecord& record, const EdidHandle& other, const H14b3dRecord& theirs) {
  if (record.threeD_present != 0 && theirs.threeD_present == 0) {
    record.threeD_present = record.threeD_Multi_present = record.entryCount = 0;
    record.threeD_Structure_ALL = record.threeD_MASK = 0;
    std::fill(std::begin(record.entries), std::end(record.entries), H14b3dEntry{});
    return;
  }
  const Vics ours(image), vics(other);
  unsigned common[kPlaces];
  for (unsigned place = 0; place < kPlaces; ++place) {
    // Behind the last descriptor nothing is meant; what stands there is left alone.
    common[place] = ours.at[place] == 0 ? 0xFFFFu : StructuresOf(theirs, vics, ours.at[place]);
  }
  MixEntries(record, common);
  if (MaskOf(record) != 0) MixStructures(record, ours, MaskOf(theirs) == 0 ? 0u : theirs.threeD_Structure_ALL, common);
}

}  // namespace reedid
