// The base block (EDID 1.4, section 3): its fields, four descriptors, the number of extensions.

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

#include "document/account/records.h"
#include "document/text/block_kinds.h"
#include "reedid/reedid.hpp"

namespace reedid::document::text {
namespace {

constexpr size_t kHead = 54, kSlots = 4, kCountByte = 126;
constexpr char kLeft[] = "header extensionCount checksum checksumValid";

constexpr char kDefaults[] = R"({
  "version": 1, "revision": 4, "year": 1990, "digitalInput": true, "bitDepth": 8, "gammaX100": 220,
  "sRgbDefault": true, "preferredNative": true, "redX": 655, "redY": 338, "greenX": 307, "greenY": 614,
  "blueX": 154, "blueY": 61, "whiteX": 320, "whiteY": 337
})";

// The 54 bytes in front of the descriptors are a part like others; the rest of the block is filled up for the codec.
bool GetHead(Bytes bytes, const Context&, void* box, size_t&) {
  ByteVector whole(bytes.begin(), bytes.end());
  whole.resize(REEDID_BLOCK_SIZE);
  whole.back() = static_cast<uint8_t>(GetChecksum(whole.data(), REEDID_BLOCK_SIZE));
  const EdidBlock block = {EDID_BLOCK_VESA, REEDID_BLOCK_SIZE, REEDID_BLOCK_SIZE, whole.data()};
  const BaseBlock model(block);
  if (!model) return false;
  std::memcpy(box, model.get(), sizeof *model);
  return true;
}

bool SetHead(const void* box, size_t, const Context&, ByteVector& bytes) {
  constexpr uint8_t kHeader[] = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};
  VesaBlock model;
  uint8_t out[REEDID_BLOCK_SIZE] = {};
  EdidBlock block = {EDID_BLOCK_VESA, REEDID_BLOCK_SIZE, REEDID_BLOCK_SIZE, out};
  std::memcpy(&model, box, sizeof model);
  std::ranges::copy(kHeader, model.header);
  if (VESA_GenerateBlock(&model, &block) != 0) return false;
  bytes.assign(out, out + kHead);
  return true;
}

const std::vector<Kind>& Heads() {
  static const std::vector<Kind> kinds = {{"base",
                                           {},
                                           &kRecordForm,
                                           &kRecordInfo<VesaBlock>,
                                           kLeft,
                                           GetHead,
                                           SetHead,
                                           "",
                                           Tail::kNone,
                                           Json::parse(kDefaults)}};
  return kinds;
}

bool IsHead(const Kind&, Bytes bytes) {
  return bytes.size() == kHead;
}

constexpr Family kHeads = {"base block", Heads, IsHead};

bool MatchesBase(const EdidBlock& block) {
  return block.type == EDID_BLOCK_VESA && block.size == REEDID_BLOCK_SIZE;
}

Json ReadBase(const EdidBlock& block, const ImageContext& image) {
  const Bytes bytes(block.bytes, block.size);
  Json json = PartToJson(kHeads, bytes.first(kHead), image.parts);
  json.erase("kind");
  Json& slots = json["descriptors"] = Json::array();
  for (size_t i = 0; i < kSlots; ++i) {
    slots.push_back(PartToJson(text::kSlots, bytes.subspan(kHead + REEDID_DTD_SIZE * i, REEDID_DTD_SIZE), image.parts));
  }
  while (!slots.empty() && slots.back() == Json({{"kind", "dummy"}})) slots.erase(slots.size() - 1);
  if (bytes[kCountByte] != image.countByte) json["extensionCount"] = bytes[kCountByte];
  ChecksumToJson(bytes, "checksum", json);
  return json;
}

bool IsMaker(const Json& json) {
  const std::string text = json.is_string() ? json.get<std::string>() : "";
  return text.size() == 3 && std::ranges::all_of(text, [](char c) { return c >= 'A' && c <= 'Z'; });
}

ByteVector WriteBase(const Json& json, const ImageContext& image, const Place& place) {
  Json head = json;
  for (const char* key : {"descriptors", "extensionCount", "checksum"}) head.erase(key);
  head["kind"] = "base";
  if (!json.contains("bytes") && !IsMaker(json.value("manufacturer", Json()))) {
    place.Key("manufacturer").Fail("must be three letters from A to Z");
    head["manufacturer"] = "AAA";  // the rest is looked at, too
  }
  ByteVector bytes = PartFromJson(kHeads, head, image.parts, place);
  if (bytes.size() != kHead) {
    if (json.contains("bytes"))
      place.Key("bytes").Fail(
          fmt::format("{} bytes; the base block has {} in front of its descriptors", bytes.size(), kHead));
    bytes.resize(kHead);
  }
  Context parts = image.parts;
  parts.base = BaseOf(bytes);
  const Place list = place.Key("descriptors");
  const auto slots = PartsFromJson(text::kSlots, json.value("descriptors", Json::array()), parts, list);
  if (slots.size() > kSlots) list.Fail(fmt::format("{} descriptors, there is room for {}", slots.size(), kSlots));
  for (size_t i = 0; i < kSlots; ++i) {
    ByteVector slot = i < slots.size() ? slots[i] : ByteVector{0, 0, 0, EDID_DESCRIPTOR_DUMMY};
    if (i < slots.size() && slot.size() != REEDID_DTD_SIZE && !place.problems().HasErrors()) {
      list.At(i).Fail(fmt::format("{} bytes; a descriptor has {}", slot.size(), REEDID_DTD_SIZE));
    }
    slot.resize(REEDID_DTD_SIZE);
    bytes.insert(bytes.end(), slot.begin(), slot.end());
  }
  bytes.push_back(static_cast<uint8_t>(KeyNumber(json, "extensionCount", image.countByte, 0xFF, place)));
  bytes.push_back(0);
  ChecksumFromJson(json, "checksum", bytes, place);
  return bytes;
}

Json SchemaOfBase() {
  Json properties = FieldsSchema(kRecordInfo<VesaBlock>, kLeft);
  properties.update(
      {{"bytes", {{"type", "string"}}},
       {"descriptors", {{"type", "array"}, {"maxItems", kSlots}, {"items", {{"$ref", "#/$defs/descriptor"}}}}},
       {"extensionCount", kNumberSchema},
       {"checksum", kNumberSchema}});
  return properties;
}

}  // namespace

const BlockForm kBaseForm = {"base", MatchesBase, ReadBase, WriteBase, SchemaOfBase};

VesaBlock BaseOf(Bytes bytes) {
  VesaBlock base = {};
  size_t count = 0;
  if (bytes.size() >= kHead) GetHead(bytes.first(kHead), {}, &base, count);
  return base;
}

}  // namespace reedid::document::text
