// Every codec of the library, one row each: tests, fuzzers and benchmarks take it from here. A new codec is one row in
// codecs.cpp; one that is exported and has no row fails a test.
//
// A codec's record stands in a box, with all its arrays and texts inside, so that all are handled alike: as memory here,
// and by name as JSON, for which the fields are listed once beside the tool's records.
#pragma once

#include <algorithm>
#include <nlohmann/json_fwd.hpp>
#include <stdexcept>
#include <string>
#include <tuple>

#include "tests/support/data_block.h"

namespace reedid::test {

enum Fidelity {
  kExact,       // what is got, set and got again is the same
  kNormalises,  // the first set may drop or change something; what it wrote is stable
  kDrifts,      // numbers are scaled both ways with truncation: each round may take one off
  kOneWay,      // the getter refuses what the setter writes
};

template <class Entry>
struct Codec {
  const char* name;    // of what it codes
  const char* getter;  // exported names
  const char* setter;
  ByteVector head = {};                 // bytes that tell the kind of block; of a CTA block its OUI too
  unsigned minSize = 0, maxSize = 255;  // of a block that the getter takes
  Fidelity fidelity = kExact;
  const char* why = "";  // it is not exact

  std::vector<unsigned> sizes = {};  // of those, the only ones that it takes; empty: all
  bool exact = false;                // its setter refuses what its getter would not give back
  bool shared = false;               // by both versions of DisplayID
  size_t boxSize = 0;
  // Null for a null pointer.
  int32_t (*get)(const Entry*, void* box) = nullptr;
  int32_t (*set)(const void* box, Entry*) = nullptr;
  size_t (*used)(const void* box) = nullptr;  // bytes that belong to the record; the rest of the box is left alone
  void (*toJson)(const void* box, nlohmann::json& json) = nullptr;
  void (*fromJson)(const nlohmann::json& json, void* box) = nullptr;  // what is not named stays
};

// Whether the getter takes a block of this size.
template <class Entry>
bool Takes(const Codec<Entry>& codec, unsigned size) {
  const auto& sizes = codec.sizes;
  const bool listed = sizes.empty() || std::find(sizes.begin(), sizes.end(), size) != sizes.end();
  return size >= codec.minSize && size <= codec.maxSize && listed;
}

template <class Entry>
using CodecList = std::vector<Codec<Entry>>;
using CodecTable = std::tuple<CodecList<CeaDataBlock>, CodecList<DispIdDataBlock>, CodecList<DtdSlot>>;
const CodecTable& AllCodecs();

template <class Entry>
const CodecList<Entry>& Codecs() {
  return std::get<CodecList<Entry>>(AllCodecs());
}

// Stops the test when there is none of this name.
template <class Entry>
const Codec<Entry>& CodecOf(const std::string& name) {
  for (const Codec<Entry>& codec : Codecs<Entry>()) {
    if (codec.name == name) return codec;
  }
  throw std::invalid_argument("no codec is called " + name);
}

// The whole block: the codec's head, the length in its place, and `payload`.
ByteVector BlockOf(const Codec<CeaDataBlock>& codec, const ByteVector& payload);
// A head of a single byte leaves revision and flags to the payload.
ByteVector BlockOf(const Codec<DispIdDataBlock>& codec, const ByteVector& payload);
ByteVector BlockOf(const Codec<DtdSlot>& codec, const ByteVector& payload);

}  // namespace reedid::test
