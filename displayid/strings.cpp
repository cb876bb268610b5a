// ASCII strings: serial number, tag 0x0A, and data string, tag 0x0B (DisplayID 1.3, 4.11 and 4.12). The payload is the
// text, without a terminator.

#include <algorithm>
#include <cstring>

#include "base/bytes.h"
#include "base/log.h"
#include "displayid/codec.h"

namespace reedid {
namespace {

int32_t GetText(const DispIdDataBlock* entry, uint8_t tag, char* text, uint32_t textSize, Caller caller = {}) {
  if (!Matches(entry, tag, kDispIdHeaderSize + 1) || text == nullptr) {
    return REEDID_ERR_AS(caller, "invalid parameters");
  }
  const Bytes payload = PayloadOf(*entry);
  if (textSize <= payload.size()) return REEDID_ERR_AS(caller, "invalid parameters");
  payload.CopyTo(text);
  text[payload.size()] = '\0';
  return 0;
}

// What a section cannot hold is cut off and reported.
int32_t SetText(const char* text, DispIdDataBlock* entry, Caller caller = {}) {
  if (text == nullptr || !CanHold(entry)) return REEDID_ERR_AS(caller, "invalid parameters");
  const auto* end = static_cast<const char*>(std::memchr(text, '\0', kMaxDispIdPayload + 1));
  if (end == nullptr) REEDID_ERR_AS(caller, "invalid parameters");
  const size_t length = end == nullptr ? kMaxDispIdPayload : static_cast<size_t>(end - text);
  BeginDataBlock(*entry, {DISPID_TAG_SERIAL_NUMBER, 0, 0}, static_cast<unsigned>(length));
  if (length > 0) std::memcpy(entry->bytes + kDispIdHeaderSize, text, length);
  return 0;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t DispID_GetSerialNumber(const DispIdDataBlock* entry, char* text, uint32_t textSize) {
  return GetText(entry, DISPID_TAG_SERIAL_NUMBER, text, textSize);
}

int32_t DispID_SetSerialNumber(const char* text, DispIdDataBlock* entry) {
  return SetText(text, entry);
}

int32_t DispID_GetDataString(const DispIdDataBlock* entry, char* text, uint32_t textSize) {
  return GetText(entry, DISPID_TAG_DATA_STRING, text, textSize);
}

// Under the tag of a serial number, and read back only as one: odd on purpose, docs/oddities.md.
int32_t DispID_SetDataString(const char* text, DispIdDataBlock* entry) {
  return SetText(text, entry);
}
