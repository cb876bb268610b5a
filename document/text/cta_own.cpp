#include "document/text/cta_own.h"

#include <fmt/format.h>

#include <algorithm>

namespace reedid::document::text {
namespace {

constexpr size_t kMostBytes = 31;  // behind the header of a data block

bool IsVic(int64_t vic) {
  return (vic >= 1 && vic <= 127) || (vic >= 193 && vic <= 219);
}

// CTA-861, 7.5.1: bit 7 marks VICs up to 64 as native.
bool IsNative(uint8_t svd) {
  return svd > 128 && svd <= 192;
}

unsigned VicOf(uint8_t svd) {
  return IsNative(svd) ? svd & 0x7Fu : svd;
}

std::vector<uint8_t> VicsFromJson(const Json& json, const Place& place) {
  std::vector<uint8_t> vics;
  if (!json.is_array()) place.Fail(fmt::format("{} is no list of VICs", Shown(json)));
  for (size_t i = 0; json.is_array() && i < json.size(); ++i) {
    const auto vic = NumberOf(json[i]);
    if (!vic || !IsVic(*vic)) {
      place.At(i).Fail(fmt::format("{} is no VIC (1..127, 193..219)", Shown(json[i])));
    } else {
      vics.push_back(static_cast<uint8_t>(*vic));
    }
  }
  return vics;
}

ByteVector Block(const Kind& kind, const ByteVector& payload, const Place& place) {
  ByteVector bytes = kind.head;
  bytes.insert(bytes.end(), payload.begin(), payload.end());
  const size_t size = bytes.size() - 1;
  if (size > kMostBytes) place.Fail(fmt::format("needs {} more bytes than a data block has", size - kMostBytes));
  bytes[0] = static_cast<uint8_t>(bytes[0] | (size & kMostBytes));
  return bytes;
}

// Native marks tell the VICs, so that only all descriptors of one VIC can carry them.
bool ReadVideo(const Kind& kind, Bytes bytes, const Context& context, Json& json) {
  Json vics = Json::array(), native = Json::array();
  for (const uint8_t svd : bytes.subspan(kind.head.size())) {
    if (!IsVic(VicOf(svd))) return false;
    vics.push_back(VicOf(svd));
    if (IsNative(svd) && std::ranges::find(native, Json(VicOf(svd))) == native.end()) native.push_back(VicOf(svd));
  }
  json["vics"] = std::move(vics);
  if (context.all || !native.empty()) json["nativeVics"] = std::move(native);
  return true;
}

void WriteVideo(const Kind& kind, const Json& json, const Context&, const Place& place, ByteVector& bytes) {
  CheckKeys(json, {"vics", "nativeVics"}, place);
  ByteVector svds = VicsFromJson(json.value("vics", Json::array()), place.Key("vics"));
  const Json native = ListOf(json, "nativeVics", place);
  for (size_t i = 0; i < native.size(); ++i) {
    const Place at = place.Key("nativeVics").At(i);
    const auto vic = NumberOf(native[i]);
    const auto it = std::ranges::find(svds, vic.value_or(0));
    if (it == svds.end()) at.Warn(fmt::format("{} is none of the VICs", Shown(native[i])));
    if (it != svds.end() && *vic > 64) at.Fail(fmt::format("{} cannot be marked native, VICs up to 64 can", *vic));
    if (it != svds.end() && *vic <= 64) std::ranges::replace(svds, *it, static_cast<uint8_t>(*vic | 128));
  }
  bytes = Block(kind, svds, place);
}

Json VideoSchema(const Kind&) {
  const Json vics = {{"type", "array"}, {"items", {{"type", "integer"}, {"minimum", 1}, {"maximum", 219}}}};
  return {{"vics", vics}, {"nativeVics", vics}};
}

// CTA-861, 7.5.11: bit n of the map stands for the nth descriptor. A map without bits stands for all.
bool ReadMap(const Kind& kind, Bytes bytes, const Context& context, Json& json) {
  const Bytes map = bytes.subspan(kind.head.size());
  if (map.empty()) {
    json["all"] = true;
    return true;
  }
  Json vics = Json::array();
  for (size_t i = 0; i < 8 * map.size(); ++i) {
    if ((map[i / 8] >> i % 8 & 1) == 0) continue;
    if (i >= context.svds.size()) return false;
    vics.push_back(VicOf(context.svds[i]));
  }
  json["vics"] = std::move(vics);
  return true;
}

void WriteMap(const Kind& kind, const Json& json, const Context& context, const Place& place, ByteVector& bytes) {
  CheckKeys(json, {"vics", "all"}, place);
  ByteVector map((context.svds.size() + 7) / 8);
  const std::vector<uint8_t> vics = VicsFromJson(json.value("vics", Json::array()), place.Key("vics"));
  if (json.contains("all") && !vics.empty()) place.Key("all").Fail("stands beside a list of VICs");
  for (size_t at = 0; at < vics.size(); ++at) {
    const auto it = std::ranges::find_if(context.svds, [&](uint8_t svd) { return VicOf(svd) == vics[at]; });
    const auto i = static_cast<size_t>(it - context.svds.begin());
    if (it == context.svds.end()) {
      place.Key("vics").At(at).Fail(fmt::format("{} is in no video block of this extension", vics[at]));
    } else {
      map[i / 8] = static_cast<uint8_t>(map[i / 8] | 1 << i % 8);
    }
  }
  while (!map.empty() && map.back() == 0) map.pop_back();
  if (map.empty() && !json.contains("all")) place.Key("vics").Fail("none; a map without any means all (\"all\": true)");
  bytes = Block(kind, map, place);
}

Json MapSchema(const Kind& kind) {
  return {{"vics", VideoSchema(kind)["vics"]}, {"all", {{"type", "boolean"}}}};
}

bool ReadOverride(const Kind&, Bytes bytes, const Context& context, Json& json) {
  json = Json::object();
  if (bytes.size() != 3) return false;
  if (context.all || bytes[2] != context.extensions) json["extensionBlocks"] = bytes[2];
  return true;
}

void WriteOverride(const Kind& kind, const Json& json, const Context& context, const Place& place, ByteVector& bytes) {
  CheckKeys(json, {"extensionBlocks"}, place);
  const Json count = json.value("extensionBlocks", Json(context.extensions));
  const auto number = NumberOf(count);
  if (!number || *number < 0 || *number > 255)
    place.Key("extensionBlocks").Fail(fmt::format("{} is not a number from 0 to 255", Shown(count)));
  bytes = Block(kind, {static_cast<uint8_t>(number.value_or(0))}, place);
}

Json OverrideSchema(const Kind&) {
  return {{"extensionBlocks", {{"type", "integer"}, {"minimum", 0}, {"maximum", 255}}}};
}

}  // namespace

const Form kVideoForm = {ReadVideo, WriteVideo, VideoSchema};
const Form kMapForm = {ReadMap, WriteMap, MapSchema};
const Form kOverrideForm = {ReadOverride, WriteOverride, OverrideSchema};

}  // namespace reedid::document::text
