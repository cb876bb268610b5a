#include "document/plot/display_gamut.h"

#include "document/read/data_blocks.h"
#include "reedid/reedid.hpp"

namespace reedid::document {
namespace {

Chromaticity Coordinates(uint16_t x, uint16_t y, double unit) {
  return {x / unit, y / unit};
}

// VesaBlock and DisplayParams20Record name these fields alike; nothing but zeros is nothing stated.
template <class Record>
std::optional<Gamut> ReadGamut(const Record& r, double unit) {
  const Gamut gamut = {Coordinates(r.redX, r.redY, unit), Coordinates(r.greenX, r.greenY, unit),
                       Coordinates(r.blueX, r.blueY, unit), Coordinates(r.whiteX, r.whiteY, unit)};
  if ((r.redX | r.redY | r.greenX | r.greenY | r.blueX | r.blueY) == 0) return std::nullopt;
  return gamut;
}

std::optional<Gamut> SectionGamut(const EdidBlock& block) {
  const DisplayIdSection model(block);
  if (!model || model->version != 2) return std::nullopt;
  const auto record = Find<DisplayParams20Record>(model);
  return record ? ReadGamut(*record, 4096) : std::nullopt;
}

std::optional<Gamut> BlockGamut(const EdidBlock& block) {
  if (block.type == EDID_BLOCK_VESA) {
    const BaseBlock base(block);
    return !base ? std::nullopt : ReadGamut(*base, 1024);
  }
  return IsSection(block) ? SectionGamut(block) : std::nullopt;
}

}  // namespace

std::optional<Gamut> GamutOf(const Image& image) {
  for (const EdidBlock& block : image.blocks()) {
    if (auto gamut = BlockGamut(block)) return gamut;
  }
  return std::nullopt;
}

}  // namespace reedid::document
