#include "document/edit/to_hdmi.h"

#include <fmt/format.h>

#include "document/account/values.h"
#include "document/edit/address.h"

namespace reedid::document {
namespace {

constexpr size_t kAddedDataBlocks = 3;  // audio, speakers, HDMI

[[noreturn]] void Refuse(const Image& image, const std::string& why) {
  throw Error(ErrorKind::kRefused, fmt::format("{}: {}", image.name(), why));
}

// What stands in the way of adding an HDMI identity without a loss that nobody asked for.
void CheckConvertible(const Image& image, Loss loss, Notes& notes) {
  if (!image.IsEdid()) Refuse(image, "a DisplayID structure has no place for an HDMI block");
  if (const auto address = AddressOf(image)) {
    Refuse(image, fmt::format("is HDMI already, with physical address {}; set another one with 'reedid phys'",
                              PhysAddrText(*address)));
  }
  const auto blocks = image.blocks();
  if (blocks.size() < 2 || blocks[1].type == EDID_BLOCK_CEA) return;
  GiveUp(image, fmt::format("block 1 ({})", BlockKindName(blocks[1])), loss, notes);
}

}  // namespace

Image ToHdmi(Image image, uint16_t address, Loss loss, Notes& notes) {
  CheckConvertible(image, loss, notes);
  CtaContent content = CountCtaContent(image);
  content.dataBlocks += kAddedDataBlocks;
  // The library leaves out what does not fit and still succeeds; an image without the HDMI block is no result.
  if (EDID_DVItoHDMI(image.handle(), address) != 0 || AddressOf(image) != address) {
    Refuse(image, "there is no room for the HDMI block in the CTA-861 extension");
  }
  CheckLoss(image, content, loss, notes);
  return image;
}

}  // namespace reedid::document
