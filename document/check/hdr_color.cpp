// Colour: primaries and sRGB of the base block, quantisation range and overscan (VCDB), colorimetry and HDR.
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "document/check/draft.h"
#include "document/check/image_view.h"
#include "document/check/report.h"

namespace reedid::document::check {
namespace {

constexpr std::array<uint8_t, 10> kSrgb = {0xEE, 0x91, 0xA3, 0x54, 0x4C, 0x99, 0x26, 0x0F, 0x50, 0x54};
constexpr unsigned kSrgbFlag = 4, kGamma22 = 120;

bool HasSrgbPrimaries(const ImageView& view) {
  return std::ranges::equal(view.image.From(0x19, 10), kSrgb);
}

void SrgbFlagWrong(const ImageView& view, Report& report) {
  if ((view.image[0x18] & kSrgbFlag) == 0 || HasSrgbPrimaries(view)) return;
  Draft draft(view);
  draft[0x18] &= static_cast<uint8_t>(~kSrgbFlag);
  report.Add(view.PlaceAt(0x18), "the primaries are not those of sRGB").Mend(Repair::kAsk, draft.Changes());
}

void SrgbFlagMissing(const ImageView& view, Report& report) {
  if ((view.image[0x18] & kSrgbFlag) != 0 || !HasSrgbPrimaries(view)) return;
  Draft draft(view);
  if (view.image[0x17] == kGamma22) draft[0x18] |= kSrgbFlag;
  report.Add(view.PlaceAt(0x18), fmt::format("the primaries of sRGB, gamma {:.2f}", (view.image[0x17] + 100) / 100.0))
      .Mend(Repair::kSafe, draft.Changes());
}

struct Point {
  int x, y;  // of 1024
};

// Red, green, blue, white (EDID 1.4, table 3.15).
std::array<Point, 4> ReadPoints(const Bytes& b) {
  const unsigned low = b[0x19] << 8 | b[0x1A];
  std::array<Point, 4> points;
  for (unsigned i = 0; i < 4; ++i) {
    points[i].x = static_cast<int>(b[0x1B + 2 * i] << 2 | (low >> (14 - 4 * i) & 3));
    points[i].y = static_cast<int>(b[0x1C + 2 * i] << 2 | (low >> (12 - 4 * i) & 3));
  }
  return points;
}

int Cross(Point a, Point b, Point c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

bool IsOutside(Point white, Point r, Point g, Point b) {
  const int sides[] = {Cross(r, g, white), Cross(g, b, white), Cross(b, r, white)};
  return std::ranges::any_of(sides, [](int side) { return side < 0; }) &&
         std::ranges::any_of(sides, [](int side) { return side > 0; });
}

const char* ChromaticityFault(const std::array<Point, 4>& points) {
  const auto& [r, g, b, white] = points;
  constexpr double kWhole = 1024.0 * 1024.0;
  if (std::ranges::all_of(points, [](Point p) { return p.x == 0 && p.y == 0; })) return "all coordinates are 0";
  if (std::ranges::any_of(points, [](Point p) { return p.y == 0; })) return "a y of 0";
  if (std::ranges::any_of(points, [](Point p) { return p.x + p.y > 1029; })) return "x + y above 1";
  if (std::abs(Cross(r, g, b)) / kWhole < 0.01) return "primaries that span no triangle";
  return IsOutside(white, r, g, b) ? "white outside the triangle of the primaries" : nullptr;
}

void ChromaticityImpossible(const ImageView& view, Report& report) {
  const bool tellsColorType = view.minor < 4 || !view.digital;
  if (tellsColorType && (view.image[0x18] & 0x18) == 0) return;  // monochrome
  const std::array<Point, 4> points = ReadPoints(view.image);
  const char* fault = ChromaticityFault(points);
  if (fault == nullptr) return;
  const auto& [r, g, b, w] = points;
  report.Add(view.PlaceAt(0x19),
             fmt::format("{}: red {:.3f} {:.3f}, green {:.3f} {:.3f}, blue {:.3f} {:.3f}, white {:.3f} {:.3f}", fault,
                         r.x / 1024.0, r.y / 1024.0, g.x / 1024.0, g.y / 1024.0, b.x / 1024.0, b.y / 1024.0,
                         w.x / 1024.0, w.y / 1024.0));
}

void VcdbMissing(const ImageView& view, Report& report) {
  if (!view.ctas.empty() && view.videoCapability == nullptr) {
    report.Add(view.PlaceAt(view.ctas.front().at), "no video capability block");
  }
}

void VcdbRangeFixed(const ImageView& view, Report& report) {
  if (view.videoCapability == nullptr) return;
  const unsigned flags = view.videoCapability->bytes[2];
  const bool rgb = (flags & 0x40) == 0, ycc = (flags & 0x80) == 0 && (view.CtaFlags() & 0x30) != 0;
  if (!rgb && !ycc) return;
  report.Add(view.videoCapability->place, rgb && ycc ? "neither for RGB nor for YCbCr"
                                          : rgb      ? "not for RGB"
                                                     : "not for YCbCr");
}

void UnderscanConflict(const ImageView& view, Report& report) {
  if (view.videoCapability == nullptr) return;
  const unsigned scan = view.videoCapability->bytes[2] >> 2 & 3;
  const bool underscans = (view.CtaFlags() & 0x80) != 0;
  if (!(scan == 2 && !underscans) && !(scan == 1 && underscans)) return;
  Draft draft(view);
  for (const CtaBlock& cta : view.ctas) {
    if (scan == 2) draft[cta.at + 3] |= 0x80;
  }
  report
      .Add(view.videoCapability->place, scan == 2 ? "always underscanned here, overscanned in the CTA header"
                                                  : "always overscanned here, underscanned in the CTA header")
      .Mend(Repair::kSafe, draft.Changes());
}

void CeUnsupported(const ImageView& view, Report& report) {
  if (view.videoCapability == nullptr || (view.videoCapability->bytes[2] & 3) != 0) return;
  const auto found = std::ranges::find_if(view.svds, [](const Svd& svd) { return svd.vic > 1; });
  if (found != view.svds.end())
    report.Add(view.videoCapability->place, fmt::format("but VIC {} is listed", found->vic));
}

void HdrUnusable(const ImageView& view, Report& report) {
  const DataBlock* hdr = view.First(kHdrStatic);
  if (hdr == nullptr || (hdr->bytes[2] & 0x0C) == 0) return;
  const DataBlock* colorimetry = view.First(kColorimetry);
  if (colorimetry == nullptr || (colorimetry->bytes[2] & 0xE0) == 0) report.Add(hdr->place, "no BT.2020 colorimetry");
  const bool deepTmds = view.hdmi && ((view.hdmi->flags & 0x70) != 0 || (view.CtaFlags() & 0x10) != 0);
  const bool deepSink = view.sink && ((view.sink->Byte(4) & 7) != 0 || view.sink->frlRate() != 0);
  if (view.hdmi && !deepTmds && !deepSink) report.Add(hdr->place, "no way to send more than 8 bits");
}

void HdrStaticFields(const ImageView& view, Report& report) {
  for (const DataBlock& block : view.dataBlocks) {
    if (block.kind != kHdrStatic || block.L() < 3) continue;
    const unsigned curves = block.bytes[2], types = block.bytes[3];
    const bool noType = (curves & 0x0C) != 0 && (types & 1) == 0;
    if ((curves & 0xF1) == 1 && (types & 0xFE) == 0 && !noType) continue;
    Draft draft(view);
    if (noType) draft[block.at + 3] |= 1;
    report.Add(block.place, fmt::format("curves {:02x}, descriptor types {:02x}", curves, types))
        .Mend(Repair::kSafe, draft.Changes());
  }
}

constexpr Severity kNote = Severity::kNote, kWarning = Severity::kWarning, kError = Severity::kError;
constexpr RuleGroup kGroup = RuleGroup::kHdrAndColor;
constexpr RuleScope kEdid = RuleScope::kEdid;

constexpr Rule kRules[] = {
    {"chromaticity-impossible", kError, kGroup, kEdid, "EDID 1.4, 3.7",
     "Systems that correct colours by the EDID turn the picture green or grey.",
     "The primaries and the white point are no colours of a display: all are 0, a y is 0, x and y together exceed 1, "
     "the "
     "triangle of the primaries has no area, or white lies outside of it. Monochrome displays are left out.",
     "Measure the panel, or write the primaries of sRGB.", ChromaticityImpossible},
    {"srgb-flag-wrong", kWarning, kGroup, kEdid, "EDID 1.4, 3.6.4 and 3.7",
     "A system takes the display for sRGB and does not correct its colours.",
     "Bit 2 of the features byte says that sRGB is the display's colour space, but the primaries are not those ten "
     "bytes "
     "which sRGB has. Some makers mean that sRGB is the mode it starts with.",
     "Clear the bit, or write the primaries of sRGB.", SrgbFlagWrong},
    {"srgb-flag-missing", kNote, kGroup, kEdid, "EDID 1.4, 3.6.4",
     "Systems that look for the bit take an sRGB display for an unknown one.",
     "The primaries and white are the ten bytes of sRGB, but bit 2 of the features byte is clear. With a gamma other "
     "than "
     "2.2 this may be meant.",
     "Set the bit.", SrgbFlagMissing},
    {"vcdb-missing", kNote, kGroup, kEdid, "CTA-861-H and later, 7.5.6",
     "Sources guess whether RGB is full or limited range: washed out or crushed pictures.",
     "A CTA extension is there, but no video capability block. It became mandatory with CTA-861-H; before, it could be "
     "left out.",
     "Add the block with what the display does.", VcdbMissing},
    {"vcdb-range-fixed", kNote, kGroup, kEdid, "CTA-861-H and later, 7.5.6; HDMI 1.4b, 6.6",
     "A source cannot choose the range that it sends, and guesses wrong for some formats.",
     "The video capability block says that the quantisation range cannot be selected, for RGB, or for YCbCr though the "
     "display takes it.",
     "Make the range selectable and set the bits.", VcdbRangeFixed},
    {"vcdb-underscan-conflict", kWarning, kGroup, kEdid, "CTA-861-I, 7.3.3 and 7.5.6",
     "Computers either lose the edges of the desktop or draw a black frame around it.",
     "The video capability block says that PC formats are always underscanned, and the CTA header that they are not, "
     "or "
     "the other way round.",
     "Make both say the same.", UnderscanConflict},
    {"vcdb-ce-unsupported", kNote, kGroup, kEdid, "CTA-861-I, 7.5.6", "A player may offer nothing but 640x480.",
     "The video capability block says that video formats are not supported, while the video block lists some.",
     "State how video formats are scanned.", CeUnsupported},
    {"hdr-static-fields", kWarning, kGroup, kEdid, "CTA-861-I, 7.5.13",
     "Sources turn HDR off when the block makes no sense.",
     "The HDR static metadata block leaves out the traditional gamma, which every display has, sets reserved bits, or "
     "names PQ or HLG without the descriptor type that carries the mastering data.",
     "Set bit 0 of both bytes and clear the reserved bits.", HdrStaticFields},
    {"hdr-unusable", kWarning, kGroup, kEdid, "CTA-861-I, 7.5.5 and 7.5.13",
     "The display is sold as HDR, and no source will send it.",
     "PQ or HLG is announced, but no BT.2020 colorimetry goes with it, or the HDMI blocks have no way of sending more "
     "than "
     "8 bits: no deep colour, no YCbCr 4:2:2, no fixed rate link.",
     "Announce BT.2020 and deep colour, or take HDR out.", HdrUnusable},
};

}  // namespace

std::span<const Rule> HdrAndColorRules() {
  return kRules;
}

}  // namespace reedid::document::check
