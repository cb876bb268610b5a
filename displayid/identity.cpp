// Who made a display, which part of a device it is, and what vendors say (DisplayID 1.3 and 2.1). Byte 1 has the revision
// 2..0.
//
// Tiled display topology, tags 0x12 and 0x28, 25 bytes
//   3     one case 7, bezels are told 6, some tiles driven 4..3, this tile driven 2..0
//   4-6   tiles - 1 across: 4 7..4, 6 7..6; down: 4 3..0, 6 5..4; this one across: 5 7..4, 6 3..2; down: 5 3..0, 6 1..0
//   7-10  pixels and lines of a tile - 1
//   11    multiplier of the bezels, 12-15: top, bottom, right, left / 0.1 pixels
//   16-18 vendor, 19-20 product code, 21-24 serial number
//
// ContainerID, tag 0x29, 19 bytes: 3-18 the identifier
//
// Vendor-specific, tags 0x7F and 0x7E: 1 flags 7..3, 3-5 vendor, 6.. its own. VESA's, OUI 3A-02-92, 8 or 10 bytes
//   6     structure 2..0, native colours 7
//   7     overlap 3..0, streams 6..5
//   8-9   DSC target: 8 5..0 and 9 3..0 / (1/16 bit per pixel)

#include "base/pinned.h"
#include "displayid/exact_codec.h"
#include "reedid/displayid_blocks.h"

namespace reedid {
namespace {

PIN_FIELDS(TiledDisplayRecord, 0, 4, tileWidth, tileHeight, serialNumber);
PIN_FIELDS(TiledDisplayRecord, 12, 2, productCode, pixelMultiplier);
PIN_FIELDS(TiledDisplayRecord, 16, 3, vendorId);
PIN_FIELDS(TiledDisplayRecord, 19, 1, revision, singleEnclosure, bezelPresent, someTilesBehavior, oneTileBehavior,
           hTiles, vTiles, hLocation, vLocation, bezelTop, bezelBottom, bezelRight, bezelLeft);
PIN_SIZE(TiledDisplayRecord, 32);
PIN_FIELDS(ContainerIdRecord, 0, 1, revision);
PIN_FIELDS(ContainerIdRecord, 1, 16, id);
PIN_SIZE(ContainerIdRecord, 17);
PIN_FIELDS(DispIdVendorRecord, 0, 1, revision, flags);
PIN_FIELDS(DispIdVendorRecord, 2, 3, vendor);
PIN_FIELDS(DispIdVendorRecord, 5, 1, length);
PIN_FIELDS(DispIdVendorRecord, 6, 245, data);
PIN_SIZE(DispIdVendorRecord, 251);
PIN_FIELDS(VesaVendorRecord, 0, 2, dscBppX16);
PIN_FIELDS(VesaVendorRecord, 2, 1, dscPresent, revision, structureType, nativeColor, overlapPixels, multiSst);
PIN_SIZE(VesaVendorRecord, 8);

struct TiledDisplay : ExactDefaults {
  static constexpr DispIdForm kForm = {DISPID_TAG_TILED, 25, 25};
  static unsigned Size(const TiledDisplayRecord&, const uint8_t*) { return 25; }

  static void Layout(const ExactIo& io, TiledDisplayRecord& r, unsigned) {
    io(r.revision, kRevision);
    io(r.singleEnclosure, Place{3, 7, 1});
    io(r.bezelPresent, Place{3, 6, 1});
    io(r.someTilesBehavior, Place{3, 3, 2});
    io(r.oneTileBehavior, Place{3, 0, 3});
    LessOne(io, r.hTiles, Place{4, 4, 4}, Place{6, 6, 2});
    LessOne(io, r.vTiles, Place{4, 0, 4}, Place{6, 4, 2});
    io(r.hLocation, Place{5, 4, 4}, Place{6, 2, 2});
    io(r.vLocation, Place{5, 0, 4}, Place{6, 0, 2});
    LessOne(io, r.tileWidth, Place{7}, Place{8});
    LessOne(io, r.tileHeight, Place{9}, Place{10});
    io(r.pixelMultiplier, Place{11});
    io(r.bezelTop, Place{12});
    io(r.bezelBottom, Place{13});
    io(r.bezelRight, Place{14});
    io(r.bezelLeft, Place{15});
    io.Copy(r.vendorId, sizeof r.vendorId, 16);
    io(r.productCode, Place{19}, Place{20});
    io(r.serialNumber, Place{21}, Place{22}, Place{23}, Place{24});
  }
};

struct TiledDisplay20 : TiledDisplay {
  static constexpr DispIdForm kForm = {DISPID20_TAG_TILED, 25, 25};
};

struct ContainerId : ExactDefaults {
  static constexpr DispIdForm kForm = {DISPID20_TAG_CONTAINER_ID, 19, 19};
  static unsigned Size(const ContainerIdRecord&, const uint8_t*) { return 19; }

  static void Layout(const ExactIo& io, ContainerIdRecord& r, unsigned) {
    io(r.revision, kRevision);
    io.Copy(r.id, sizeof r.id, 3);
  }
};

struct Vendor : ExactDefaults {
  static constexpr unsigned kFixed = 6;
  static constexpr DispIdForm kForm = {DISPID_TAG_VENDOR, kFixed, REEDID_DISPID_DATA_BLOCK_SIZE};
  static bool Holds(const DispIdVendorRecord& r) { return r.length <= sizeof r.data; }
  static unsigned Size(const DispIdVendorRecord& r, const uint8_t*) { return kFixed + r.length; }

  static void Layout(const ExactIo& io, DispIdVendorRecord& r, unsigned size) {
    io(r.revision, kRevision);
    io(r.flags, Place{1, 3, 5});
    io.Copy(r.vendor, sizeof r.vendor, 3);
    if (io.Reads()) r.length = Low8(size - kFixed);
    io.Copy(r.data, r.length, kFixed);
  }
};

struct Vendor20 : Vendor {
  static constexpr DispIdForm kForm = {DISPID20_TAG_VENDOR, kFixed, REEDID_DISPID_DATA_BLOCK_SIZE};
};

struct VesaVendor : ExactDefaults {
  static constexpr unsigned kShort = 8, kLong = 10;
  static constexpr DispIdForm kForm = {DISPID20_TAG_VENDOR, kShort, kLong, REEDID_OUI_VESA};
  static bool Takes(Bytes bytes) { return bytes.size() == kShort || bytes.size() == kLong; }
  static unsigned Size(const VesaVendorRecord& r, const uint8_t*) { return r.dscPresent ? kLong : kShort; }

  static void Layout(const ExactIo& io, VesaVendorRecord& r, unsigned size) {
    io(r.revision, kRevision);
    io(r.structureType, Place{6, 0, 3});
    io(r.nativeColor, Place{6, 7, 1});
    io(r.overlapPixels, Place{7, 0, 4});
    io(r.multiSst, Place{7, 5, 2});
    if (io.Reads()) r.dscPresent = size == kLong;
    io(r.dscBppX16, Place{9, 0, 4}, Place{8, 0, 6});
  }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t DispID_GetTiledDisplay(const DispIdDataBlock* entry, TiledDisplayRecord* record) {
  return GetExact<TiledDisplay>(entry, record);
}

int32_t DispID_SetTiledDisplay(const TiledDisplayRecord* record, DispIdDataBlock* entry) {
  return SetExact<TiledDisplay>(record, entry);
}

int32_t DispID20_GetTiledDisplay(const DispIdDataBlock* entry, TiledDisplayRecord* record) {
  return GetExact<TiledDisplay20>(entry, record);
}

int32_t DispID20_SetTiledDisplay(const TiledDisplayRecord* record, DispIdDataBlock* entry) {
  return SetExact<TiledDisplay20>(record, entry);
}

int32_t DispID20_GetContainerID(const DispIdDataBlock* entry, ContainerIdRecord* record) {
  return GetExact<ContainerId>(entry, record);
}

int32_t DispID20_SetContainerID(const ContainerIdRecord* record, DispIdDataBlock* entry) {
  return SetExact<ContainerId>(record, entry);
}

int32_t DispID_GetVendor(const DispIdDataBlock* entry, DispIdVendorRecord* record) {
  return GetExact<Vendor>(entry, record);
}

int32_t DispID_SetVendor(const DispIdVendorRecord* record, DispIdDataBlock* entry) {
  return SetExact<Vendor>(record, entry);
}

int32_t DispID20_GetVendor(const DispIdDataBlock* entry, DispIdVendorRecord* record) {
  return GetExact<Vendor20>(entry, record);
}

int32_t DispID20_SetVendor(const DispIdVendorRecord* record, DispIdDataBlock* entry) {
  return SetExact<Vendor20>(record, entry);
}

int32_t DispID20_GetVesaVendor(const DispIdDataBlock* entry, VesaVendorRecord* record) {
  return GetExact<VesaVendor>(entry, record);
}

int32_t DispID20_SetVesaVendor(const VesaVendorRecord* record, DispIdDataBlock* entry) {
  return SetExact<VesaVendor>(record, entry);
}
