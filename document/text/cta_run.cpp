#include "document/text/cta_run.h"

#include <algorithm>

namespace reedid::document::text {
namespace {

constexpr size_t SizeOf(uint8_t header) {
  return 1 + (header & 0x1Fu);
}

// The parts of a run: data blocks, then what is left.
std::vector<Bytes> Split(Bytes run) {
  std::vector<Bytes> parts;
  while (!run.empty() && std::ranges::any_of(run, [](uint8_t byte) { return byte != 0; })) {
    const auto zeros =
        static_cast<size_t>(std::ranges::find_if(run, [](uint8_t byte) { return byte != 0; }) - run.begin());
    const size_t size = zeros > 0 ? zeros : std::min(SizeOf(run[0]), run.size());
    parts.push_back(run.first(size));
    run = run.subspan(size);
  }
  return parts;
}

bool IsVideo(Bytes block) {
  return !block.empty() && block[0] >> 5 == CEA_TAG_VIDEO && SizeOf(block[0]) == block.size();
}

void AddSvds(Bytes block, ByteVector& svds) {
  if (IsVideo(block)) svds.insert(svds.end(), block.begin() + 1, block.end());
}

bool IsMap(const Json& json) {
  return json.is_object() && json.value("kind", Json()) == "ycc420Map";
}

}  // namespace

Json CtaRunToJson(Bytes run, Context context) {
  Json parts = Json::array();
  context.svds.clear();
  for (const Bytes part : Split(run)) AddSvds(part, context.svds);
  for (const Bytes part : Split(run)) parts.push_back(PartToJson(kCtaDataBlocks, part, context));
  return parts;
}

// The map comes when all that it counts is there.
ByteVector CtaRunFromJson(const Json& json, Context context, const Place& place) {
  Json others = json;
  for (Json& part : others) {
    if (IsMap(part)) part = {{"bytes", ""}};
  }
  std::vector<ByteVector> parts = PartsFromJson(kCtaDataBlocks, others, context, place);
  context.svds.clear();
  for (const ByteVector& part : parts) AddSvds(part, context.svds);
  for (size_t i = 0; i < parts.size(); ++i) {
    if (IsMap(json[i])) parts[i] = PartFromJson(kCtaDataBlocks, json[i], context, place.At(i));
  }
  ByteVector run;
  for (const ByteVector& part : parts) run.insert(run.end(), part.begin(), part.end());
  return run;
}

}  // namespace reedid::document::text
