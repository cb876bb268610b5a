// One codec: the first byte picks it, the rest is the payload of its block. What the getter decodes is set, and decoded
// again it is the same. An input that is an EDID goes through all codecs instead, data block by data block.
#include <span>

#include "fuzz/fuzz.h"
#include "inventory/walk.h"
#include "reedid/reedid.h"
#include "tests/support/codecs.h"
#include "tests/support/handle.h"

namespace reedid::fuzz {
namespace {

using test::Blank;
using test::Codec;
using test::Codecs;
using test::Held;

// Sets a record into a blank block, and gets it from there. A record without content may be written as a block that is
// too short to be read.
template <class Entry>
bool Again(const Codec<Entry>& codec, const Entry& like, const ByteVector& box, ByteVector& again) {
  Blank<Entry> target(251);
  target.KeepHeader(like);
  if (codec.set(box.data(), &target) != 0 || codec.fidelity == test::kOneWay) return false;
  if constexpr (requires { target.size; }) {
    if (target.size < codec.minSize) return false;
  }
  Check(codec.get(&target, again.data()) == 0, "what was set can be got", codec.name);
  return true;
}

// get, set, get again, twice. A getter may accept what the setter refuses the first time. The boxes begin cleared, the
// padding too: they are compared whole.
template <class Entry>
void RoundTrip(const Codec<Entry>& codec, const Entry& entry) {
  ByteVector first(codec.boxSize), second(codec.boxSize), third(codec.boxSize);
  if (codec.get(&entry, first.data()) != 0 || !Again(codec, entry, first, second)) return;
  if (codec.fidelity == test::kExact) Check(first == second, "get, set, get is equal", codec.name);
  Check(Again(codec, entry, second, third), "what was got after a set can be set", codec.name);
  if (codec.fidelity != test::kDrifts) Check(second == third, "the second round is equal", codec.name);
}

template <class Entry>
void RunPayload(const Codec<Entry>& codec, Input& input) {
  size_t room = 18;
  if constexpr (std::is_same_v<Entry, CeaDataBlock>) room = 32;
  if constexpr (std::is_same_v<Entry, DispIdDataBlock>) room = 250;
  ByteVector payload = input.Take(room - codec.head.size());
  if (payload.empty()) payload.push_back(0);
  const Held<Entry> entry(BlockOf(codec, payload));
  RoundTrip<Entry>(codec, entry);
}

// All codecs of its family, whatever the entry is; the other kinds refuse it.
template <class Entry>
void RunEntries(const Entry* entries, size_t count) {
  for (const Entry& entry : std::span(entries, count)) {
    for (const Codec<Entry>& codec : Codecs<Entry>()) RoundTrip(codec, entry);
  }
}

void RunPicked(Input input) {
  size_t pick = input.Byte() % std::apply([](const auto&... list) { return (list.size() + ...); }, test::AllCodecs());
  const auto run = [&](const auto& list) {
    if (pick < list.size()) RunPayload(list[pick], input);
    const bool found = pick < list.size();
    pick -= list.size();
    return found;
  };
  std::apply([&](const auto&... list) { return (run(list) || ...); }, test::AllCodecs());
}

void RunAll(const uint8_t* data, size_t size) {
  const Image handle({data, size});
  if (!handle) return;
  VisitBlocks(*handle, Overloaded{
                           [](const VesaBlock& model) { RunEntries(model.descriptors, std::size(model.descriptors)); },
                           [](const CeaBlock& model) {
                             RunEntries(model.dataBlocks, model.dataBlockCount);
                             RunEntries(model.dtds, model.dtdCount);
                           },
                           [](const DispIdBlock& model) { RunEntries(model.dataBlocks, model.dataBlockCount); },
                       });
}

}  // namespace
}  // namespace reedid::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size >= 128 && isEdidHeader(data) != 0) {
    reedid::fuzz::RunAll(data, size);
  } else {
    reedid::fuzz::RunPicked({data, size});
  }
  return 0;
}
