// What stands before the eyes of somebody: displays, lenses and layers (DisplayID 2.1).

#include <fmt/format.h>

#include <bit>
#include <numbers>

#include "document/account/displayid_panel.h"
#include "document/account/displayid_vendor.h"
#include "document/account/records.h"
#include "document/account/values.h"

namespace reedid::document {
namespace {

constexpr double kUnit = 8192;  // of a cm and of a rad

std::string Length(int code) {
  return fmt::format("{:.2f} cm", code / kUnit);
}

std::string Angle(unsigned code) {
  return fmt::format("{:.1f} degrees", code / kUnit * 180 / std::numbers::pi);
}

std::string FovText(const uint16_t (&fov)[4]) {
  return fmt::format("right {}, left {}, up {}, down {}", Angle(fov[0]), Angle(fov[1]), Angle(fov[2]), Angle(fov[3]));
}

std::string CenterText(uint32_t x, uint32_t y) {
  return fmt::format("{:.1f}, {:.1f}", std::bit_cast<float>(x), std::bit_cast<float>(y));
}

// What a step of the picture can do, and whether it may be switched.
std::string StepText(const char* name, unsigned pair) {
  static constexpr const char* kTexts[] = {"", "", " (reserved)", " (can be switched)"};
  return (pair & 3) == 0 ? "" : fmt::format("{}{}", name, kTexts[pair & 3]);
}

void AddLenses(const HeadMountedRecord& r, const ByteSource& at, Node& node) {
  static constexpr const char* kMotions[] = {"not straight", "lenses with displays", "lenses only"};
  const NamedFlag adjust[] = {
      {r.lensAdjustable, "adjustable"}, {r.lensDistance, "distance told"}, {r.ipdUseful, "pupil distance useful"}};
  const NamedFlag distances[] = {{r.rightDisplay, "right display"},
                                 {r.leftDisplay, "left display"},
                                 {r.rightEye, "right eye"},
                                 {r.leftEye, "left eye"}};
  node.Add("Lenses",
           fmt::format("right {}, left {}, {} between the eyes", Length(r.rightLens), Length(r.leftLens),
                       Angle(r.interocularAngle)),
           at(19, 6));
  node.Add("Adjustment", fmt::format("{}; motion {}", SetFlags(adjust), NameOf(kMotions, r.lensMotion)), at(25));
  node.Add("Lens distance", fmt::format("from {}, range {}", Length(r.lensMin), Length(r.lensRange)), at(26, 4));
  node.Add("Pupil distance",
           fmt::format("from {}, range {}, offset {}", Length(r.ipdMin), Length(r.ipdRange), Length(r.ipdOffset)),
           at(30, 6));
  node.Add("Distances told", SetFlags(distances), at(36));
}

void AddViews(const HeadMountedRecord& r, const ByteSource& at, Node& node) {
  constexpr double kFocalUnit = 65536;
  node.Add("Field of view", Angle(r.hFov), at(38, 2));
  node.Add("Right eye's", FovText(r.rightFov), at(40, 8));
  node.Add("Left eye's", FovText(r.leftFov), at(48, 8));
  node.Add("Focal length",
           fmt::format("right {:.1f}, left {:.1f} pixels per rad", r.rightFocal / kFocalUnit, r.leftFocal / kFocalUnit),
           at(56, 8));
  node.Add("Centre",
           fmt::format("right {}, left {}", CenterText(r.rightCenterX, r.rightCenterY),
                       CenterText(r.leftCenterX, r.leftCenterY)),
           at(64, 16));
}

// One stream, two, or either.
std::string StreamsText(unsigned bits) {
  static constexpr const char* kStreams[] = {"one stream", "two streams"};
  return SetBits(bits, kStreams);
}

}  // namespace

bool DescribeHeadMounted(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  static constexpr const char* kLayers[] = {"interleaved", "extended frame"};
  static constexpr const char* kMetadata[] = {"first line of layer 0", "secondary data packet"};
  static constexpr const char* kExtended[] = {"eyes and layers side by side", "eyes stacked", "layers stacked"};
  HeadMountedRecord r;
  if (DispID20_GetHeadMounted(&entry, &r) != 0) return false;
  node.record = r;
  node.Add("Two layers",
           fmt::format("{}; {}; {}", SetBits(r.dualLayer, kLayers),
                       r.interleaveStacked != 0 ? "stacked" : "side by side", NameOf(kExtended, r.extendedMode)),
           at(3));
  node.Add("Displays", fmt::format("{} displays, {} streams, {} layers", r.displays, r.streams, r.layers), at(4, 2));
  node.Add(
      "Layer metadata",
      fmt::format("{}, {} times", SetBits(r.layerMetadata, kMetadata), r.replication == 0 ? 1 : 2 << r.replication),
      at(5));
  node.Add("Clear area",
           fmt::format("{}x{}, right eye from {}, {}, left eye from {}, {}", r.width, r.height, r.rightX, r.rightY,
                       r.leftX, r.leftY),
           at(6, 12));
  node.Add("Rotation", fmt::format("right {}, left {}", r.rightRotation, r.leftRotation), at(18));
  AddLenses(r, at, node);
  node.Add("Foveated", StreamsText(r.foveated), at(37));
  AddViews(r, at, node);
  node.Add("Layer 0", StreamsText(r.layer0Streams), at(80));
  node.Add("Layer 1", StreamsText(r.layer1Streams), at(80));
  return true;
}

bool DescribeHeadMountedLayer(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  static constexpr const char* kLenses[] = {"none", "chromatic", "chromatic and distortion"};
  static constexpr const char* kReprojections[] = {"none", "3DoF", "3DoF and 6DoF"};
  static constexpr const char* kScalings[] = {"2x", "3x", "4x", "5x", "6x", "8x", "others"};
  static constexpr const char* kStreams[] = {"side by side", "stacked"};
  HeadMountedLayerRecord r;
  if (DispID20_GetHeadMountedLayer(&entry, &r) != 0) return false;
  node.record = r;
  const NamedFlag flags[] = {{r.configurable, "can be configured"}, {r.cropping, "cropping"}};
  std::vector<std::string> steps = {StepText("gamma", r.gamma), StepText("degamma", r.degamma),
                                    StepText("mura", r.mura), StepText("data in the blanking", r.blankingData)};
  std::erase(steps, "");
  std::vector<std::string> others;
  for (const unsigned scaling : r.otherScaling) {
    if (scaling != 0) others.push_back(fmt::format("{:.2f}x", scaling / 32.0));
  }
  node.Add("Manufacturer", MakerOrVendorText(r.vendorId, true), at(3, 3));
  node.Add("Product code", fmt::format("{0} ({0:#06x})", r.productCode), at(6, 2));
  node.AddPrivate("Serial number", fmt::format("{0} ({0:#010x})", r.serialNumber), at(8, 4), "serialNumber");
  node.Add("Layer", fmt::format("{}, {}", r.layer, SetFlags(flags, "fixed")), at(12));
  node.Add("Lens correction", NameOf(kLenses, r.lensCorrection), at(14));
  node.Add("Steps", Joined(steps), at(15));
  node.Add("Reprojection", NameOf(kReprojections, r.reprojection), at(16));
  node.Add("Scaling", SetBits(r.scalings, kScalings), at(17));
  if (!others.empty()) node.Add("Other scaling", Joined(others), at(18, 4));
  node.Add("Layers on streams", SetBits(r.layerStreams, kStreams), at(22));
  return true;
}

}  // namespace reedid::document
