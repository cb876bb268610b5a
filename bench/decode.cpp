#include "bench/decode.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "tests/support/codecs.h"

namespace reedid::bench {
namespace {

using test::Codec;

// Where a caller's switch would lead: by the tag, and of extended CTA blocks by the extended tag.
size_t PlaceOf(const CeaDataBlock& entry) {
  return entry.tag == 7 ? 256u + entry.extTag : entry.tag;
}
size_t PlaceOf(const DispIdDataBlock& entry) {
  return entry.tag;
}
size_t PlaceOf(const DtdSlot& slot) {
  return slot.flag;
}

template <class Entry>
using Places = std::array<std::vector<const Codec<Entry>*>, 512>;

// Forms with the same head are read once.
template <class Entry>
Places<Entry> MakePlaces() {
  Places<Entry> places;
  for (const Codec<Entry>& codec : test::Codecs<Entry>()) {
    test::ByteVector block = BlockOf(codec, {1});
    auto& place = places[PlaceOf(test::Held<Entry>(block))];
    const auto same = [&](const Codec<Entry>* other) { return other->head == codec.head; };
    if (std::none_of(place.begin(), place.end(), same)) place.push_back(&codec);
  }
  return places;
}

// Vendors' blocks share a tag, and differ behind it.
template <class Entry>
bool HasHeadOf(const Codec<Entry>& codec, const Entry& entry) {
  const size_t size = codec.head.size();
  if constexpr (requires { entry.extTag; }) {
    return entry.size >= size && std::equal(codec.head.begin() + 1, codec.head.end(), entry.bytes + 1);
  } else if constexpr (requires { entry.revision; }) {
    // Behind tag, revision and length.
    return size < 4 || (entry.size >= size && std::equal(codec.head.begin() + 3, codec.head.end(), entry.bytes + 3));
  }
  return true;
}

template <class Entry>
void DecodeAll(const Entry* entries, size_t count) {
  static const Places<Entry> places = MakePlaces<Entry>();
  alignas(std::max_align_t) static uint8_t box[32768];
  for (size_t i = 0; i < count; ++i) {
    for (const Codec<Entry>* codec : places[PlaceOf(entries[i])]) {
      if (HasHeadOf(*codec, entries[i])) benchmark::DoNotOptimize(codec->get(&entries[i], box));
    }
    benchmark::DoNotOptimize(&box);
  }
}

}  // namespace

void Decode(const VesaBlock& model) {
  DecodeAll(model.descriptors, std::size(model.descriptors));
}

void Decode(const CeaBlock& model) {
  DecodeAll(model.dataBlocks, model.dataBlockCount);
  DecodeAll(model.dtds, model.dtdCount);
}

void Decode(const DispIdBlock& model) {
  DecodeAll(model.dataBlocks, model.dataBlockCount);
}

}  // namespace reedid::bench
