// A part of an EDID as text and back, so that no byte is lost: keys alone where these give the bytes, else the bytes beside
// them; and bytes that stand beside keys change only where the keys say something else.

#include <fmt/format.h>

#include <algorithm>

#include "document/text/kinds.h"

namespace reedid::document::text {
namespace {

const Kind* KindOf(const Family& family, Bytes bytes) {
  const auto it = std::ranges::find_if(family.kinds(), [&](const Kind& kind) { return family.matches(kind, bytes); });
  return it == family.kinds().end() ? nullptr : &*it;
}

std::vector<std::string> NamesOf(const Family& family) {
  std::vector<std::string> names;
  for (const Kind& kind : family.kinds()) names.emplace_back(kind.name);
  return names;
}

// Byte 1 of a DisplayID data block: the revision in bits 2..0, and flags, some of them fields of the record.
constexpr unsigned kRevision = 7, kFlagsAt = 3;

// Where the record has no fields for them.
bool HasHeaderKeys(const Family& family, const Kind& kind) {
  return family.hasRevision && (kind.record == nullptr || kind.record->Find("revision") == nullptr);
}

bool Read(const Family& family, const Kind& kind, Bytes bytes, const Context& context, Json& json) {
  json = Json::object();
  Json fields = Json::object();
  if (kind.form == nullptr || !kind.form->read(kind, bytes, context, fields)) return false;
  if (HasHeaderKeys(family, kind)) {
    const unsigned revision = bytes[1] & kRevision, flags = bytes[1] >> kFlagsAt & ~unsigned{kind.flags};
    if (context.all || revision != 0) json["revision"] = revision;
    if (context.all || flags != 0) json["headerFlags"] = flags;
  }
  json.update(fields);
  return true;
}

// A key of the header, taken out of the keys.
unsigned TakeNumber(Json& json, const char* key, unsigned most, const Place& place) {
  if (!json.contains(key)) return 0;
  const auto number = NumberOf(json[key]);
  if (!number || *number < 0 || *number > most)
    place.Key(key).Fail(fmt::format("{} is not a number from 0 to {}", Shown(json[key]), most));
  json.erase(key);
  return static_cast<unsigned>(number.value_or(0));
}

// The bytes that keys stand for.
void Write(const Family& family, const Kind& kind, Json json, const Context& context, const Place& place,
           ByteVector& bytes) {
  bytes.clear();
  if (!HasHeaderKeys(family, kind)) return kind.form->write(kind, json, context, place, bytes);
  const bool hasFlags = json.contains("headerFlags"), hasRevision = json.contains("revision");
  const unsigned flags = TakeNumber(json, "headerFlags", 0x1F, place),
                 revision = TakeNumber(json, "revision", kRevision, place);
  const size_t errors = place.problems().errors().size();
  bytes = {kind.head[0], static_cast<uint8_t>(revision | flags << kFlagsAt), 0};
  kind.form->write(kind, json, context, place, bytes);
  if (place.problems().errors().size() != errors) return;
  const unsigned own = static_cast<unsigned>(kind.flags) << kFlagsAt,
                 kept = (hasFlags ? own : 0xF8u) | (hasRevision ? 0 : kRevision);
  bytes[1] = static_cast<uint8_t>((bytes[1] & kept) | ((revision | flags << kFlagsAt) & ~kept));
}

// False when they cannot be written, or say what no codec would read.
bool Write(const Family& family, const Kind& kind, const Json& json, const Context& context, ByteVector& bytes) {
  Problems problems;
  Write(family, kind, json, context, Place("", problems), bytes);
  return !problems.HasErrors();
}

// `bytes` with the bits that differ between two encodings of the same size.
bool Patch(const ByteVector& from, const ByteVector& to, ByteVector& bytes) {
  if (from.size() != to.size() || from.size() != bytes.size()) return false;
  for (size_t i = 0; i < bytes.size(); ++i) {
    const int changed = from[i] ^ to[i];
    bytes[i] = static_cast<uint8_t>((bytes[i] & ~changed) | (to[i] & changed));
  }
  return true;
}

bool SayTheSame(const Family& family, const Kind& kind, const Json& keys, const ByteVector& bytes, Context context,
                bool all) {
  context.all = all;
  Json before;
  if (!Read(family, kind, bytes, context, before)) return false;
  Json after = before;
  after.update(keys);
  return after == before;
}

// Keys that stand beside bytes: the bytes as they are when the keys say the same, else with as few changes as possible.
ByteVector Changed(const Family& family, const Kind& kind, const Json& keys, const ByteVector& bytes,
                   const Context& context, const Place& place) {
  for (const bool all : {false, true}) {
    if (SayTheSame(family, kind, keys, bytes, context, all)) return bytes;
  }
  Context whole = context;
  whole.all = true;
  Json before = Json::object(), again;
  const bool readable = Read(family, kind, bytes, whole, before);
  Json after = before;
  after.update(keys);
  ByteVector fresh, old, patched = bytes;
  const size_t errors = place.problems().errors().size();
  Write(family, kind, after, context, place, fresh);
  if (place.problems().errors().size() != errors) return bytes;
  if (readable && Write(family, kind, before, context, old)) {
    if (old == fresh) return bytes;
    ByteVector check;
    if (Patch(old, fresh, patched) && Read(family, kind, patched, whole, again) &&
        Write(family, kind, again, context, check) && check == fresh) {
      return patched;
    }
  }
  if (old == bytes) return fresh;
  place.Warn(fmt::format("written anew; what the fields do not tell of its bytes is lost (were {})", Hex(bytes)));
  return fresh;
}

}  // namespace

Json PartToJson(const Family& family, Bytes bytes, const Context& context) {
  const Kind* kind = KindOf(family, bytes);
  if (kind == nullptr) return {{"bytes", Hex(bytes)}};
  Json json = {{"kind", kind->name}}, keys;
  ByteVector again;
  if (Read(family, *kind, bytes, context, keys)) {
    json.update(keys);
    if (Write(family, *kind, keys, context, again) && std::ranges::equal(again, bytes)) return json;
    if (HasHeaderKeys(family, *kind) && bytes.size() > 1) {
      json["revision"] = keys["revision"] = bytes[1] & kRevision;
      if (Write(family, *kind, keys, context, again) && std::ranges::equal(again, bytes)) return json;
    }
  }
  json["bytes"] = Hex(bytes);
  return json;
}

ByteVector PartFromJson(const Family& family, const Json& json, const Context& context, const Place& place) {
  if (!json.is_object()) {
    place.Fail(fmt::format("{} is no {}", Shown(json), family.what));
    return {};
  }
  Json keys = json;
  keys.erase("kind");
  keys.erase("bytes");
  const bool hasBytes = json.contains("bytes");
  const ByteVector bytes = hasBytes ? BytesFromJson(json["bytes"], place.Key("bytes")) : ByteVector();
  if (hasBytes && keys.empty()) return bytes;
  const Json name =
      json.value("kind", Json(hasBytes && KindOf(family, bytes) != nullptr ? KindOf(family, bytes)->name : ""));
  const auto it = std::ranges::find_if(family.kinds(), [&](const Kind& kind) { return name == kind.name; });
  if (it == family.kinds().end()) {
    const std::string text = name.is_string() ? name.get<std::string>() : Shown(name);
    place.Key("kind").Fail(text.empty() ? "is missing; what is this to be?"
                                        : fmt::format("{} {}", Shown(name), UnknownText(text, NamesOf(family))));
    return {};
  }
  if (it->form == nullptr) {
    place.Fail(fmt::format("\"{}\" is written as \"bytes\" only", it->name));
    return {};
  }
  if (hasBytes) return Changed(family, *it, keys, bytes, context, place);
  ByteVector fresh;
  Write(family, *it, keys, context, place, fresh);
  return fresh;
}

std::vector<ByteVector> PartsFromJson(const Family& family, const Json& json, const Context& context,
                                      const Place& place) {
  std::vector<ByteVector> parts;
  if (!json.is_array()) place.Fail(fmt::format("{} is no list", Shown(json)));
  for (size_t i = 0; json.is_array() && i < json.size(); ++i) {
    parts.push_back(PartFromJson(family, json[i], context, place.At(i)));
  }
  return parts;
}

Json FamilySchema(const Family& family) {
  const Json hex = {{"type", "string"}, {"pattern", "^([0-9a-fA-F]{2} ?)*$"}};
  Json anyOf = Json::array();
  anyOf.push_back({{"required", {"bytes"}}, {"properties", {{"bytes", hex}}}, {"maxProperties", 2}});
  for (const Kind& kind : family.kinds()) {
    if (kind.form == nullptr) continue;
    Json properties = {{"kind", {{"const", kind.name}}}, {"bytes", hex}};
    if (HasHeaderKeys(family, kind))
      properties.update({{"revision", {{"type", "integer"}}}, {"headerFlags", {{"type", "integer"}}}});
    properties.update(kind.form->schema(kind));
    anyOf.push_back({{"type", "object"},
                     {"required", {"kind"}},
                     {"properties", std::move(properties)},
                     {"additionalProperties", false}});
  }
  return {{"anyOf", std::move(anyOf)}};
}

}  // namespace reedid::document::text
