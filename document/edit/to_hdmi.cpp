#include "document/edit/to_hdmi.h"

#include <fmt/format.h>

#include "document/account/values.h"
#include "document/edit/address.h"
#include "document/edit/limits.h"

namespace reedid::document {
namespace {

constexpr size_t kInputByte = 20;

[[noreturn]] void Refuse(const Image& image, const std::string& why) {
  throw Error(ErrorKind::kRefused, fmt::format("{}: {}", image.name(), why));
}

void CheckConvertible(const Image& image) {
  if (!image.IsEdid()) Refuse(image, "a DisplayID structure has no place for an HDMI block");
  if ((image.blocks()[0].bytes[kInputByte] & 0x80) == 0) {
    Refuse(image, "describes an analog input, which no HDMI source can feed");
  }
  if (const auto address = AddressOf(image)) {
    Refuse(image, fmt::format("is HDMI already, with physical address {}; set another one with 'reedid phys'",
                              PhysAddrText(*address)));
  }
}

}  // namespace

Image ToHdmi(Image image, uint16_t address, Notes& notes) {
  CheckConvertible(image);
  if (!TimingsAbove(image, EDID_LINK_HDMI20).empty()) {
    notes.push_back(
        fmt::format("{}: timings above 600 MHz, the most of HDMI without FRL, are limited as by hdmi20", image.name()));
  }
  constexpr uint16_t kFirstPort = 0x1000;
  const int32_t result = EDID_MakeHdmi(image.handle(), kFirstPort);
  if (result == EDID_LINK_NO_ROOM) Refuse(image, "block 1, its CTA-861 extension, has no room for the HDMI block");
  if (result != 0) Refuse(image, WhyNotLimited(image, result));
  if (EDID_PatchPhyAddr(image.handle(), address) != 0) Refuse(image, "its HDMI block ends before the address");
  return image;
}

}  // namespace reedid::document
