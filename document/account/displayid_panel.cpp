#include "document/account/displayid_panel.h"

#include <fmt/format.h>

#include "document/account/color_text.h"
#include "document/account/displayid_vendor.h"
#include "document/account/panel_text.h"
#include "document/account/records.h"
#include "document/account/values.h"

namespace reedid::document {
namespace {

constexpr double kPointUnit = 4096;
constexpr size_t kPointSize = 3;

// DisplayID 1.3, table 4-14: a range of codes for each way to make light.
const char* TechnologyText(unsigned code) {
  static constexpr const char* kLcds[] = {"passive LCD", "passive LCD", "passive LCD", "passive LCD",      "TN LCD",
                                          "IPS LCD",     "VA LCD",      "OCB LCD",     "ferroelectric LCD"};
  static constexpr const char* kKinds[] = {"CRT",
                                           "LCD",
                                           "plasma",
                                           "electroluminescent",
                                           "inorganic LED",
                                           "OLED",
                                           "FED",
                                           "electrophoretic",
                                           "electrochromic",
                                           "electromechanical",
                                           "electrowetting",
                                           "reserved",
                                           "reserved",
                                           "reserved",
                                           "reserved",
                                           "other"};
  const unsigned kind = code >> 4, member = code & 0xF;
  return kind == 1 && member < std::size(kLcds) ? kLcds[member] : NameOf(kKinds, kind);
}

const char* OperatingText(unsigned code) {
  static constexpr const char* kModes[] = {"reflective, ambient light",
                                           "reflective, ambient light or a source",
                                           "reflective with a source",
                                           "transmissive, ambient light",
                                           "transmissive, ambient light or a source",
                                           "transmissive with a source",
                                           "emissive",
                                           "transflective, backlight off by default",
                                           "transflective, backlight on by default",
                                           "transparent",
                                           "transparent, emissive",
                                           "projection, reflective",
                                           "projection, transmissive",
                                           "projection, emissive"};
  return NameOf(kModes, code);
}

std::string BezelText(const TiledDisplayRecord& r) {
  if (r.bezelPresent == 0 || r.pixelMultiplier == 0) return "not stated";
  const auto pixels = [&r](unsigned bezel) { return r.pixelMultiplier * bezel / 10.0; };
  return fmt::format("top {:.1f}, bottom {:.1f}, right {:.1f}, left {:.1f} pixels", pixels(r.bezelTop),
                     pixels(r.bezelBottom), pixels(r.bezelRight), pixels(r.bezelLeft));
}

}  // namespace

bool DescribeColor(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  static constexpr const char* kSpaces[] = {"sRGB", "BT.601", "BT.709",           "Adobe RGB", "DCI-P3",
                                            "NTSC", "EBU",    "Adobe wide gamut", "DICOM"};
  DispIdColorRecord r;
  if (DispID_GetColor(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Coordinates", r.cie1976 != 0 ? "CIE 1976 u', v'" : "CIE 1931 x, y", at(1));
  if (r.transferId != 0) node.Add("Transfer", fmt::format("characteristics {}", r.transferId), at(1));
  node.Add("Primaries", r.temporal != 0 ? "one after another" : "side by side", at(3));
  size_t first = 4;
  if (r.primaryCount == 0) node.Add("Colour space", NameOf(kSpaces, r.standardColorSpace), at(first++));
  const auto points = [&](const char* name, std::span<const ColorPoint> list) {
    for (size_t i = 0; i < list.size(); ++i, first += kPointSize) {
      node.Add(fmt::format("{} {}", name, i + 1), PointText(list[i].x, list[i].y, kPointUnit), at(first, kPointSize));
    }
  };
  points("Primary", {r.primaries, r.primaryCount});
  points("White", {r.whites, r.whiteCount});
  return true;
}

bool DescribeTransfer(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  constexpr unsigned kParameters = 5;
  DispIdTransferRecord r;
  if (DispID_GetTransfer(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag flags[] = {{r.firstIsWhite, "the first is white"},
                             {r.individualCurves, "a curve for each primary"},
                             {r.fourParameters, "four parameters"}};
  node.Add("Identifier", r.identifier == 0 ? "none" : fmt::format("{}", r.identifier), at(1));
  node.Add("Form", SetFlags(flags, "samples"), at(3));
  for (unsigned i = 0; i < r.length; i += 1u + r.curves[i]) {
    const uint8_t* curve = r.curves + i;
    if (i + 1u + curve[0] > r.length) break;
    std::string text = Hex({curve + 1, curve[0]});
    if (r.fourParameters != 0 && curve[0] == kParameters) {
      text = fmt::format("A0 {}, A1 {}, A2 {}, A3 {}, gamma {:.2f}", curve[1], curve[2], curve[3], curve[4],
                         1 + curve[5] / 100.0);
    }
    node.Add("Curve", text, at(4 + i, 1u + curve[0]));
  }
  return true;
}

bool DescribeBrightness(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  BrightnessRecord r;
  if (DispID20_GetBrightness(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Least, SDR", HalfFloatText(r.minSdrLuminance), at(3, 2));
  node.Add("Full, SDR", HalfFloatText(r.maxSdrLuminance), at(5, 2));
  node.Add("Boost", HalfFloatText(r.maxBoostLuminance), at(7, 2));
  return true;
}

bool DescribeDisplayDevice(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  DisplayDeviceRecord r;
  if (DispID_GetDisplayDevice(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag backlight[] = {{r.backlightSwitchable, "can be switched"}, {r.backlightDimmable, "can be dimmed"}};
  node.Add("Technology", TechnologyText(r.technology), at(3));
  node.Add("Operation", OperatingText(r.operatingMode), at(4));
  node.Add("Backlight", SetFlags(backlight, "fixed"), at(4));
  node.Add("Native format", r.nativeWidth == 0 ? "none" : fmt::format("{}x{}", r.nativeWidth, r.nativeHeight),
           at(5, 4));
  node.Add("Aspect ratio", fmt::format("{:.2f}", r.aspectRatioX100 / 100.0), at(9));
  node.Add("Orientation", OrientationText(r.orientation, r.rotation, r.zeroPixel, r.scanDirection), at(10));
  node.Add("Sub-pixels", SubPixelText(r.subPixels), at(11));
  node.Add("Pitch", fmt::format("{:.2f} x {:.2f} mm", r.hPitch / 100.0, r.vPitch / 100.0), at(12, 2));
  node.Add("Colour depth", fmt::format("{} (as it stands)", r.bitDepth), at(14));
  node.Add("Response", ResponseText(r.responseTime, r.whiteToBlack), at(15));
  return true;
}

bool DescribeTiles(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  static constexpr const char* kSome[] = {"undefined", "image at its tile"};
  static constexpr const char* kOne[] = {"undefined", "image at its tile", "image on the whole display",
                                         "image on each tile"};
  const bool isOui = entry.tag == DISPID20_TAG_TILED;
  TiledDisplayRecord r;
  if ((isOui ? DispID20_GetTiledDisplay(&entry, &r) : DispID_GetTiledDisplay(&entry, &r)) != 0) return false;
  node.record = r;
  const std::string place =
      fmt::format("column {} of {}, row {} of {}", r.hLocation + 1, r.hTiles, r.vLocation + 1, r.vTiles);
  node.Add("Enclosure", r.singleEnclosure != 0 ? "one for all tiles" : "several", at(3));
  node.Add("Some tiles driven", NameOf(kSome, r.someTilesBehavior), at(3));
  node.Add("This tile driven", NameOf(kOne, r.oneTileBehavior), at(3));
  node.Add("Tile", place, at(4, 3));
  node.Add("Tile size", fmt::format("{}x{}", r.tileWidth, r.tileHeight), at(7, 4));
  node.Add("Bezel", BezelText(r), at(11, 5));
  node.Add("Manufacturer", MakerOrVendorText(r.vendorId, isOui), at(16, 3));
  node.Add("Product code", fmt::format("{0} ({0:#06x})", r.productCode), at(19, 2));
  node.AddPrivate("Serial number", fmt::format("{0} ({0:#010x})", r.serialNumber), at(21, 4), "serialNumber");
  node.summary = fmt::format("{}, {}x{}", place, r.tileWidth, r.tileHeight);
  return true;
}

bool DescribeContainerId(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  ContainerIdRecord r;
  if (DispID20_GetContainerID(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("ContainerID", ContainerIdText(r.id), at(3, 16));
  return true;
}

}  // namespace reedid::document
