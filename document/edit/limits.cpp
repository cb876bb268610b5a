#include "document/edit/limits.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "document/edit/data_blocks.h"
#include "document/printable.h"
#include "reedid/reedid.hpp"

namespace reedid::document {
namespace {

// HDMI 2.1 with 40 Gbit/s, and nothing else limited.
constexpr EdidLink kFrl40G = {0, 0, 5, 1, 1, 0, 0, 0, 0, 0, nullptr, 0};

constexpr Limit kLimits[] = {
    {"hdmi20", "HDMI 2.0: 600 MHz, 4:2:0", &EDID_LINK_HDMI20, nullptr},
    {"hdmi14", "HDMI 1.4: 340 MHz", &EDID_LINK_HDMI14, nullptr},
    {"dvi", "single link DVI: 165 MHz, no sound", &EDID_LINK_DVI, nullptr},
    {"300mhz-420", "300 MHz, 4:2:0", &EDID_LINK_300MHZ_420, nullptr},
    {"capture-165mhz", "165 MHz, 8 bits a colour", &EDID_LINK_CAPTURE_165MHZ, nullptr},
    {"frl3", "HDMI 2.1, 24 Gbit/s", &EDID_LINK_FRL3, nullptr},
    {"frl4", "HDMI 2.1, 32 Gbit/s", &EDID_LINK_FRL4, nullptr},
    {"frl5", "HDMI 2.1, 40 Gbit/s", &EDID_LINK_FRL5, nullptr},
    {"frl6", "HDMI 2.1, 48 Gbit/s", &EDID_LINK_FRL6, nullptr},
    {"frl40g", "FRL rates up to 40 Gbit/s, timings as they are", &kFrl40G, nullptr},
    {"pcm2ch", "two-channel L-PCM", nullptr, EDID_LimitToStereo},
    {"sdr", "no HDR", nullptr, EDID_StripHdr},
};

std::string Describe(const OfferedTiming& offer) {
  const DtdTiming& t = offer.timing;
  const unsigned lines = t.interlaced != 0 ? t.vactive * 2u : t.vactive;
  const std::string kind = offer.vic != 0 ? fmt::format("VIC {}", offer.vic) : "timing";
  return fmt::format("{} {}x{}{} {}.{:03} Hz {}.{:03} MHz", kind, t.hactive, lines, t.interlaced != 0 ? "i" : "",
                     offer.rate / 1000, offer.rate % 1000, t.pixelClock / 1000, t.pixelClock % 1000);
}

// The block of the first HDMI block that cannot hold a TMDS clock yet.
size_t HdmiBlockOf(const Image& image) {
  constexpr size_t kTmdsClock = 7;
  const uint8_t* found = nullptr;
  VisitDataBlocks(image, [&](std::span<const uint8_t> bytes) {
    if (found == nullptr && IsVendorBlock(bytes, REEDID_OUI_HDMI) && bytes.size() <= kTmdsClock) found = bytes.data();
  });
  const auto holds = [=](const EdidBlock& block) { return found >= block.bytes && found < block.bytes + block.size; };
  const auto blocks = image.blocks();
  return static_cast<size_t>(std::ranges::find_if(blocks, holds) - blocks.begin());
}

}  // namespace

std::string WhyNotLimited(const Image& image, int32_t result) {
  switch (result) {
    case EDID_LINK_NO_TIMING:
      return "the preferred timing (block 0, descriptor 1) needs more, and so does even 640x480 at 60 Hz in its place";
    case EDID_LINK_NO_ROOM:
      return fmt::format("block {}, a CTA-861 extension, has no byte left to state the TMDS clock in its HDMI block",
                         HdmiBlockOf(image));
    case EDID_LINK_DAMAGED:
      return "a CTA-861 extension counts bytes as timings that are none; mend it first, 'reedid check' names it";
    default:
      return "no memory";
  }
}

std::span<const Limit> Limits() {
  return kLimits;
}

const Limit& FindLimit(const std::string& name) {
  std::string names;
  for (const Limit& limit : kLimits) {
    if (name == limit.name) return limit;
    names += fmt::format("{}{}", names.empty() ? "" : ", ", limit.name);
  }
  throw Error(ErrorKind::kArgument, fmt::format("'{}' is no limit; there are {}", Shortened(name), names));
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
      throw Error(ErrorKind::kArgument,
                  fmt::format("'{}' is no list of rates; write it like 120,60,50", Shortened(text)));
    }
    rates.push_back(rate * 1000u);
    if (next == end) return rates;
    at = next + 1;
  }
}

Image ApplyLimit(Image image, const Limit& limit, const Rates& rates) {
  if (limit.link == nullptr) {
    limit.apply(image.handle());
    return image;
  }
  return ApplyLink(std::move(image), *limit.link, limit.name, rates);
}

Image ApplyLink(Image image, const EdidLink& asked, const std::string& name, const Rates& rates) {
  EdidLink link = asked;
  link.rates = rates.data();
  link.rateCount = static_cast<uint32_t>(rates.size());
  const int32_t result = EDID_LimitToLink(image.handle(), &link);
  if (result != 0) {
    throw Error(ErrorKind::kRefused,
                fmt::format("{}: not held to {}: {}", image.name(), name, WhyNotLimited(image, result)));
  }
  return image;
}

std::vector<std::string> TimingsAbove(const Image& image, const EdidLink& link) {
  std::vector<std::string> above;
  if (link.maxFrlRate != 0 || link.maxTmdsClock == 0) return above;
  for (const OfferedTiming& offer : image.Timings()) {
    const uint32_t clock = offer.timing.pixelClock;
    const bool halves = link.ycc420 != 0 && offer.ycc420 != YCC420_NO;
    if ((halves ? clock / 2 + clock % 2 : clock) > link.maxTmdsClock) above.push_back(Describe(offer));
  }
  return above;
}

}  // namespace reedid::document
