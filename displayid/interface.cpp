// How a display is driven, and what for (DisplayID 1.3 and 2.1). Byte 1 has the revision 2..0.
//
// Display interface, tag 0x0F, 13 bytes
//   3     interface 7..4, links 3..0            8  content protection 3..0
//   4     version 7..4, release 3..0            9  its version 7..4, release 3..0
//   5-6   depths of RGB and YCbCr 4:4:4 5..0    10 spread spectrum 7..6, its 0.1 % 3..0
//   7     depths of YCbCr 4:2:2 4..0            11-12 attributes of the interface
//
// Display interface features, tag 0x26, 12 bytes and 0 to 7 more
//   3-4   depths of RGB and YCbCr 4:4:4 5..0    8  audio at 32, 44.1, 48 kHz 7..5
//   5-6   depths of YCbCr 4:2:2 and 4:2:0 4..0  9  colour spaces 6..0
//   7     least pixel rate in 4:2:0 / 74.25 MHz 11 number of additional ones 2..0, then each: space 7..4, EOTF 3..0
//
// Interface power sequencing, tag 0x0D, 9 bytes: 3 T1 least 7..4, most 3..0; 4-8 T2 to T6 5..0, but T4 6..0
//
// Adaptive-Sync, tag 0x2B: byte 1 descriptor size - 6 6..4; from 3 on descriptors
//   0     native range 0, longer frames without jitter 1, mode 3..2, not seamless 4, shorter frames without jitter 5
//   1     longest increase / 0.25 ms            3-4 maximum / Hz - 1, 9..0
//   2     minimum / Hz                          5   longest decrease / 0.25 ms

#include "base/pinned.h"
#include "displayid/exact_codec.h"
#include "reedid/displayid_blocks.h"

namespace reedid {
namespace {

PIN_FIELDS(AdaptiveSyncRange, 0, 2, minRefresh, maxRefresh);
PIN_FIELDS(AdaptiveSyncRange, 4, 1, nativeRange, mode, noSeamless, increaseNoJitter, decreaseNoJitter, maxIncrease,
           maxDecrease);
PIN_FIELDS(AdaptiveSyncRange, 11, 7, extra);
PIN_SIZE(AdaptiveSyncRange, 18);
PIN_FIELDS(AdaptiveSyncRecord, 0, 1, revision, descriptorSize);
PIN_FIELDS(AdaptiveSyncRecord, 2, 2, count);
PIN_FIELDS(AdaptiveSyncRecord, 4, 738, ranges);
PIN_SIZE(AdaptiveSyncRecord, 742);
PIN_FIELDS(ColorEotf, 0, 1, colorSpace, eotf);
PIN_SIZE(ColorEotf, 2);
PIN_FIELDS(InterfaceFeaturesRecord, 0, 1, revision, rgbDepths, ycc444Depths, ycc422Depths, ycc420Depths,
           min420PixelRate, audio32k, audio44k1, audio48k, colorEotfs, additionalCount);
PIN_FIELDS(InterfaceFeaturesRecord, 11, 14, additional);
PIN_SIZE(InterfaceFeaturesRecord, 25);
PIN_FIELDS(DisplayInterfaceRecord, 0, 1, revision, interfaceType, links, version, release, rgbDepths, ycc444Depths,
           ycc422Depths, contentProtection, protectionVersion, protectionRelease, spreadType, spreadPercent, attribute1,
           attribute2);
PIN_SIZE(DisplayInterfaceRecord, 15);
PIN_FIELDS(PowerSequencingRecord, 0, 1, revision, minT1, maxT1, maxT2, maxT3, minT4, minT5, minT6);
PIN_SIZE(PowerSequencingRecord, 8);

struct Interface : ExactDefaults {
  static constexpr DispIdForm kForm = {DISPID_TAG_DISPLAY_INTERFACE, 13, 13};
  static unsigned Size(const DisplayInterfaceRecord&, const uint8_t*) { return 13; }

  static void Layout(const ExactIo& io, DisplayInterfaceRecord& r, unsigned) {
    io(r.revision, kRevision);
    io(r.interfaceType, Place{3, 4, 4});
    io(r.links, Place{3, 0, 4});
    io(r.version, Place{4, 4, 4});
    io(r.release, Place{4, 0, 4});
    io(r.rgbDepths, Place{5, 0, 6});
    io(r.ycc444Depths, Place{6, 0, 6});
    io(r.ycc422Depths, Place{7, 0, 5});
    io(r.contentProtection, Place{8, 0, 4});
    io(r.protectionVersion, Place{9, 4, 4});
    io(r.protectionRelease, Place{9, 0, 4});
    io(r.spreadType, Place{10, 6, 2});
    io(r.spreadPercent, Place{10, 0, 4});
    io(r.attribute1, Place{11});
    io(r.attribute2, Place{12});
  }
};

struct InterfaceFeatures : ExactDefaults {
  static constexpr DispIdForm kForm = {DISPID20_TAG_INTERFACE_FEATURES, 12, 19};
  static constexpr unsigned kFixed = 12;
  static unsigned Size(const InterfaceFeaturesRecord& r, const uint8_t*) { return kFixed + r.additionalCount; }
  static bool Holds(const InterfaceFeaturesRecord& r) { return r.additionalCount <= 7; }

  static void Layout(const ExactIo& io, InterfaceFeaturesRecord& r, unsigned size) {
    io(r.revision, kRevision);
    io(r.rgbDepths, Place{3, 0, 6});
    io(r.ycc444Depths, Place{4, 0, 6});
    io(r.ycc422Depths, Place{5, 0, 5});
    io(r.ycc420Depths, Place{6, 0, 5});
    io(r.min420PixelRate, Place{7});
    io(r.audio32k, Place{8, 7, 1});
    io(r.audio44k1, Place{8, 6, 1});
    io(r.audio48k, Place{8, 5, 1});
    io(r.colorEotfs, Place{9, 0, 7});
    io(r.additionalCount, Place{11, 0, 3});
    if (io.Reads() && kFixed + r.additionalCount > size) r.additionalCount = Low8(size - kFixed);
    for (unsigned i = 0; i < r.additionalCount; ++i) {
      io(r.additional[i].colorSpace, Place{Low8(kFixed + i), 4, 4});
      io(r.additional[i].eotf, Place{Low8(kFixed + i), 0, 4});
    }
  }
};

struct PowerSequencing : ExactDefaults {
  static constexpr DispIdForm kForm = {DISPID_TAG_POWER_SEQUENCING, 9, 9};
  static unsigned Size(const PowerSequencingRecord&, const uint8_t*) { return 9; }

  static void Layout(const ExactIo& io, PowerSequencingRecord& r, unsigned) {
    io(r.revision, kRevision);
    io(r.minT1, Place{3, 4, 4});
    io(r.maxT1, Place{3, 0, 4});
    io(r.maxT2, Place{4, 0, 6});
    io(r.maxT3, Place{5, 0, 6});
    io(r.minT4, Place{6, 0, 7});
    io(r.minT5, Place{7, 0, 6});
    io(r.minT6, Place{8, 0, 6});
  }
};

struct AdaptiveSync : ExactDefaults {
  static constexpr DispIdForm kForm = {DISPID20_TAG_ADAPTIVE_SYNC, kDispIdHeaderSize, REEDID_DISPID_DATA_BLOCK_SIZE};
  static constexpr uint8_t kLeast = 6, kMost = 13;

  static bool Holds(const AdaptiveSyncRecord& r) {
    return r.descriptorSize >= kLeast && r.descriptorSize <= kMost && r.count <= std::size(r.ranges) &&
           Size(r, nullptr) <= REEDID_DISPID_DATA_BLOCK_SIZE;
  }
  static unsigned Size(const AdaptiveSyncRecord& r, const uint8_t*) {
    return kDispIdHeaderSize + unsigned{r.descriptorSize} * r.count;
  }

  static void Layout(const ExactIo& io, AdaptiveSyncRecord& r, unsigned size) {
    io(r.revision, kRevision);
    Above(io, r.descriptorSize, kLeast, Place{1, 4, 3});
    List(io, r.count, r.ranges, kDispIdHeaderSize, size, [&](AdaptiveSyncRange& range, unsigned at) -> unsigned {
      io(range.nativeRange, Place{Low8(at), 0, 1});
      io(range.increaseNoJitter, Place{Low8(at), 1, 1});
      io(range.mode, Place{Low8(at), 2, 2});
      io(range.noSeamless, Place{Low8(at), 4, 1});
      io(range.decreaseNoJitter, Place{Low8(at), 5, 1});
      io(range.maxIncrease, Place{Low8(at + 1)});
      io(range.minRefresh, Place{Low8(at + 2)});
      LessOne(io, range.maxRefresh, Place{Low8(at + 3)}, Place{Low8(at + 4), 0, 2});
      io(range.maxDecrease, Place{Low8(at + 5)});
      io.Copy(range.extra, r.descriptorSize - 6u, at + 6);
      return r.descriptorSize;
    });
  }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t DispID_GetDisplayInterface(const DispIdDataBlock* entry, DisplayInterfaceRecord* record) {
  return GetExact<Interface>(entry, record);
}

int32_t DispID_SetDisplayInterface(const DisplayInterfaceRecord* record, DispIdDataBlock* entry) {
  return SetExact<Interface>(record, entry);
}

int32_t DispID20_GetInterfaceFeatures(const DispIdDataBlock* entry, InterfaceFeaturesRecord* record) {
  return GetExact<InterfaceFeatures>(entry, record);
}

int32_t DispID20_SetInterfaceFeatures(const InterfaceFeaturesRecord* record, DispIdDataBlock* entry) {
  return SetExact<InterfaceFeatures>(record, entry);
}

int32_t DispID_GetPowerSequencing(const DispIdDataBlock* entry, PowerSequencingRecord* record) {
  return GetExact<PowerSequencing>(entry, record);
}

int32_t DispID_SetPowerSequencing(const PowerSequencingRecord* record, DispIdDataBlock* entry) {
  return SetExact<PowerSequencing>(record, entry);
}

int32_t DispID20_GetAdaptiveSync(const DispIdDataBlock* entry, AdaptiveSyncRecord* record) {
  return GetExact<AdaptiveSync>(entry, record);
}

int32_t DispID20_SetAdaptiveSync(const AdaptiveSyncRecord* record, DispIdDataBlock* entry) {
  return SetExact<AdaptiveSync>(record, entry);
}
