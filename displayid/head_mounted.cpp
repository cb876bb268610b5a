// Displays that are worn (DisplayID 2.1). Byte 1 has the revision 2..0. Numbers have their low byte first; lengths and
// angles 13 bits behind the point.
//
// Head-mounted display, tag 0x2C, 82 bytes
//   3     two layers 1..0: interleaved and stacked 4, in an extended frame and how 6..5
//   4     displays - 1 3..0, streams - 1 7..4      5     layers - 1 3..0, metadata 5..4, its replication 7..6
//   6-17  area: right x, y, left x, y, width, height
//   18    rotation: right 2..0, left 6..4          19-24 lens: right, left; angle between the eyes
//   25    lenses: adjustable 0, motion 2..1, distance 3; distance of pupils useful 4
//   26-29 lens: least, range                       30-35 pupils: offset with a sign, least, range
//   36    available: right display 0, left 1, right eye 2, left 3
//   37    foveated 1..0                            38-55 field of view: horizontal, right eye, left eye
//   56-63 focal length: right, left, 16 bits behind the point
//   64-79 centre: right y, x, left y, x, IEEE 754 singles
//   80    streams of layer 0 1..0, of layer 1 3..2
//
// Layer, tag 0x2D, 23 bytes
//   3-5   vendor, 6-7 product code, 8-11 serial number
//   12    layer 3..0, configurable 4, cropping 5
//   14    lens correction 1..0, what may be switched of it 3..2
//   15    gamma 1..0, degamma 3..2, mura 5..4, data in the blanking 7..6
//   16    reprojection 1..0, what may be switched of it 3..2
//   17    scaling 6..0, configurable 7; 18-21 other scaling / 32
//   22    layers in streams of their own: side by side 0, stacked 1

#include "base/pinned.h"
#include "displayid/exact_codec.h"
#include "reedid/displayid_blocks.h"

namespace reedid {
namespace {

PIN_FIELDS(HeadMountedRecord, 0, 4, rightFocal, leftFocal, rightCenterY, rightCenterX, leftCenterY, leftCenterX);
PIN_FIELDS(HeadMountedRecord, 24, 2, rightX, rightY, leftX, leftY, width, height, rightLens, leftLens, interocularAngle,
           lensMin, lensRange, ipdOffset, ipdMin, ipdRange, hFov);
PIN_FIELDS(HeadMountedRecord, 54, 8, rightFov);
PIN_FIELDS(HeadMountedRecord, 62, 8, leftFov);
PIN_FIELDS(HeadMountedRecord, 70, 1, revision, dualLayer, interleaveStacked, extendedMode, displays, streams, layers,
           layerMetadata, replication, rightRotation, leftRotation, lensAdjustable, lensMotion, lensDistance, ipdUseful,
           rightDisplay, leftDisplay, rightEye, leftEye, foveated, layer0Streams, layer1Streams);
PIN_SIZE(HeadMountedRecord, 92);
PIN_FIELDS(HeadMountedLayerRecord, 0, 4, serialNumber);
PIN_FIELDS(HeadMountedLayerRecord, 4, 2, productCode);
PIN_FIELDS(HeadMountedLayerRecord, 6, 3, vendorId);
PIN_FIELDS(HeadMountedLayerRecord, 9, 1, revision, layer, configurable, cropping, lensCorrection, lensConfigurable,
           gamma, degamma, mura, blankingData, reprojection, reprojectionSwitchable, scalings, scalingConfigurable);
PIN_FIELDS(HeadMountedLayerRecord, 23, 4, otherScaling);
PIN_FIELDS(HeadMountedLayerRecord, 27, 1, layerStreams);
PIN_SIZE(HeadMountedLayerRecord, 28);

// Consecutive numbers of 16 or 32 bits. Gives back where they end.
template <class... Fields>
uint8_t Numbers(const ExactIo& io, uint8_t at, Fields&... fields) {
  const auto number = [&](auto& field) {
    if constexpr (sizeof field == 2) {
      io(field, Place{at}, Place{Low8(at + 1)});
    } else {
      io(field, Place{at}, Place{Low8(at + 1)}, Place{Low8(at + 2)}, Place{Low8(at + 3)});
    }
    at = Low8(at + sizeof field);
  };
  (number(fields), ...);
  return at;
}

struct HeadMounted : ExactDefaults {
  static constexpr DispIdForm kForm = {DISPID20_TAG_HEAD_MOUNTED, 82, 82};
  static unsigned Size(const HeadMountedRecord&, const uint8_t*) { return 82; }

  static void Layout(const ExactIo& io, HeadMountedRecord& r, unsigned) {
    io(r.revision, kRevision);
    Frame(io, r);
    Numbers(io, 6, r.rightX, r.rightY, r.leftX, r.leftY, r.width, r.height);
    io(r.rightRotation, Place{18, 0, 3});
    io(r.leftRotation, Place{18, 4, 3});
    Numbers(io, 19, r.rightLens, r.leftLens, r.interocularAngle);
    io(r.lensAdjustable, Place{25, 0, 1});
    io(r.lensMotion, Place{25, 1, 2});
    io(r.lensDistance, Place{25, 3, 1});
    io(r.ipdUseful, Place{25, 4, 1});
    Numbers(io, 26, r.lensMin, r.lensRange, r.ipdOffset, r.ipdMin, r.ipdRange);
    io(r.rightDisplay, Place{36, 0, 1});
    io(r.leftDisplay, Place{36, 1, 1});
    io(r.rightEye, Place{36, 2, 1});
    io(r.leftEye, Place{36, 3, 1});
    io(r.foveated, Place{37, 0, 2});
    uint8_t at = Numbers(io, 38, r.hFov);
    for (uint16_t& fov : r.rightFov) at = Numbers(io, at, fov);
    for (uint16_t& fov : r.leftFov) at = Numbers(io, at, fov);
    Numbers(io, 56, r.rightFocal, r.leftFocal, r.rightCenterY, r.rightCenterX, r.leftCenterY, r.leftCenterX);
    io(r.layer0Streams, Place{80, 0, 2});
    io(r.layer1Streams, Place{80, 2, 2});
  }

 private:
  static void Frame(const ExactIo& io, HeadMountedRecord& r) {
    io(r.dualLayer, Place{3, 0, 2});
    io(r.interleaveStacked, Place{3, 4, 1});
    io(r.extendedMode, Place{3, 5, 2});
    LessOne(io, r.displays, Place{4, 0, 4});
    LessOne(io, r.streams, Place{4, 4, 4});
    LessOne(io, r.layers, Place{5, 0, 4});
    io(r.layerMetadata, Place{5, 4, 2});
    io(r.replication, Place{5, 6, 2});
  }
};

struct HeadMountedLayer : ExactDefaults {
  static constexpr DispIdForm kForm = {DISPID20_TAG_HEAD_MOUNTED_LAYER, 23, 23};
  static unsigned Size(const HeadMountedLayerRecord&, const uint8_t*) { return 23; }

  static void Layout(const ExactIo& io, HeadMountedLayerRecord& r, unsigned) {
    io(r.revision, kRevision);
    io.Copy(r.vendorId, sizeof r.vendorId, 3);
    Numbers(io, 6, r.productCode, r.serialNumber);
    io(r.layer, Place{12, 0, 4});
    io(r.configurable, Place{12, 4, 1});
    io(r.cropping, Place{12, 5, 1});
    io(r.lensCorrection, Place{14, 0, 2});
    io(r.lensConfigurable, Place{14, 2, 2});
    io(r.gamma, Place{15, 0, 2});
    io(r.degamma, Place{15, 2, 2});
    io(r.mura, Place{15, 4, 2});
    io(r.blankingData, Place{15, 6, 2});
    io(r.reprojection, Place{16, 0, 2});
    io(r.reprojectionSwitchable, Place{16, 2, 2});
    io(r.scalings, Place{17, 0, 7});
    io(r.scalingConfigurable, Place{17, 7, 1});
    io.Copy(r.otherScaling, sizeof r.otherScaling, 18);
    io(r.layerStreams, Place{22, 0, 2});
  }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t DispID20_GetHeadMounted(const DispIdDataBlock* entry, HeadMountedRecord* record) {
  return GetExact<HeadMounted>(entry, record);
}

int32_t DispID20_SetHeadMounted(const HeadMountedRecord* record, DispIdDataBlock* entry) {
  return SetExact<HeadMounted>(record, entry);
}

int32_t DispID20_GetHeadMountedLayer(const DispIdDataBlock* entry, HeadMountedLayerRecord* record) {
  return GetExact<HeadMountedLayer>(entry, record);
}

int32_t DispID20_SetHeadMountedLayer(const HeadMountedLayerRecord* record, DispIdDataBlock* entry) {
  return SetExact<HeadMountedLayer>(record, entry);
}
