#include "document/text/blocks.h"

#include <fmt/format.h>

#include <algorithm>

#include "document/text/block_kinds.h"

namespace reedid::document::text {
namespace {

const BlockForm* const kForms[] = {&kBaseForm, &kCtaForm, &kDisplayIdForm, &kMapBlockForm};

const BlockForm* FormOf(const EdidBlock& block) {
  const auto* const it = std::ranges::find_if(kForms, [&](const BlockForm* form) { return form->matches(block); });
  return it == std::end(kForms) ? nullptr : *it;
}

const BlockForm* FormOf(std::string_view name) {
  const auto* const it = std::ranges::find_if(kForms, [&](const BlockForm* form) { return form->name == name; });
  return it == std::end(kForms) ? nullptr : *it;
}

bool Gives(const BlockForm& form, const Json& json, const EdidBlock& block, const ImageContext& image) {
  Problems problems;
  const ByteVector bytes = form.write(json, image, Place("", problems));
  return !problems.HasErrors() && std::ranges::equal(bytes, Bytes(block.bytes, block.size));
}

ByteVector WholeFromBytes(const Json& json, const ImageContext& image, const Place& place) {
  ByteVector bytes = BytesFromJson(json["bytes"], place.Key("bytes"));
  if (image.isEdid && bytes.size() != REEDID_BLOCK_SIZE) {
    place.Key("bytes").Fail(fmt::format("{} bytes; a block has {}", bytes.size(), REEDID_BLOCK_SIZE));
  }
  return bytes;
}

bool IsBytesOnly(const Json& json) {
  return json.contains("bytes") && json.size() == (json.contains("kind") ? 2 : 1);
}

}  // namespace

Json BlockToJson(const EdidBlock& block, const ImageContext& image) {
  const BlockForm* form = FormOf(block);
  Json json = {{"kind", form == nullptr ? "other" : form->name}};
  if (form != nullptr) {
    const Json keys = form->read(block, image);
    if (Gives(*form, keys, block, image)) {
      json.update(keys);
      return json;
    }
  }
  json["bytes"] = Hex({block.bytes, block.size});
  return json;
}

std::string BlockKind(const Json& json, size_t index) {
  const Json kind = json.is_object() ? json.value("kind", Json()) : Json();
  if (kind.is_string()) return kind.get<std::string>();
  return !kind.is_null() || index != 0 ? "" : json.contains("dataBlocks") ? kDisplayIdForm.name : kBaseForm.name;
}

ByteVector BlockFromJson(const Json& json, size_t index, const ImageContext& image, const Place& place) {
  if (!json.is_object()) {
    place.Fail(fmt::format("{} is no block", Shown(json)));
    return {};
  }
  const std::string kind = BlockKind(json, index);
  const BlockForm* form = FormOf(kind);
  // The base block's bytes may be those of its head alone.
  const size_t written =
      json.contains("bytes") && json["bytes"].is_string() ? json["bytes"].get_ref<const std::string&>().size() : 0;
  if (IsBytesOnly(json) && (form != &kBaseForm || written >= 2 * REEDID_BLOCK_SIZE))
    return WholeFromBytes(json, image, place);
  if (form == nullptr) {
    std::vector<std::string> names = {"other"};
    for (const BlockForm* known : kForms) names.emplace_back(known->name);
    place.Key("kind").Fail(kind.empty() ? "is missing; what block is this?"
                                        : fmt::format("\"{}\" {}", kind, UnknownText(kind, names)));
    return {};
  }
  Json keys = json;
  keys.erase("kind");
  return form->write(keys, image, place);
}

Json BlocksSchema() {
  const Json hex = {{"type", "string"}};
  Json anyOf = Json::array();
  anyOf.push_back(
      {{"type", "object"}, {"required", {"bytes"}}, {"properties", {{"bytes", hex}}}, {"maxProperties", 2}});
  for (const BlockForm* form : kForms) {
    Json properties = {{"kind", {{"const", form->name}}}};
    properties.update(form->schema());
    anyOf.push_back({{"type", "object"}, {"properties", std::move(properties)}, {"additionalProperties", false}});
  }
  return {{"anyOf", std::move(anyOf)}};
}

void ChecksumToJson(Bytes bytes, const char* key, Json& json) {
  const unsigned right = GetChecksum(bytes.data(), static_cast<uint32_t>(bytes.size()));
  if (bytes.back() != right) json[key] = bytes.back();
}

void ChecksumFromJson(const Json& json, const char* key, std::span<uint8_t> bytes, const Place& place) {
  const unsigned right = GetChecksum(bytes.data(), static_cast<uint32_t>(bytes.size()));
  bytes.back() = static_cast<uint8_t>(KeyNumber(json, key, right, 0xFF, place));
}

unsigned KeyNumber(const Json& json, const char* key, unsigned otherwise, unsigned most, const Place& place) {
  if (!json.contains(key)) return otherwise;
  const auto number = NumberOf(json[key]);
  if (number && *number >= 0 && *number <= most) return static_cast<unsigned>(*number);
  place.Key(key).Fail(fmt::format("{} is not a number from 0 to {}", Shown(json[key]), most));
  return otherwise;
}

bool KeyFlag(const Json& json, const char* key, const Place& place) {
  const Json flag = json.value(key, Json(false));
  if (flag.is_boolean() || flag == 0 || flag == 1) return flag == true || flag == 1;
  place.Key(key).Fail(fmt::format("{} is not true or false", Shown(flag)));
  return false;
}

void Append(const ByteVector& fresh, size_t limit, ByteVector& bytes, const Place& place) {
  bytes.insert(bytes.end(), fresh.begin(), fresh.end());
  if (bytes.size() <= limit) return;
  place.Fail(fmt::format("needs {} more bytes than the block has", bytes.size() - limit));
  bytes.resize(limit);
}

}  // namespace reedid::document::text
