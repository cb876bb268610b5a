#include "document/text/text_form.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "document/read/override_count.h"
#include "document/text/blocks.h"

namespace reedid::document {
namespace {

using text::BlockFromJson;
using text::BlockToJson;
using text::ImageContext;
using text::Place;
using text::Problems;
using text::Shown;

constexpr char kVersionKey[] = "reedid";
constexpr unsigned kVersion = 1;
constexpr size_t kMostBlocks = 255, kMostLevels = 20;

uint8_t TypeOf(const std::string& kind, const ByteVector& bytes) {
  const bool isCta = bytes.size() == REEDID_BLOCK_SIZE && bytes[0] == EDID_EXTENSION_CTA && kind != "base";
  return isCta ? EDID_BLOCK_CEA : EDID_BLOCK_UNKNOWN;
}

EdidBlock BlockOf(ByteVector& bytes, const std::string& kind) {
  const auto size = static_cast<uint16_t>(bytes.size());
  return {TypeOf(kind, bytes), size, size, bytes.data()};
}

// HDMI 2.1, 10.3.6: beside an override block byte 126 tells older sources of one extension.
unsigned CountByte(size_t blocks, bool hasOverride) {
  return static_cast<unsigned>(hasOverride && blocks > 2 ? 1 : blocks - 1);
}

ByteVector TagsBehind(std::span<const EdidBlock> blocks, size_t index) {
  ByteVector tags;
  for (size_t i = index + 1; i < blocks.size(); ++i)
    tags.push_back(blocks[i].size == 0 ? uint8_t{0} : blocks[i].bytes[0]);
  return tags;
}

Json ExportedBlocks(const Image& image, bool all) {
  const auto blocks = image.blocks();
  ImageContext context;
  context.blocks = blocks.size();
  context.isEdid = image.IsEdid();
  context.countByte = CountByte(blocks.size(), context.isEdid && OverrideCount(blocks).has_value());
  context.parts.base = context.isEdid ? text::BaseOf({blocks[0].bytes, blocks[0].size}) : VesaBlock{};
  context.parts.extensions = blocks.size() - 1;
  context.parts.all = all;
  Json json = Json::array();
  for (size_t i = 0; i < blocks.size(); ++i) {
    context.isFirst = i == 0;
    context.tagsBehind = TagsBehind(blocks, i);
    json.push_back(BlockToJson(blocks[i], context));
  }
  return json;
}

// All blocks; block 0 and block maps tell of the others, so they come last.
std::vector<ByteVector> BuildBlocks(const Json& json, const Place& place) {
  ImageContext context;
  context.blocks = json.size();
  std::vector<std::string> kinds;
  for (size_t i = 0; i < json.size(); ++i) kinds.push_back(text::BlockKind(json[i], i));
  context.isEdid = kinds[0] != "displayId";
  context.parts.extensions = json.size() - 1;
  std::vector<ByteVector> bytes(json.size());
  std::vector<EdidBlock> blocks(json.size());
  const auto build = [&](size_t i) {
    context.isFirst = i == 0;
    context.tagsBehind = TagsBehind(blocks, i);
    bytes[i] = BlockFromJson(json[i], i, context, place.At(i));
    blocks[i] = BlockOf(bytes[i], kinds[i]);
  };
  const auto isLate = [&](size_t i) { return i == 0 || kinds[i] == "blockMap"; };
  for (size_t i = 0; i < json.size(); ++i) {
    if (!isLate(i)) build(i);
    if (kinds[i] == "blockMap") bytes[i] = {EDID_EXTENSION_BLOCK_MAP}, blocks[i] = BlockOf(bytes[i], kinds[i]);
  }
  context.countByte = CountByte(json.size(), context.isEdid && OverrideCount(blocks).has_value());
  for (size_t i = 0; i < json.size(); ++i) {
    if (isLate(i)) build(i);
  }
  return bytes;
}

std::vector<ByteVector> BuildAll(const Json& json, const Place& root) {
  if (!json.is_object())
    return root.Fail(fmt::format("{} is no object with \"blocks\"", Shown(json))), std::vector<ByteVector>();
  for (const auto& [key, value] : json.items()) {
    if (key != "$schema" && key != kVersionKey && key != "blocks") {
      root.Key(key).Fail(text::UnknownText(key, {kVersionKey, "blocks", "$schema"}));
    }
  }
  const Json version = json.value(kVersionKey, Json(kVersion));
  if (version != kVersion)
    root.Key(kVersionKey).Fail(fmt::format("version {} of the form; this program knows {}", Shown(version), kVersion));
  const Json blocks = json.value("blocks", Json());
  const Place list = root.Key("blocks");
  if (!blocks.is_array() || blocks.empty() || blocks.size() > kMostBlocks) {
    return list.Fail(fmt::format("there must be a list of 1 to {} blocks", kMostBlocks)), std::vector<ByteVector>();
  }
  return BuildBlocks(blocks, list);
}

// The records that fields of a record consist of.
void DefineNested(const RecordInfo& info, Json& defs) {
  for (const FieldInfo& field : info.fields) {
    if (field.record == nullptr || defs.contains(field.record->name)) continue;
    defs[field.record->name] = {
        {"type", "object"}, {"properties", text::FieldsSchema(*field.record, "")}, {"additionalProperties", false}};
    DefineNested(*field.record, defs);
  }
}

// Stops at keys that stand twice in an object, which parsers pass over, and at more levels than any text has.
class Strict {
 public:
  bool operator()(int depth, Json::parse_event_t event, Json& parsed) {
    const auto level = static_cast<size_t>(depth);
    if (level > kMostLevels)
      throw Error(ErrorKind::kInput, "lists within lists within lists: this is no text of an EDID");
    if (event == Json::parse_event_t::object_start) {
      keys_.resize(std::max(keys_.size(), level + 2));
      keys_[level + 1].clear();
    } else if (event == Json::parse_event_t::key) {
      auto& keys = keys_[level];
      if (std::ranges::find(keys, parsed) != keys.end())
        throw Error(ErrorKind::kInput, fmt::format("{} stands twice in one object", Shown(parsed)));
      keys.push_back(parsed);
    }
    return true;
  }

 private:
  std::vector<std::vector<Json>> keys_;
};

}  // namespace

Json ExportJson(const Image& image, Fields fields) {
  Json json = {{kVersionKey, kVersion}};
  json["blocks"] = ExportedBlocks(image, fields == Fields::kAll);
  return json;
}

std::string ExportText(const Image& image, Fields fields) {
  return FormText(ExportJson(image, fields));
}

Json ParseText(const std::string& name, std::string_view text) {
  try {
    return Json::parse(text, Strict(), true, true);
  } catch (const Json::parse_error& error) {
    const size_t end = std::min(error.byte, text.size());
    const auto line = 1 + std::ranges::count(text.substr(0, end), '\n');
    throw Error(ErrorKind::kInput, fmt::format("{}: no JSON: line {}: {}", name, line, Shown(Json(error.what()))));
  } catch (const Error& error) {
    throw Error(ErrorKind::kInput, fmt::format("{}: {}", name, error.what()));
  }
}

ByteVector Build(const std::string& name, const Json& json, Notes& notes) {
  Problems problems;
  const std::vector<ByteVector> blocks = BuildAll(json, Place("", problems));
  if (problems.HasErrors()) {
    throw Error(ErrorKind::kInput,
                fmt::format("{}: {}", name, fmt::join(problems.errors(), fmt::format("\n{}: ", name))));
  }
  for (const std::string& warning : problems.warnings()) notes.push_back(fmt::format("{}: {}", name, warning));
  ByteVector bytes;
  for (const ByteVector& block : blocks) bytes.insert(bytes.end(), block.begin(), block.end());
  return bytes;
}

ByteVector BuildText(const std::string& name, std::string_view text, Notes& notes) {
  return Build(name, ParseText(name, text), notes);
}

Json TextSchema() {
  Json defs = Json::object();
  for (const text::Family* family : {&text::kSlots, &text::kCtaDataBlocks, &text::kDisplayIdDataBlocks}) {
    for (const text::Kind& kind : family->kinds()) {
      if (kind.record != nullptr) DefineNested(*kind.record, defs);
    }
  }
  DefineNested(kRecordInfo<VesaBlock>, defs);
  defs["descriptor"] = FamilySchema(text::kSlots);
  defs["timing"] = FamilySchema(text::kDetailedTimings);
  defs["ctaDataBlock"] = FamilySchema(text::kCtaDataBlocks);
  defs["displayIdDataBlock"] = FamilySchema(text::kDisplayIdDataBlocks);
  defs["block"] = text::BlocksSchema();
  return {{"$schema", "https://json-schema.org/draft/2020-12/schema"},
          {"title", "An EDID as text, version 1 of the form"},
          {"type", "object"},
          {"required", {"blocks"}},
          {"properties",
           {{"$schema", {{"type", "string"}}},
            {kVersionKey, {{"const", kVersion}}},
            {"blocks",
             {{"type", "array"}, {"minItems", 1}, {"maxItems", kMostBlocks}, {"items", {{"$ref", "#/$defs/block"}}}}}}},
          {"additionalProperties", false},
          {"$defs", std::move(defs)}};
}

}  // namespace reedid::document
