// How many timings a data block holds, by its tag (DisplayID 1.3, table 4-1; DisplayID 2.0, table 4-1).

#include "base/bytes.h"
#include "base/log.h"
#include "displayid/codec.h"
#include "displayid/descriptors.h"

namespace reedid {
namespace {

// Type VI descriptors tell their own length; one that the block does not hold whole does not count.
unsigned TypeViCount(const DispIdDataBlock& entry) {
  if (entry.size < kTypeViSize + kDispIdHeaderSize) return 0;
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
      case kTypeITag:
      case kTypeViiTag:
        return payload / kTypeISize;
      case kTypeIiTag:
        return payload / kTypeIiSize;
      case kTypeIiiTag:
        return payload / kTypeIiiSize;
      case kTypeIvTag:
        return payload;
      case kTypeViiiTag:
        return Bit(entry->headerFlags, 0) ? payload / 2 : payload;
      case kVesaBitmapTag:
      case kCtaBitmapTag:
        return Low8(payload * 8 + 1);  // element 0 stands for nothing
      case kTypeVTag:
        return payload / kTypeVSize;
      case kTypeViTag:
        return TypeViCount(*entry);
      case kTypeIxTag:
      case kTypeXTag:
        return payload / FormulaTimingSize(*entry);
      default:
        return 0;
    }
  };
  return static_cast<int32_t>(count());
}
