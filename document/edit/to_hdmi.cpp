#include "document/edit/to_hdmi.h"

#include <fmt/format.h>

#include <utility>

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
  if (EDID_MakeHdmi(image.handle(), kFirstPort) != 0) Refuse(image, "there is no room for the HDMI block");
  return SetAddress(std::move(image), address);
}

}  // namespace reedid::document
