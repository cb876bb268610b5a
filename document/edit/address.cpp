#include "document/edit/address.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "reedid/reedid.hpp"

namespace reedid::document {
namespace {

[[noreturn]] void Refuse(const Image& image, const std::string& why) {
  throw Error(ErrorKind::kRefused, fmt::format("{}: {}", image.name(), why));
}

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

// An address names a path from the root; nothing can stand behind a zero (HDMI 1.4b, 8.7.2).
bool HasDigitBehindZero(uint16_t address) {
  bool ended = false;
  for (int shift = 12; shift >= 0; shift -= 4) {
    const bool zero = (address >> shift & 0xF) == 0;
    if (ended && !zero) return true;
    ended = ended || zero;
  }
  return false;
}

// The bytes of the first HDMI 1.4b block of the image; empty when there is none.
ByteVector FindHdmiBytes(const Image& image) {
  for (const EdidBlock& block : image.blocks()) {
    if (block.type != EDID_BLOCK_CEA) continue;
    const CtaExtension model(block);
    for (const CeaDataBlock& entry : model.DataBlocks()) {
      if (entry.bytes == nullptr || entry.tag != CEA_TAG_VENDOR || entry.size < 4 || entry.size > 31) continue;
      if (CEA_GetVSDBType(&entry) == VSDB_HDMI14B) return {entry.bytes, entry.bytes + entry.size};
    }
  }
  return {};
}

// The library writes the HDMI block anew from what it knows of it; notes when that changed more than the address.
void NoteRewrite(const Image& image, ByteVector before, const ByteVector& after, Notes& notes) {
  before[4] = after[4];
  before[5] = after[5];
  if (before == after) return;
  const bool onlyGrown =
      after.size() > before.size() && std::equal(before.begin() + 1, before.end(), after.begin() + 1);
  notes.push_back(fmt::format("{}: the HDMI block was written anew with its known fields, {} bytes before, {} now; {}",
                              image.name(), before.size(), after.size(),
                              onlyGrown ? "the added ones say nothing" : "other content (as 3D formats) is gone"));
}

}  // namespace

uint16_t ParseAddress(const std::string& text, Notes& notes) {
  const std::optional<uint16_t> address = ReadAddress(text);
  if (!address) {
    throw Error(ErrorKind::kArgument,
                fmt::format("'{}' is no physical address; write it like 1.2.0.0 or 0x1200", text));
  }
  if (HasDigitBehindZero(*address)) {
    notes.push_back(fmt::format("{}: no port can have this address, a digit other than 0 stands behind a 0", text));
  }
  return *address;
}

std::optional<uint16_t> AddressOf(const Image& image) {
  if (isDVIEdid(image.handle()) != 0) return std::nullopt;
  return EDID_GetPhyAddr(image.handle());
}

Image SetAddress(Image image, uint16_t address, Loss loss, Notes& notes) {
  if (isDVIEdid(image.handle()) != 0) Refuse(image, "no HDMI block to hold the address; add one with 'reedid to-hdmi'");
  const ByteVector before = FindHdmiBytes(image);
  const CtaContent content = CountCtaContent(image);
  if (EDID_SetPhyAddr(image.handle(), address) != 0) {
    Refuse(image, "the HDMI block cannot be written anew, for the reason given above");
  }
  const ByteVector after = FindHdmiBytes(image);
  CheckLoss(image, content, loss, notes);
  if (before.size() >= 6 && after.size() >= 6) NoteRewrite(image, before, after, notes);
  return image;
}

Image SetAddressUnchecked(Image image, uint16_t address) {
  if (EDID_SetPhyAddr(image.handle(), address) != 0) Refuse(image, "no HDMI block that can hold the address");
  return image;
}

}  // namespace reedid::document
