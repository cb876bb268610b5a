// Text descriptors (EDID 1.4, 3.10.3.1, 3.10.3.2, 3.10.3.4): serial number, data string, product name.
//
//  5-17  the characters; fewer than 13 are followed by a line feed, then spaces

#include "base/log.h"
#include "vesa/descriptor.h"
#include "vesa/model.h"

namespace reedid {
namespace {

constexpr unsigned kMaxText = kDtdSize - kDescriptorPayload;
constexpr uint8_t kLineFeed = 0x0A;
constexpr uint8_t kSpace = 0x20;

int32_t GetText(const DtdSlot* slot, uint8_t tag, char* text, uint32_t textSize, const char* kind, Caller caller = {}) {
  if (slot == nullptr || slot->flag != tag || text == nullptr || textSize < kMaxText + 1) {
    return REEDID_ERR_AS(caller, "invalid parameters");
  }
  if (!HasPlainHeader(*slot, tag)) return REEDID_ERR_AS(caller, "invalid %s descriptor", kind);
  unsigned length = 0;
  for (; length < kMaxText && slot->bytes[kDescriptorPayload + length] != kLineFeed; ++length) {
    text[length] = static_cast<char>(slot->bytes[kDescriptorPayload + length]);
  }
  text[length] = '\0';
  return 0;
}

int32_t SetText(const char* text, uint8_t tag, DtdSlot* slot, Caller caller = {}) {
  if (text == nullptr || slot == nullptr) return REEDID_ERR_AS(caller, "invalid parameters");
  BeginDescriptor(*slot, tag);
  uint8_t* payload = slot->bytes + kDescriptorPayload;
  unsigned length = 0;
  for (; length < kMaxText && text[length] != '\0'; ++length) payload[length] = static_cast<uint8_t>(text[length]);
  if (length < kMaxText) payload[length++] = kLineFeed;
  for (; length < kMaxText; ++length) payload[length] = kSpace;
  return 0;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t VESA_GetSerialNumber(const DtdSlot* slot, char* text, uint32_t textSize) {
  return GetText(slot, EDID_DESCRIPTOR_SERIAL_NUMBER, text, textSize, "product serail number");
}

int32_t VESA_SetSerialNumber(const char* text, DtdSlot* slot) {
  return SetText(text, EDID_DESCRIPTOR_SERIAL_NUMBER, slot);
}

int32_t VESA_GetDataString(const DtdSlot* slot, char* text, uint32_t textSize) {
  return GetText(slot, EDID_DESCRIPTOR_DATA_STRING, text, textSize, "alphanumeric data string");
}

int32_t VESA_SetDataString(const char* text, DtdSlot* slot) {
  return SetText(text, EDID_DESCRIPTOR_DATA_STRING, slot);
}

int32_t VESA_GetProductName(const DtdSlot* slot, char* text, uint32_t textSize) {
  return GetText(slot, EDID_DESCRIPTOR_PRODUCT_NAME, text, textSize, "product name string");
}

int32_t VESA_SetProductName(const char* text, DtdSlot* slot) {
  return SetText(text, EDID_DESCRIPTOR_PRODUCT_NAME, slot);
}
