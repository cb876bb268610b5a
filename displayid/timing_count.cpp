// How many timings a data block holds, by its tag (DisplayID 1.3 and 2.0, section 4).

#include "base/bytes.h"
#include "base/log.h"
#include "displayid/codec.h"
#include "displayid/descriptors.h"

namespace reedid {
namespace {

// Type VI descriptors tell their own length; one that the block does not hold whole does not count.
unsigned TypeViCount(const DispIdDataBlock& entry) {
  unsigned count = 0;
  for (Bytes payload = PayloadOf(entry); payload.size() >= TypeViSizeAt(payload); ++count) {
    payload = payload.From(TypeViSizeAt(payload));
  }
  return count;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t DispID_GetTimingCnt(const DispIdDataBlock* entry) {
  if (entry == nullptr || entry->bytes == nullptr) return REEDID_ERR("invalid parameters");
  const unsigned payload = Low8(entry->size - kDispIdHeaderSize);
  if (payload > kMaxDispIdPayload) return REEDID_ERR("invalid parameters");
  const auto count = [&]() -> unsigned {
    switch (entry->tag) {
      case DISPID_TAG_TYPE_I:
      case DISPID20_TAG_TYPE_VII:
        return payload / kTypeISize;
      case DISPID_TAG_TYPE_II:
        return payload / kTypeIiSize;
      case DISPID_TAG_TYPE_III:
        return payload / kTypeIiiSize;
      case DISPID_TAG_TYPE_IV:
        return payload;
      case DISPID20_TAG_TYPE_VIII:
        return Bit(entry->headerFlags, 0) ? payload / 2 : payload;
      case DISPID_TAG_VESA_TIMINGS:
      case DISPID_TAG_CTA_TIMINGS:
        return Low8(payload * 8 + 1);  // element 0 stands for nothing
      case DISPID_TAG_TYPE_V:
        return payload / kTypeVSize;
      case DISPID_TAG_TYPE_VI:
        return TypeViCount(*entry);
      case DISPID20_TAG_TYPE_IX:
      case DISPID20_TAG_TYPE_X:
        return payload / FormulaTimingSize(*entry);
      default:
        return 0;
    }
  };
  return static_cast<int32_t>(count());
}
