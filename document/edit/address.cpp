#include "document/edit/address.h"

#include <fmt/format.h>

#include <charconv>
#include <utility>

#include "document/edit/data_blocks.h"
#include "document/edit/to_hdmi.h"
#include "document/printable.h"

namespace reedid::document {
namespace {

std::optional<uint16_t> ReadAddress(const std::string& text) {
  std::string digits;
  if (text.starts_with("0x") || text.starts_with("0X")) {
    digits = text.substr(2);
    if (digits.size() != 4) return std::nullopt;
  } else {
    if (text.size() != 7 || text[1] != '.' || text[3] != '.' || text[5] != '.') return std::nullopt;
    digits = {text[0], text[2], text[4], text[6]};
  }
  uint16_t address = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + 4, address, 16);
  if (error != std::errc() || end != digits.data() + 4) return std::nullopt;
  return address;
}

}  // namespace

uint16_t ParseAddress(const std::string& text, Odd odd) {
  const std::optional<uint16_t> address = ReadAddress(text);
  if (!address) {
    throw Error(ErrorKind::kArgument,
                fmt::format("'{}' is no physical address; write it like 1.2.0.0 or 0x1200", Shortened(text)));
  }
  if (odd == Odd::kRefuse && EDID_IsPortAddress(*address) == 0) {
    throw Error(ErrorKind::kRefused,
                fmt::format("{}: no port has this address: a port is digits other than 0, then zeros; not 0.0.0.0, the "
                            "display's own, nor f.f.f.f, none",
                            text));
  }
  return *address;
}

std::optional<uint16_t> AddressOf(const Image& image) {
  std::optional<uint16_t> address;
  VisitDataBlocks(image, [&](std::span<const uint8_t> bytes) {
    if (address || !IsVendorBlock(bytes, REEDID_OUI_HDMI) || bytes.size() < 6) return;
    address = static_cast<uint16_t>(bytes[4] << 8 | bytes[5]);
  });
  return address;
}

Image SetAddress(Image image, uint16_t address, Notes& notes) {
  if (EDID_PatchPhyAddr(image.handle(), address) == 0) return image;
  Image made = ToHdmi(std::move(image), address, notes);
  notes.push_back(
      fmt::format("{}: had no HDMI block for the address; it is one of HDMI now, as by 'reedid to-hdmi'", made.name()));
  return made;
}

}  // namespace reedid::document
