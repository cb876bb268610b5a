#include "document/text/displayid_own.h"

#include <fmt/format.h>

#include <algorithm>

#include "document/text/cta_run.h"

namespace reedid::document::text {
namespace {

constexpr size_t kHeader = 3, kMostBytes = 248;

void Finish(const Kind& kind, const ByteVector& payload, const Place& place, ByteVector& bytes) {
  bytes = kind.head;
  bytes.resize(kHeader);
  bytes.insert(bytes.end(), payload.begin(), payload.end());
  if (payload.size() > kMostBytes)
    place.Fail(fmt::format("needs {} more bytes than a data block has", payload.size() - kMostBytes));
  bytes[2] = static_cast<uint8_t>(payload.size());
}

bool ReadBitmap(const Kind&, Bytes bytes, const Context&, Json& json) {
  Json ids = Json::array();
  const Bytes bits = bytes.subspan(kHeader);
  for (size_t i = 0; i < 8 * bits.size(); ++i) {
    if ((bits[i / 8] >> i % 8 & 1) != 0) ids.push_back(i + 1);
  }
  json["ids"] = std::move(ids);
  return true;
}

// DisplayID 1.3, tables 4-30 and 4-31: ten bytes of DMT identifiers, eight of VICs.
void WriteBitmap(const Kind& kind, const Json& json, const Context&, const Place& place, ByteVector& bytes) {
  ByteVector bits(kind.head[0] == DISPID_TAG_VESA_TIMINGS ? 10 : 8);
  CheckKeys(json, {"ids"}, place);
  const Json ids = ListOf(json, "ids", place);
  for (size_t i = 0; i < ids.size(); ++i) {
    const int64_t id = NumberOf(ids[i]).value_or(0) - 1;
    if (id < 0 || id >= static_cast<int64_t>(8 * bits.size())) {
      place.Key("ids").At(i).Fail(fmt::format("{} has no bit (1..{})", Shown(ids[i]), 8 * bits.size()));
    } else {
      uint8_t& byte = bits[static_cast<size_t>(id) / 8];
      byte = static_cast<uint8_t>(byte | 1 << id % 8);
    }
  }
  Finish(kind, bits, place, bytes);
}

Json BitmapSchema(const Kind&) {
  return {{"ids", {{"type", "array"}, {"items", {{"type", "integer"}}}}}};
}

bool ReadCtaBlocks(const Kind&, Bytes bytes, const Context& context, Json& json) {
  json["dataBlocks"] = CtaRunToJson(bytes.subspan(kHeader), context);
  return true;
}

void WriteCtaBlocks(const Kind& kind, const Json& json, const Context& context, const Place& place, ByteVector& bytes) {
  CheckKeys(json, {"dataBlocks"}, place);
  const ByteVector run = CtaRunFromJson(json.value("dataBlocks", Json::array()), context, place.Key("dataBlocks"));
  Finish(kind, run, place, bytes);
}

Json CtaBlocksSchema(const Kind&) {
  return {{"dataBlocks", {{"type", "array"}, {"items", {{"$ref", "#/$defs/ctaDataBlock"}}}}}};
}

}  // namespace

const Form kBitmapForm = {ReadBitmap, WriteBitmap, BitmapSchema};
const Form kCtaBlocksForm = {ReadCtaBlocks, WriteCtaBlocks, CtaBlocksSchema};

}  // namespace reedid::document::text
