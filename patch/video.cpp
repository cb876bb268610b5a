#include "patch/video.h"

#include <algorithm>
#include <cstring>

#include "patch/base_block.h"
#include "patch/hdmi_video.h"

namespace reedid {
namespace {

constexpr unsigned kNativeByte = 3;  // of a CTA extension, bits 3..0
constexpr unsigned kExtendedPayload = 2;
constexpr unsigned kFeaturesByte = 24;
constexpr uint8_t kFirstDtdReference = 129, kLastDtdReference = 144;  // detailed timings 1 to 16

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
void LessNative(EdidHandle& handle, unsigned number) {
  for (unsigned i = 0; i < handle.blockCount; ++i) {
    EdidBlock& block = handle.blocks[i];
    if (block.type != EDID_BLOCK_CEA || !IsWhole(block) || block.bytes[1] < 2) continue;
    const uint8_t flags = block.bytes[kNativeByte];
    if (number < Bits(flags, 0, 4)) Overwrite(block, kNativeByte, Low8(flags - 1));
  }
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

bool AddVic420(EdidHandle& handle, unsigned block, uint8_t vic) {
  bool added = false, listed = false;
  VisitCtaDataBlocks(handle.blocks[block], [&](CtaCursor& cursor) {
    if (added || cursor.run().holder != 0 || !cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_420_VIDEO)) return;
    const auto size = static_cast<unsigned>(cursor.bytes().size());
    listed = true;
    if (size == REEDID_CEA_DATA_BLOCK_SIZE) return;
    uint8_t fresh[REEDID_CEA_DATA_BLOCK_SIZE];
    cursor.bytes().CopyTo(fresh);
    fresh[0] = Low8(fresh[0] + 1);
    fresh[size] = vic;
    added = cursor.Replace(Bytes(fresh, size + 1));
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
  LessNative(handle, number);
  EditReferences(handle, [number](uint8_t reference) {
    if (reference < kFirstDtdReference || reference > kLastDtdReference) return reference;
    const unsigned referred = reference - kFirstDtdReference;
    return referred == number ? uint8_t{0} : Low8(reference - (referred > number ? 1 : 0));
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
