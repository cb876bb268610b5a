// Blocks that name video formats by short video references (CTA-861-H, 7.5.12): a VIC, or the place of a timing.
//
// Native video resolution, extended tag 8: 2 reference; of 8 bytes 3 size present 0, in mm 7; 4-5 width, 6-7 height, low
//   byte first
// Video format preference, extended tag 13: 2.. references, most wanted first

#include <iterator>

#include "base/pinned.h"
#include "cea/exact_codec.h"
#include "reedid/cea_media.h"

namespace reedid {
namespace {

PIN_FIELDS(NativeResolutionRecord, 0, 2, width, height);
PIN_FIELDS(NativeResolutionRecord, 4, 1, reference, sizeUnit);
PIN_SIZE(NativeResolutionRecord, 6);
PIN_FIELDS(FormatPreferenceRecord, 0, 1, count);
PIN_FIELDS(FormatPreferenceRecord, 1, 30, references);
PIN_SIZE(FormatPreferenceRecord, 31);

struct NativeResolution : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_NATIVE_RESOLUTION, 3, 8};
  static constexpr uint8_t kUnits[] = {1, 10};  // 0.1 mm

  static bool Takes(Bytes bytes) { return bytes.size() == 3 || bytes.size() == 4 || bytes.size() == 8; }
  static unsigned Size(const NativeResolutionRecord& r, const uint8_t*) { return r.sizeUnit != 0 ? 8 : 3; }

  static void Layout(const ExactIo& io, NativeResolutionRecord& r, unsigned size) {
    io(r.reference, Place{2});
    uint8_t sized = r.sizeUnit != 0;
    io(sized, Place{3, 0, 1});
    if (!sized || size < 8) return;
    Listed(io, r.sizeUnit, kUnits, 0, Place{3, 7, 1});
    io(r.width, Place{4}, Place{5});
    io(r.height, Place{6}, Place{7});
  }
};

struct FormatPreference : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_FORMAT_PREFERENCE, 3, 32};

  static bool Holds(const FormatPreferenceRecord& r) { return r.count <= std::size(r.references); }
  static unsigned Size(const FormatPreferenceRecord& r, const uint8_t*) { return 2u + r.count; }

  static void Layout(const ExactIo& io, FormatPreferenceRecord& r, unsigned size) {
    if (io.Reads()) r.count = Low8(size - 2);
    io.Copy(r.references, r.count, 2);
  }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetNVRDB(const CeaDataBlock* entry, NativeResolutionRecord* record) {
  return GetExact<NativeResolution>(entry, record);
}

int32_t CEA_SetNVRDB(const NativeResolutionRecord* record, CeaDataBlock* entry) {
  return SetExact<NativeResolution>(record, entry);
}

int32_t CEA_GetVFPDB(const CeaDataBlock* entry, FormatPreferenceRecord* record) {
  return GetExact<FormatPreference>(entry, record);
}

int32_t CEA_SetVFPDB(const FormatPreferenceRecord* record, CeaDataBlock* entry) {
  return SetExact<FormatPreference>(record, entry);
}
