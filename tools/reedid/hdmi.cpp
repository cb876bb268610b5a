// phys and to-hdmi: the HDMI identity of an image.

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>

#include "commands.h"
#include "describe.h"
#include "loss.h"
#include "output.h"

namespace reedid::tool {
namespace {

constexpr size_t kAddedDataBlocks = 3;  // audio, speakers, HDMI

[[noreturn]] void Refuse(const Image& image, const std::string& why) {
  throw ToolError(Exit::kRefused, fmt::format("{}: {}; nothing was written", image.name(), why));
}

// "1.2.0.0" with one hexadecimal digit a place, or "0x1200".
std::optional<uint16_t> ParseAddress(const std::string& text) {
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

// The library writes the HDMI block anew from what it knows of it; say when that changed more than the address.
void NoteRewrite(const Image& image, ByteVector before, const ByteVector& after) {
  before[4] = after[4];
  before[5] = after[5];
  if (before == after) return;
  const bool onlyGrown =
      after.size() > before.size() && std::equal(before.begin() + 1, before.end(), after.begin() + 1);
  Note(fmt::format("{}: the HDMI block was written anew with its known fields, {} bytes before, {} now; {}",
                   image.name(), before.size(), after.size(),
                   onlyGrown ? "the added ones say nothing" : "other content (as 3D formats) is gone"));
}

Exit ReadPhys(const Image& image, Streams& streams) {
  if (isDVIEdid(image.handle()) != 0) {
    Note(fmt::format("{}: no HDMI block, so no physical address; 'reedid to-hdmi' adds one", image.name()));
    return Exit::kNo;
  }
  streams.Result(PhysAddrText(EDID_GetPhyAddr(image.handle())) + "\n");
  return Exit::kDone;
}

// What stands in the way of adding an HDMI identity without a loss that the user did not ask for.
void CheckConvertible(const Image& image, bool allowLoss) {
  if (!image.IsEdid()) Refuse(image, "a DisplayID structure has no place for an HDMI block");
  if (isDVIEdid(image.handle()) == 0) {
    Refuse(image, fmt::format("is HDMI already, with physical address {}; set another one with 'reedid phys'",
                              PhysAddrText(EDID_GetPhyAddr(image.handle()))));
  }
  const auto blocks = image.blocks();
  if (blocks.size() < 2 || blocks[1].type == EDID_BLOCK_CEA) return;
  GiveUp(image, fmt::format("block 1 ({})", BlockKindName(blocks[1])), allowLoss);
}

}  // namespace

// An address names a path from the root; nothing can stand behind a zero (HDMI 1.4b, 8.7.2).
uint16_t RequireAddress(const std::string& text) {
  const std::optional<uint16_t> address = ParseAddress(text);
  if (!address) {
    throw ToolError(Exit::kUsage, fmt::format("'{}' is no physical address; write it like 1.2.0.0 or 0x1200", text));
  }
  bool ended = false;
  for (int shift = 12; shift >= 0; shift -= 4) {
    const bool zero = (*address >> shift & 0xF) == 0;
    if (ended && !zero) {
      Note(fmt::format("{}: no port can have this address, a digit other than 0 stands behind a 0", text));
      break;
    }
    ended = ended || zero;
  }
  return *address;
}

Exit RunPhys(const PhysOptions& options, Streams& streams) {
  if (options.address.empty() && !options.output.empty()) {
    throw ToolError(Exit::kUsage,
                    "phys with -o sets the address: name it, as in 'reedid phys in.bin 1.2.0.0 -o out.bin'");
  }
  if (!options.address.empty()) RequireOutput(options.output, "phys with an address");
  Image image = Image::Read(options.input);
  if (options.address.empty()) return ReadPhys(image, streams);
  const uint16_t address = RequireAddress(options.address);
  if (isDVIEdid(image.handle()) != 0) Refuse(image, "no HDMI block to hold the address; add one with 'reedid to-hdmi'");
  const ByteVector before = FindHdmiBytes(image);
  const CtaContent content = CountCtaContent(image);
  if (EDID_SetPhyAddr(image.handle(), address) != 0) {
    Refuse(image, "the HDMI block cannot be written anew, for the reason given above");
  }
  const ByteVector after = FindHdmiBytes(image);
  CheckLoss(image, content, options.allowLoss);
  if (before.size() >= 6 && after.size() >= 6) NoteRewrite(image, before, after);
  WriteOutput(options.output, image.Generate(), streams);
  return Exit::kDone;
}

Exit RunToHdmi(const ToHdmiOptions& options, Streams& streams) {
  RequireOutput(options.output, "to-hdmi");
  const uint16_t address = RequireAddress(options.address);
  Image image = Image::Read(options.input);
  CheckConvertible(image, options.allowLoss);
  CtaContent content = CountCtaContent(image);
  content.dataBlocks += kAddedDataBlocks;
  // The library leaves out what does not fit and still succeeds; an image without the HDMI block is no result.
  if (EDID_DVItoHDMI(image.handle(), address) != 0 || isDVIEdid(image.handle()) != 0 ||
      EDID_GetPhyAddr(image.handle()) != address) {
    Refuse(image, "there is no room for the HDMI block in the CTA-861 extension");
  }
  CheckLoss(image, content, options.allowLoss);
  WriteOutput(options.output, image.Generate(), streams);
  return Exit::kDone;
}

}  // namespace reedid::tool
