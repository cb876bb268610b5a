// CTA-861 extensions, DisplayID sections and block maps.

#include <fmt/format.h>

#include <algorithm>

#include "document/text/block_kinds.h"
#include "document/text/cta_run.h"

namespace reedid::document::text {
namespace {

constexpr size_t kBlock = REEDID_BLOCK_SIZE, kSlot = REEDID_DTD_SIZE;
constexpr size_t kCtaHeader = 4, kChecksum = kBlock - 1;

bool AreZero(Bytes bytes) {
  return std::ranges::all_of(bytes, [](uint8_t byte) { return byte == 0; });
}

// Byte 3 of a CTA extension from bit 7 down (CTA-861, 7.5); bits 3..0 count native timings.
constexpr const char* kCtaFlags[] = {"underscan", "basicAudio", "ycbcr444", "ycbcr422"};

bool MatchesCta(const EdidBlock& block) {
  return block.type == EDID_BLOCK_CEA && block.size == kBlock;
}

// 18 bytes each; what is left, as bytes, but for zeros.
Json TimingsToJson(Bytes bytes, const ImageContext& image) {
  Json timings = Json::array();
  for (; !AreZero(bytes); bytes = bytes.subspan(std::min(kSlot, bytes.size()))) {
    timings.push_back(PartToJson(kDetailedTimings, bytes.first(std::min(kSlot, bytes.size())), image.parts));
  }
  return timings;
}

Json ReadCta(const EdidBlock& block, const ImageContext& image) {
  const Bytes bytes(block.bytes, block.size);
  const size_t offset = bytes[2];
  const bool hasTimings = offset >= kCtaHeader && offset < kChecksum;
  const Bytes run = bytes.subspan(kCtaHeader, (hasTimings ? offset : kChecksum) - kCtaHeader);
  Json json = {{"revision", bytes[1]}};
  for (unsigned i = 0; i < std::size(kCtaFlags); ++i) {
    if (const bool set = (bytes[3] >> (7 - i) & 1) != 0; image.parts.all || set) json[kCtaFlags[i]] = set;
  }
  if (image.parts.all || (bytes[3] & 0xF) != 0) json["nativeDtdCount"] = bytes[3] & 0xF;
  json["dataBlocks"] = CtaRunToJson(run, image.parts);
  if (hasTimings) json["timings"] = TimingsToJson(bytes.subspan(offset, kChecksum - offset), image);
  Problems none;
  const size_t used = kCtaHeader + CtaRunFromJson(json["dataBlocks"], image.parts, Place("", none)).size();
  if (image.parts.all || offset != used) json["dtdOffset"] = offset;
  ChecksumToJson(bytes, "checksum", json);
  return json;
}

ByteVector WriteCta(const Json& json, const ImageContext& image, const Place& place) {
  CheckKeys(json,
            {"revision", "underscan", "basicAudio", "ycbcr444", "ycbcr422", "nativeDtdCount", "dataBlocks", "timings",
             "dtdOffset", "checksum"},
            place);
  unsigned flags = KeyNumber(json, "nativeDtdCount", 0, 15, place);
  for (unsigned i = 0; i < std::size(kCtaFlags); ++i) flags |= KeyFlag(json, kCtaFlags[i], place) ? 0x80u >> i : 0u;
  ByteVector bytes = {EDID_EXTENSION_CTA, static_cast<uint8_t>(KeyNumber(json, "revision", 3, 0xFF, place)), 0,
                      static_cast<uint8_t>(flags)};
  Append(CtaRunFromJson(json.value("dataBlocks", Json::array()), image.parts, place.Key("dataBlocks")), kChecksum,
         bytes, place.Key("dataBlocks"));
  const size_t used = bytes.size();
  const size_t offset = KeyNumber(json, "dtdOffset", static_cast<unsigned>(used), 0xFF, place);
  const auto timings =
      PartsFromJson(kDetailedTimings, json.value("timings", Json::array()), image.parts, place.Key("timings"));
  if (!timings.empty() && (offset < used || offset > kChecksum)) {
    place.Key("dtdOffset")
        .Fail(fmt::format("{}; timings can begin behind the data blocks, at {} and later", offset, used));
  } else if (offset > used && offset <= kChecksum) {
    bytes.resize(offset);
  }
  for (size_t i = 0; i < timings.size(); ++i) Append(timings[i], kChecksum, bytes, place.Key("timings").At(i));
  bytes[2] = static_cast<uint8_t>(offset);
  bytes.resize(kBlock);
  ChecksumFromJson(json, "checksum", bytes, place);
  return bytes;
}

Json ListSchema(const char* item) {
  return {{"type", "array"}, {"items", {{"$ref", fmt::format("#/$defs/{}", item)}}}};
}

Json SchemaOfCta() {
  Json properties = {{"revision", kNumberSchema}};
  for (const char* flag : kCtaFlags) properties[flag] = {{"type", Json::array({"boolean", "integer"})}};
  properties.update({{"nativeDtdCount", kNumberSchema},
                     {"dataBlocks", ListSchema("ctaDataBlock")},
                     {"timings", ListSchema("timing")},
                     {"dtdOffset", kNumberSchema},
                     {"checksum", kNumberSchema}});
  return properties;
}

// A section: version and revision, payload size, product type, extension count, data blocks, checksum.
constexpr size_t kSectionHeader = 4, kOverhead = 5, kUsualPayload = 121;

bool IsExtension(const EdidBlock& block) {
  return block.type == EDID_BLOCK_DISPID_EXT;
}

bool MatchesDisplayId(const EdidBlock& block) {
  const bool isSection = block.type >= EDID_BLOCK_DISPID_FIRST && block.type <= EDID_BLOCK_DISPID_EXT;
  const size_t begin = IsExtension(block) ? 1 : 0;
  return isSection && block.size >= begin + kOverhead &&
         begin + kOverhead + block.bytes[begin + 1] <= block.size - begin;
}

size_t SizeOfNext(Bytes payload) {
  constexpr size_t kHeader = 3;
  const auto zeros =
      static_cast<size_t>(std::ranges::find_if(payload, [](uint8_t byte) { return byte != 0; }) - payload.begin());
  if (zeros >= kHeader) return zeros;
  const size_t size = payload.size() < kHeader ? payload.size() : kHeader + payload[2];
  return std::min(size, payload.size());
}

Json SectionBlocksToJson(Bytes payload, const Context& context) {
  Json parts = Json::array();
  while (!AreZero(payload)) {
    const size_t size = SizeOfNext(payload);
    parts.push_back(PartToJson(kDisplayIdDataBlocks, payload.first(size), context));
    payload = payload.subspan(size);
  }
  return parts;
}

Json ReadDisplayId(const EdidBlock& block, const ImageContext& image) {
  const Bytes bytes(block.bytes, block.size);
  const Bytes section = bytes.subspan(IsExtension(block) ? 1 : 0);
  const size_t payload = section[1];
  Json json = {{"version", section[0] >> 4}, {"revision", section[0] & 0xF}};
  if (image.parts.all || section[2] != 0) json["productType"] = section[2];
  const unsigned count = image.isFirst ? image.countByte : 0;
  if (image.parts.all || section[3] != count) json["extensionCount"] = section[3];
  json["dataBlocks"] = SectionBlocksToJson(section.subspan(kSectionHeader, payload), image.parts);
  Problems none;
  size_t used = 0;
  for (const ByteVector& part : PartsFromJson(kDisplayIdDataBlocks, json["dataBlocks"], image.parts, Place("", none)))
    used += part.size();
  if (image.parts.all || payload != (image.isEdid ? kUsualPayload : used)) json["payloadSize"] = payload;
  ChecksumToJson(section.first(payload + kOverhead), IsExtension(block) ? "sectionChecksum" : "checksum", json);
  if (IsExtension(block)) ChecksumToJson(bytes, "checksum", json);
  return json;
}

ByteVector WriteDisplayId(const Json& json, const ImageContext& image, const Place& place) {
  CheckKeys(json,
            {"version", "revision", "productType", "extensionCount", "dataBlocks", "payloadSize", "sectionChecksum",
             "checksum"},
            place);
  const size_t limit = image.isEdid ? kUsualPayload : REEDID_SECTION_SIZE - kOverhead;
  const Place list = place.Key("dataBlocks");
  ByteVector payload;
  const auto parts = PartsFromJson(kDisplayIdDataBlocks, json.value("dataBlocks", Json::array()), image.parts, list);
  for (size_t i = 0; i < parts.size(); ++i) Append(parts[i], limit, payload, list.At(i));
  const auto used = static_cast<unsigned>(payload.size());
  const size_t size =
      KeyNumber(json, "payloadSize", image.isEdid ? kUsualPayload : used, static_cast<unsigned>(limit), place);
  if (size < used) place.Key("payloadSize").Fail(fmt::format("{}; the data blocks have {} bytes", size, used));
  payload.resize(size);
  const unsigned version = KeyNumber(json, "version", 1, 15, place),
                 revision = KeyNumber(json, "revision", 2, 15, place);
  const unsigned count = KeyNumber(json, "extensionCount", image.isFirst ? image.countByte : 0, 0xFF, place);
  ByteVector section = {static_cast<uint8_t>(version << 4 | revision), static_cast<uint8_t>(size),
                        static_cast<uint8_t>(KeyNumber(json, "productType", 0, 0xFF, place)),
                        static_cast<uint8_t>(count)};
  section.insert(section.end(), payload.begin(), payload.end());
  section.push_back(0);
  ChecksumFromJson(json, image.isEdid ? "sectionChecksum" : "checksum", section, place);
  if (!image.isEdid) return section;
  section.insert(section.begin(), EDID_EXTENSION_DISPLAYID);
  section.resize(kBlock);
  ChecksumFromJson(json, "checksum", section, place);
  return section;
}

Json SchemaOfDisplayId() {
  return {{"version", kNumberSchema},
          {"revision", kNumberSchema},
          {"productType", kNumberSchema},
          {"extensionCount", kNumberSchema},
          {"dataBlocks", ListSchema("displayIdDataBlock")},
          {"payloadSize", kNumberSchema},
          {"sectionChecksum", kNumberSchema},
          {"checksum", kNumberSchema}};
}

// EDID 1.4, 2.2: the tags of the blocks behind it.
bool MatchesMap(const EdidBlock& block) {
  return block.type == EDID_BLOCK_MAP && block.size == kBlock;
}

ByteVector TagsOf(const ImageContext& image) {
  ByteVector tags = image.tagsBehind;
  tags.resize(kChecksum - 1);
  return tags;
}

Json ReadMap(const EdidBlock& block, const ImageContext& image) {
  const Bytes bytes(block.bytes, block.size);
  Json json = Json::object();
  ByteVector tags(bytes.begin() + 1, bytes.begin() + kChecksum);
  if (image.parts.all || tags != TagsOf(image)) {
    while (!tags.empty() && tags.back() == 0) tags.pop_back();
    json["tags"] = tags;
  }
  ChecksumToJson(bytes, "checksum", json);
  return json;
}

ByteVector WriteMap(const Json& json, const ImageContext& image, const Place& place) {
  CheckKeys(json, {"tags", "checksum"}, place);
  ByteVector tags = TagsOf(image), bytes = {EDID_EXTENSION_BLOCK_MAP};
  const Json given = ListOf(json, "tags", place);
  if (json.contains("tags")) tags.clear();
  for (size_t i = 0; i < given.size(); ++i) {
    const auto tag = NumberOf(given[i]);
    if (!tag || *tag < 0 || *tag > 0xFF)
      place.Key("tags").At(i).Fail(fmt::format("{} is no tag (0..255)", Shown(given[i])));
    tags.push_back(static_cast<uint8_t>(tag.value_or(0)));
  }
  Append(tags, kChecksum, bytes, place.Key("tags"));
  bytes.resize(kBlock);
  ChecksumFromJson(json, "checksum", bytes, place);
  return bytes;
}

Json SchemaOfMap() {
  return {{"tags", {{"type", "array"}, {"items", kNumberSchema}}}, {"checksum", kNumberSchema}};
}

}  // namespace

const BlockForm kCtaForm = {"cta", MatchesCta, ReadCta, WriteCta, SchemaOfCta};
const BlockForm kDisplayIdForm = {"displayId", MatchesDisplayId, ReadDisplayId, WriteDisplayId, SchemaOfDisplayId};
const BlockForm kMapBlockForm = {"blockMap", MatchesMap, ReadMap, WriteMap, SchemaOfMap};

}  // namespace reedid::document::text
