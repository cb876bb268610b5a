#include "patch/video.h"

#include <algorithm>
#include <cstring>

#include "displayid/descriptors.h"
#include "patch/base_block.h"
#include "patch/hdmi_video.h"

namespace reedid {
namespace {

constexpr unsigned kNativeByte = 3;  // of a CTA extension, bits 3..0
constexpr unsigned kExtendedPayload = 2;
constexpr unsigned kFeaturesByte = 24;
// Short video references (CTA-861, 7.5.12): detailed timings 1 to 16, type VII and X timings 1 to 16 in the order of their
// data blocks, the first type VIII code.
constexpr uint8_t kDtdReference = 129, kLastDtdReference = 144;
constexpr uint8_t kVtdbReference = 145, kLastVtdbReference = 160;
constexpr uint8_t kCodeReference = 254;

// Lists by place hold within the extensions of an EDID, or within one DisplayID data block.
struct Scope {
  explicit Scope(const CtaCursor& cursor) : run(cursor.run()) {}
  bool Has(const CtaCursor& cursor) const {
    if (run.holder == 0) return cursor.run().holder == 0;
    return cursor.run().block == run.block && cursor.run().holder == run.holder;
  }
  CtaRun run;
};

bool Covers(const EdidHandle& handle, const CtaCursor& cursor, BytePlace place) {
  return cursor.run().block == &handle.blocks[place.block] && place.at >= cursor.at() &&
         place.at < cursor.at() + cursor.bytes().size();
}

// Calls edit(cursor) for the data block around a place.
template <class Edit>
void EditAt(EdidHandle& handle, BytePlace place, Edit edit) {
  bool done = false;
  VisitCtaDataBlocks(handle.blocks[place.block], [&](CtaCursor& cursor) {
    if (done || !Covers(handle, cursor, place)) return;
    done = true;
    edit(cursor);
  });
}

// Removes one byte of a data block, or the block when nothing but `head` bytes is left.
void EraseByte(CtaCursor& cursor, unsigned at, unsigned head) {
  const Bytes bytes = cursor.bytes();
  if (bytes.size() <= head + 1) return cursor.Erase();
  uint8_t fresh[REEDID_CEA_DATA_BLOCK_SIZE];
  bytes.First(at).CopyTo(fresh);
  bytes.From(at + 1).CopyTo(fresh + at);
  fresh[0] = Low8(fresh[0] - 1);
  cursor.Replace(Bytes(fresh, bytes.size() - 1));
}

// False, nothing changed, when the data block or its extension is full.
bool AppendByte(CtaCursor& cursor, uint8_t value) {
  const auto size = static_cast<unsigned>(cursor.bytes().size());
  if (size == REEDID_CEA_DATA_BLOCK_SIZE) return false;
  uint8_t fresh[REEDID_CEA_DATA_BLOCK_SIZE];
  cursor.bytes().CopyTo(fresh);
  fresh[0] = Low8(fresh[0] + 1);
  fresh[size] = value;
  return cursor.Replace(Bytes(fresh, size + 1));
}

// Whether any bit of a 4:2:0 capability map is left.
bool IsEmptyMap(const CtaCursor& map) {
  return UsedEnd(map.bytes(), kExtendedPayload, static_cast<unsigned>(map.bytes().size())) == kExtendedPayload;
}

bool IsBitMap(const CtaCursor& cursor) {
  return cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_420_MAP) && cursor.bytes().size() > kExtendedPayload;
}

// Clears a bit; with `moves` the later bits move down by one.
void EditMap(CtaCursor& map, unsigned index, bool moves) {
  uint8_t fresh[REEDID_CEA_DATA_BLOCK_SIZE];
  const Bytes bytes = map.bytes();
  bytes.CopyTo(fresh);
  const unsigned bits = 8 * static_cast<unsigned>(bytes.size() - kExtendedPayload);
  const auto get = [&](unsigned i) { return i < bits ? Bit(bytes[kExtendedPayload + i / 8], i % 8) : uint8_t{0}; };
  for (unsigned i = index; i < (moves ? bits : std::min(bits, index + 1)); ++i) {
    uint8_t& byte = fresh[kExtendedPayload + i / 8];
    byte = Low8((byte & ~(1u << i % 8)) | (moves ? get(i + 1) : 0u) << i % 8);
  }
  map.Replace(Bytes(fresh, bytes.size()));
  if (IsEmptyMap(map)) map.Erase();
}

struct SvdPlace {
  bool found = false;
  Scope scope = Scope(CtaCursor(CtaRun()));
  unsigned index = 0;
};

SvdPlace FindSvd(EdidHandle& handle, BytePlace place) {
  SvdPlace svd;
  EditAt(handle, place, [&](CtaCursor& cursor) {
    svd.found = cursor.Is(CEA_TAG_VIDEO) && place.at > cursor.at();
    svd.scope = Scope(cursor);
  });
  bool before = svd.found;
  VisitCtaDataBlocks(handle, [&](CtaCursor& cursor) {
    if (!before || !cursor.Is(CEA_TAG_VIDEO) || !svd.scope.Has(cursor)) return;
    before = !Covers(handle, cursor, place);
    svd.index += before ? static_cast<unsigned>(cursor.bytes().size()) - 1 : place.at - cursor.at() - 1;
  });
  return svd;
}

template <class Matches>
unsigned CountCodes(const EdidHandle& handle, uint8_t vic, unsigned from, Matches matches) {
  unsigned count = 0;
  VisitCtaDataBlocks(handle, [&](CtaCursor& cursor) {
    if (!matches(cursor)) return;
    for (unsigned i = from; i < cursor.bytes().size(); ++i) count += VicOfSvd(cursor.bytes()[i]) == vic;
  });
  return count;
}

// Short video references: `follow` gives the new one, 0 to drop it. A native resolution without its timing goes whole.
template <class Follow>
void EditReferences(EdidHandle& handle, Follow follow) {
  VisitCtaDataBlocks(handle, [&](CtaCursor& cursor) {
    const bool native = cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_NATIVE_RESOLUTION);
    if (!native && !cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_FORMAT_PREFERENCE)) return;
    for (unsigned i = kExtendedPayload; i < (native ? kExtendedPayload + 1 : cursor.bytes().size());) {
      const uint8_t to = follow(cursor.bytes()[i]);
      if (to != 0) {
        cursor.Set(i++, to);
      } else if (native) {
        return cursor.Erase();
      } else {
        EraseByte(cursor, i, kExtendedPayload);
      }
    }
  });
}

// Whether a data block lists timings that references count, and the size of one.
struct CountedTimings {
  explicit CountedTimings(const CtaCursor& cursor) {
    const bool seven = cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_VII);
    if ((!seven && !cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_X)) || cursor.run().holder != 0) return;
    size = (seven ? kTypeISize : kTypeIxSize) + Bits(cursor.bytes()[kListFlags], 4, 3);
    const auto bytes = static_cast<unsigned>(cursor.bytes().size());
    count = bytes < kListStart ? 0 : (bytes - kListStart) / size;
  }
  static constexpr unsigned kListFlags = 2, kListStart = 3;
  unsigned size = 1;
  unsigned count = 0;
};

void DropUnlisted(EdidHandle& handle, uint8_t vic) {
  if (CountSvds(handle, vic) == 0 && CountVics420(handle, vic) == 0) RedirectVic(handle, vic, 0);
}

// Calls visit(place) for every detailed timing until it returns true.
template <class Visit>
bool VisitDetailedTimings(const EdidHandle& handle, Visit visit) {
  for (unsigned i = 0; i < handle.blockCount; ++i) {
    const EdidBlock& block = handle.blocks[i];
    for (unsigned slot = 0; HasBaseSlots(block) && slot < kBaseSlots; ++slot) {
      if (IsTimingSlot(BaseSlot(block, slot)) && visit(BytePlace{i, BaseSlotAt(slot)})) return true;
    }
    const CtaSlots slots = SlotsOf(block);
    for (unsigned slot = 0; slot < slots.count; ++slot) {
      const unsigned at = slots.begin + slot * kSlotSize;
      if (IsTimingSlot(BytesOf(block).From(at)) && visit(BytePlace{i, at})) return true;
    }
  }
  return false;
}

// The first detailed timings of an EDID are the native ones; every CTA extension tells how many.
// Calls change(count), which gives the new one.
template <class Change>
void ChangeNativeCount(EdidHandle& handle, Change change) {
  for (unsigned i = 0; i < handle.blockCount; ++i) {
    EdidBlock& block = handle.blocks[i];
    if (block.type != EDID_BLOCK_CEA || !IsWhole(block) || block.bytes[1] < 2) continue;
    const uint8_t flags = block.bytes[kNativeByte];
    Overwrite(block, kNativeByte, Low8((flags & 0xF0u) | change(Bits(flags, 0, 4))));
  }
}

unsigned MostNative(EdidHandle& handle) {
  unsigned most = 0;
  ChangeNativeCount(handle, [&](unsigned count) {
    most = std::max(most, count);
    return count;
  });
  return most;
}

bool HasTimingsBehind(const EdidHandle& handle, unsigned block) {
  return VisitDetailedTimings(handle, [&](BytePlace place) { return place.block > block; });
}

// References to detailed timings from this number on follow when one comes in front of them.
void MakeRoomInReferences(EdidHandle& handle, unsigned number) {
  EditReferences(handle, [number](uint8_t reference) {
    const bool moves = reference >= kDtdReference + number && reference <= kLastDtdReference;
    return reference == kLastDtdReference && moves ? uint8_t{0} : Low8(reference + (moves ? 1 : 0));
  });
}

}  // namespace

unsigned CountSvds(const EdidHandle& handle, uint8_t vic) {
  return CountCodes(handle, vic, 1, [](const CtaCursor& cursor) { return cursor.Is(CEA_TAG_VIDEO); });
}

unsigned CountVics420(const EdidHandle& handle, uint8_t vic) {
  return CountCodes(handle, vic, kExtendedPayload,
                    [](const CtaCursor& cursor) { return cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_420_VIDEO); });
}

BytePlace FindSvdOf(const EdidHandle& handle, unsigned block, uint8_t vic) {
  BytePlace place = {block, 0};
  VisitCtaDataBlocks(handle.blocks[block], [&](CtaCursor& cursor) {
    if (!cursor.Is(CEA_TAG_VIDEO)) return;
    for (unsigned i = 1; place.at == 0 && i < cursor.bytes().size(); ++i) {
      if (VicOfSvd(cursor.bytes()[i]) == vic) place.at = cursor.at() + i;
    }
  });
  return place;
}

void EraseSvd(EdidHandle& handle, BytePlace place) {
  const SvdPlace svd = FindSvd(handle, place);
  if (!svd.found) return;
  const uint8_t vic = VicOfSvd(BytesOf(handle.blocks[place.block])[place.at]);
  // The descriptor first: what the lists lose may move its block.
  EditAt(handle, place, [&](CtaCursor& cursor) { EraseByte(cursor, place.at - cursor.at(), 1); });
  VisitCtaDataBlocks(handle, [&](CtaCursor& cursor) {
    if (!svd.scope.Has(cursor)) return;
    if (IsBitMap(cursor)) EditMap(cursor, svd.index, true);
    if (cursor.bytes().size() > 0 && IsHdmi14b(cursor)) EraseFrom3d(cursor, svd.index);
  });
  DropUnlisted(handle, vic);
}

void ReplaceSvd(EdidHandle& handle, BytePlace place, uint8_t vic) {
  if (place.at >= BytesOf(handle.blocks[place.block]).size()) return;
  const uint8_t before = handle.blocks[place.block].bytes[place.at];
  const bool marked = before != VicOfSvd(before) && vic <= 64;
  Overwrite(handle.blocks[place.block], place.at, Low8(marked ? vic | 0x80 : vic));
  if (CountSvds(handle, VicOfSvd(before)) == 0) RedirectVic(handle, VicOfSvd(before), vic);
}

void ClearFromMap420(EdidHandle& handle, BytePlace place) {
  const SvdPlace svd = FindSvd(handle, place);
  if (!svd.found) return;
  VisitCtaDataBlocks(handle, [&](CtaCursor& cursor) {
    if (svd.scope.Has(cursor) && IsBitMap(cursor)) EditMap(cursor, svd.index, false);
  });
}

void EraseVic420(EdidHandle& handle, BytePlace place) {
  uint8_t vic = 0;
  EditAt(handle, place, [&](CtaCursor& cursor) {
    if (!cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_420_VIDEO) || place.at < cursor.at() + kExtendedPayload) return;
    vic = BytesOf(handle.blocks[place.block])[place.at];
    EraseByte(cursor, place.at - cursor.at(), kExtendedPayload);
  });
  if (vic != 0) DropUnlisted(handle, vic);
}

bool AddVic(EdidHandle& handle, unsigned block, uint8_t vic) {
  bool forAll = false;
  unsigned at = 0;  // of the last video block
  VisitCtaDataBlocks(handle.blocks[block], [&](CtaCursor& cursor) {
    if (cursor.run().holder != 0) return;
    forAll = forAll || (cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_420_MAP) && !IsBitMap(cursor)) ||
             (IsHdmi14b(cursor) && Has3d(cursor));
    if (cursor.Is(CEA_TAG_VIDEO)) at = cursor.at();
  });
  bool added = false;
  VisitCtaDataBlocks(handle.blocks[block], [&](CtaCursor& cursor) {
    if (!forAll && !added && at != 0 && cursor.at() == at) added = AppendByte(cursor, vic);
  });
  return added;
}

bool AddVic420(EdidHandle& handle, unsigned block, uint8_t vic) {
  bool added = false, listed = false;
  VisitCtaDataBlocks(handle.blocks[block], [&](CtaCursor& cursor) {
    if (added || cursor.run().holder != 0 || !cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_420_VIDEO)) return;
    listed = true;
    added = AppendByte(cursor, vic);
  });
  if (listed) return added;
  CtaCursor cursor(CollectionOf(handle.blocks[block]));
  while (cursor.Next()) continue;
  const uint8_t fresh[] = {CEA_TAG_EXTENDED << 5 | 2, CEA_EXT_TAG_420_VIDEO, vic};
  return cursor.Insert(Bytes(fresh, sizeof fresh));
}

void EraseDetailedTiming(EdidHandle& handle, BytePlace place) {
  unsigned number = 0;  // from 0
  const bool found = VisitDetailedTimings(handle, [&](BytePlace other) {
    const bool here = other.block == place.block && other.at == place.at;
    number += !here;
    return here;
  });
  if (!found) return;
  EdidBlock& block = handle.blocks[place.block];
  if (HasBaseSlots(block)) {
    EraseBaseSlot(block, (place.at - BaseSlotAt(0)) / kSlotSize);
  } else {
    EraseCtaSlot(block, (place.at - SlotsOf(block).begin) / kSlotSize);
  }
  ChangeNativeCount(handle, [=](unsigned count) { return count - (number < count ? 1 : 0); });
  DropReference(handle, number > kLastDtdReference - kDtdReference ? uint8_t{0} : Low8(kDtdReference + number));
}

bool AddDetailedTiming(EdidHandle& handle, unsigned block, Bytes slot) {
  const unsigned count = CountDetailedTimings(handle);
  if (!HasTimingsBehind(handle, block) &&
      InsertCtaSlot(handle.blocks[block], SlotsOf(handle.blocks[block]).count, slot)) {
    ChangeNativeCount(handle, [=](unsigned native) { return std::min(native, count); });
    return true;
  }
  const unsigned number = LeadingTimings(handle.blocks[0]);
  if (number == 0 || MostNative(handle) > number || !InsertBaseTiming(handle.blocks[0], slot)) return false;
  MakeRoomInReferences(handle, number);
  return true;
}

uint8_t ReferenceTo(const EdidHandle& handle, BytePlace place) {
  unsigned number = 0;  // of type VII and X timings, from 0
  uint8_t reference = 0;
  bool found = false, codes = false;
  VisitCtaDataBlocks(handle, [&](const CtaCursor& cursor) {
    const CountedTimings list(cursor);
    const bool isCodes = cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_VIII) && cursor.run().holder == 0;
    if (!found && Covers(handle, cursor, place)) {
      found = true;
      const unsigned at = place.at - cursor.at();
      number += at < CountedTimings::kListStart ? 0 : (at - CountedTimings::kListStart) / list.size;
      if (list.count != 0 && number <= kLastVtdbReference - kVtdbReference) reference = Low8(kVtdbReference + number);
      if (isCodes && !codes && at == CountedTimings::kListStart) reference = kCodeReference;
    }
    if (!found) number += list.count;
    codes = codes || isCodes;
  });
  return reference;
}

void DropReference(EdidHandle& handle, uint8_t reference) {
  if (reference == 0) return;
  const auto isIn = [=](uint8_t first, uint8_t last) { return reference >= first && reference <= last; };
  const uint8_t last = isIn(kDtdReference, kLastDtdReference)     ? kLastDtdReference
                       : isIn(kVtdbReference, kLastVtdbReference) ? kLastVtdbReference
                                                                  : reference;
  EditReferences(handle, [=](uint8_t other) {
    return other == reference ? uint8_t{0} : Low8(other - (other > reference && other <= last ? 1 : 0));
  });
}

void ClearNativeTimings(EdidHandle& handle) {
  constexpr unsigned kPixels = 7, kPixelBytes = 4;  // of DisplayID display parameters, 1.x and 2.0
  for (unsigned i = 0; i < handle.blockCount; ++i) {
    EdidBlock& block = handle.blocks[i];
    if (!IsWhole(block)) continue;
    for (SectionCursor cursor(block); cursor.Next();) {
      const bool parameters = cursor.tag() == DISPID_TAG_DISPLAY_PARAMS || cursor.tag() == DISPID20_TAG_DISPLAY_PARAMS;
      if (!parameters || cursor.bytes().size() < kPixels + kPixelBytes) continue;
      for (unsigned at = kPixels; at < kPixels + kPixelBytes; ++at) cursor.Set(at, 0);
    }
    if (block.type == EDID_BLOCK_CEA && block.bytes[1] >= 2)
      Overwrite(block, kNativeByte, block.bytes[kNativeByte] & 0xF0);
    // Before EDID 1.4 the bit says that the first timing is the preferred one.
    if (HasBaseSlots(block) && block.bytes[19] >= 4) Overwrite(block, kFeaturesByte, block.bytes[kFeaturesByte] & ~2);
  }
}

void RedirectVic(EdidHandle& handle, uint8_t vic, uint8_t to) {
  EditReferences(handle, [=](uint8_t reference) { return reference == vic ? to : reference; });
}

unsigned CountDetailedTimings(const EdidHandle& handle) {
  unsigned count = 0;
  VisitDetailedTimings(handle, [&](BytePlace) { return ++count, false; });
  return count;
}

}  // namespace reedid
