#include "document/check/y420_repair.h"

#include <algorithm>

#include "document/check/draft.h"

namespace reedid::document::check {

bool MapMarks(const DataBlock& map, size_t n) {
  return map.L() <= 1 || (map.bytes[2 + n / 8] >> n % 8 & 1) != 0;
}

std::vector<Patch> ClearMapBits(const ImageView& view, const DataBlock& map, const std::function<bool(size_t)>& drop) {
  if (map.L() <= 1) return {};
  Draft draft(view);
  bool isEmpty = true;
  for (size_t n = 0; n < (map.bytes.size() - 2) * 8; ++n) {
    if (!MapMarks(map, n)) continue;
    const bool drops = drop(n);
    uint8_t& byte = draft[map.at + 2 + n / 8];
    if (drops) byte = static_cast<uint8_t>(byte & ~(1u << n % 8));
    isEmpty = isEmpty && drops;
  }
  if (!isEmpty) return draft.Changes();
  const auto isOther = [&](const DataBlock& block) {
    return block.at != map.at && (block.kind == kY420Video || block.kind == kY420Map);
  };
  if (view.sink && view.sink->Count() >= 4 && std::ranges::none_of(view.dataBlocks, isOther)) {
    draft[view.sink->At(4)] &= 0xF8;
  }
  draft.CutDataBlock(map);
  return draft.Changes();
}

}  // namespace reedid::document::check
