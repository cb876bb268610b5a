#include "document/edit/limits.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "document/account/queries.h"
#include "reedid/reedid.hpp"

namespace reedid::document {
namespace {

constexpr Link kHdmi20 = {600000, true, EDID_LimitToHDMI20, CEA_LimitToHDMI20};
constexpr Link kHdmi14 = {340000, false, EDID_LimitToHDMI14, CEA_LimitToHDMI14};

constexpr Limit kLimits[] = {{"hdmi20", &kHdmi20, nullptr},
                             {"hdmi14", &kHdmi14, nullptr},
                             {"pcm2ch", nullptr, EDID_LimitToPCM2CH},
                             {"sdr", nullptr, EDID_LimitToSDR},
                             {"frl40g", nullptr, EDID_LimitToFrl40G}};

// The library cannot write an extension that has timings but no data blocks, so it would keep timings that are too
// fast. A data block that comes and goes leaves an empty collection, which can be written.
void LimitBareExtension(const Link& link, const Rates& rates, EdidBlock& block) {
  const CtaExtension model(block);
  if (!model || model->dataBlocks != nullptr) return;
  uint8_t passing[] = {CEA_TAG_VIDEO << 5 | 1, 1};
  const CeaDataBlock entry = {CEA_TAG_VIDEO, 0, sizeof passing, passing};
  if (CEA_AddDataBlock(model.get(), &entry, 0) != 0) return;
  CEA_DeleteDataBlock(model.get(), &model->dataBlocks[0]);
  link.limitExtension(model.get(), rates.data(), static_cast<uint32_t>(rates.size()));
  uint8_t bytes[REEDID_BLOCK_SIZE];
  EdidBlock written = {EDID_BLOCK_CEA, sizeof bytes, sizeof bytes, bytes};
  if (model.GenerateInto(written) == 0) std::copy(bytes, bytes + sizeof bytes, block.bytes);
}

void LimitLink(const Link& link, const Rates& rates, const Image& image) {
  link.limitImage(image.handle(), rates.data(), static_cast<uint32_t>(rates.size()));
  for (EdidBlock& block : image.blocks()) {
    if (block.type == EDID_BLOCK_CEA) LimitBareExtension(link, rates, block);
  }
}

}  // namespace

const Limit& FindLimit(const std::string& name) {
  std::string names;
  for (const Limit& limit : kLimits) {
    if (name == limit.name) return limit;
    names += fmt::format("{}{}", names.empty() ? "" : ", ", limit.name);
  }
  throw Error(ErrorKind::kArgument, fmt::format("'{}' is no limit; there are {}", name, names));
}

Rates ParseRates(const std::string& text) {
  Rates rates;
  const char* at = text.data();
  const char* const end = at + text.size();
  for (;;) {
    uint16_t rate = 0;
    const auto [next, error] = std::from_chars(at, end, rate);
    const bool right = error == std::errc() && rate != 0 && (next == end || *next == ',');
    if (!right) {
      throw Error(ErrorKind::kArgument, fmt::format("'{}' is no list of rates; write it like 120,60,50", text));
    }
    rates.push_back(rate);
    if (next == end) return rates;
    at = next + 1;
  }
}

Image ApplyLimit(Image image, const Limit& limit, const Rates& rates) {
  if (limit.link != nullptr) {
    LimitLink(*limit.link, rates.empty() ? LinkRates(image) : rates, image);
  } else {
    limit.apply(image.handle());
  }
  return image;
}

}  // namespace reedid::document
