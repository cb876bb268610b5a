// Dolby Vision: what both of two displays can do, and its low-latency form, in which the source does the display's work.
// A repeater whose own picture lies over the source's cannot pass the standard form on.

#include "base/log.h"
#include "patch/cta.h"
#include "reedid/cea_vendor.h"
#include "reedid/two_displays.h"
#include "transform/common/records.h"

namespace reedid {
namespace {

constexpr uint8_t kOverHdmi = 1, kStandard = 2;  // bits of DolbyVisionRecord.interfaces beside low latency
constexpr uint8_t kShortSize = 12;

// Codes of version 2: `first` and 31 steps above it.
struct Steps {
  unsigned first, step;
  constexpr uint16_t Nearest(unsigned value) const {
    const unsigned code = value <= first ? 0 : (value - first + step / 2) / step;
    return Low16(first + Lower(code, 31u) * step);
  }
};
constexpr Steps kMinPq = {0, 20}, kMaxPq = {2055, 65};

constexpr uint16_t Within(uint16_t value, uint16_t low, uint16_t high) {
  return Higher(Lower(value, high), low);
}

unsigned PqOf(double nits) {
  return static_cast<unsigned>(LuminacetoPQ(static_cast<uint32_t>(nits + 0.5)));
}

bool OffersLowLatency(const DolbyVisionRecord& record) {
  return record.version == 1 && record.size == kShortSize && record.lowLatency == 1;
}

DolbyVisionRecord LowLatencyOf(const DolbyVisionRecord& v1) {
  DolbyVisionRecord v2 = {};
  v2.version = 2;
  v2.size = kShortSize;
  v2.yuv422_12bit = v1.yuv422_12bit;
  v2.globalDimming = v1.globalDimming;
  v2.backlightMinLuminance = 25;  // the least that the field holds; not used without backlight control
  v2.dmMajor = v1.dmMajor;
  const double darkest = v1.targetMinLuminance / 127.0;
  v2.targetMinPq = kMinPq.Nearest(PqOf(darkest * darkest));
  v2.targetMaxPq = kMaxPq.Nearest(PqOf(100.0 + 50.0 * v1.targetMaxLuminance));
  v2.redX = Within(v1.redX, 2560, 3056);
  v2.redY = Within(v1.redY, 1024, 1520);
  v2.greenX = Within(v1.greenX, 0, 2032);
  v2.greenY = Within(v1.greenY, 2048, 4080);
  v2.blueX = Within(v1.blueX, 512, 624);
  v2.blueY = Within(v1.blueY, 128, 240);
  return v2;
}

// What two records of one version have in common. Fields that the version has not are 0 in both.
DolbyVisionRecord Mixed(const DolbyVisionRecord& a, const DolbyVisionRecord& b) {
  DolbyVisionRecord mix = a;
  mix.yuv422_12bit &= b.yuv422_12bit;
  mix.supports2160p60 &= b.supports2160p60;
  mix.globalDimming &= b.globalDimming;
  mix.colorimetryP3 &= b.colorimetryP3;
  mix.backlightControl &= b.backlightControl;
  mix.parity &= b.parity;
  mix.lowLatency &= b.lowLatency;
  mix.interfaces &= b.interfaces;
  // Whoever takes 12 bits takes 10; neither goes without the interface that carries them.
  mix.rgb444 = Lower(a.rgb444, b.rgb444);
  if ((a.interfaces & kOverHdmi) != (mix.interfaces & kOverHdmi)) mix.rgb444 = 0;
  if (b.dmMajor < a.dmMajor || (b.dmMajor == a.dmMajor && b.dmMinor < a.dmMinor)) {
    mix.dmMajor = b.dmMajor;
    mix.dmMinor = b.dmMinor;
  }
  mix.backlightMinLuminance = Higher(a.backlightMinLuminance, b.backlightMinLuminance);
  mix.targetMinLuminance = Higher(a.targetMinLuminance, b.targetMinLuminance);
  mix.targetMaxLuminance = Lower(a.targetMaxLuminance, b.targetMaxLuminance);
  mix.targetMinPq = Higher(a.targetMinPq, b.targetMinPq);
  mix.targetMaxPq = Lower(a.targetMaxPq, b.targetMaxPq);
  return mix;
}

bool IsDolby(const CtaCursor& cursor) {
  return cursor.Is(CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_VIDEO) && cursor.bytes().Le24(2) == REEDID_OUI_DOLBY;
}

bool Read(Bytes block, DolbyVisionRecord& record) {
  const CeaDataBlock entry = EntryOf(block);
  return CEA_GetDolbyVision(&entry, &record) == 0;
}

// Calls edit(record) for every block that can be read. It gives false for one that has to go.
template <class Edit>
void EditDolby(EdidHandle& handle, Edit edit) {
  VisitDataBlocks(handle, [&](CtaCursor& cursor) {
    DolbyVisionRecord before;
    if (!IsDolby(cursor) || !Read(cursor.bytes(), before)) return;
    DolbyVisionRecord after = before;
    if (!edit(after)) return cursor.Erase();
    if (!SameRecord(before, after)) WriteRecord(cursor, after, CEA_SetDolbyVision);
  });
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t DolbyV1toV2LowlatencyOnly(const DolbyVisionRecord* v1, DolbyVisionRecord* v2) {
  if (v1 == nullptr || v2 == nullptr || v1->version != 1) return REEDID_ERR("invalid parameters");
  *v2 = LowLatencyOf(*v1);
  return 0;
}

void EDID_LimitToDolbyLowlatency(EdidHandle* handle) {
  if (handle == nullptr || handle->blocks == nullptr) {
    REEDID_ERR("invalid parameters");
    return;
  }
  EditDolby(*handle, [](DolbyVisionRecord& record) {
    if (record.version == 2) {
      record.interfaces &= static_cast<uint8_t>(~kStandard);
      return true;
    }
    const bool offered = OffersLowLatency(record);
    if (offered) record = LowLatencyOf(record);
    return offered;
  });
}

void EDID_MIX_DolbyVision(EdidHandle* handle, const EdidHandle* other) {
  if (handle == nullptr || handle->blocks == nullptr || other == nullptr || other->blocks == nullptr) {
    REEDID_ERR("invalid parameters");
    return;
  }
  const Bytes block = FirstDataBlock(*other, IsDolby);
  DolbyVisionRecord theirs;
  if (block.size() == 0 || !Read(block, theirs)) {
    VisitDataBlocks(*handle, [](CtaCursor& cursor) {
      if (IsDolby(cursor)) cursor.Erase();
    });
    return;
  }
  EditDolby(*handle, [&](DolbyVisionRecord& record) {
    DolbyVisionRecord with = theirs;
    if (record.version == 1 && with.version == 2 && OffersLowLatency(record)) record = LowLatencyOf(record);
    if (record.version == 2 && with.version == 1 && OffersLowLatency(with)) with = LowLatencyOf(with);
    if (record.version != with.version) return false;
    record = Mixed(record, with);
    return true;
  });
}
