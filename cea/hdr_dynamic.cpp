// What a display takes of dynamic HDR metadata: the HDR Dynamic Metadata Data Block and the block of HDR10+.
//
// HDR dynamic metadata (CTA-861, 7.5.14), extended tag 7: entries from byte 2 on
//   0 bytes that follow, 1-2 type, low byte first, 3.. support flags
//
// HDR10+, extended tag 1, bytes 2..4 the OUI 90-84-8B: 5 application version 1..0, full-frame peak index 3..2, peak
// index 7..4

#include <iterator>

#include "base/pinned.h"
#include "cea/exact_codec.h"
#include "reedid/cea_vendor.h"

namespace reedid {
namespace {

PIN_FIELDS(Hdr10PlusRecord, 0, 1, applicationVersion, fullFramePeakIndex, peakIndex);
PIN_SIZE(Hdr10PlusRecord, 3);
PIN_FIELDS(DynamicHdrEntry, 0, 2, type);
PIN_FIELDS(DynamicHdrEntry, 2, 1, flagCount);
PIN_FIELDS(DynamicHdrEntry, 3, 27, flags);
PIN_SIZE(DynamicHdrEntry, 30);
PIN_FIELDS(DynamicHdrRecord, 0, 2, count);
PIN_FIELDS(DynamicHdrRecord, 2, 300, entries);
PIN_SIZE(DynamicHdrRecord, 302);

struct DynamicHdr : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_DYNAMIC_HDR, 2, 32};
  static constexpr unsigned kFirst = 2, kTypeSize = 2, kHeader = 1 + kTypeSize;
  static constexpr unsigned kMaxFlags = sizeof DynamicHdrEntry::flags;

  static bool Holds(const DynamicHdrRecord& r) {
    if (r.count > std::size(r.entries)) return false;
    unsigned size = kFirst;
    for (unsigned i = 0; i < r.count; ++i) {
      if (r.entries[i].flagCount > kMaxFlags) return false;
      size += kHeader + r.entries[i].flagCount;
    }
    return size <= REEDID_CEA_DATA_BLOCK_SIZE;
  }

  static unsigned Size(const DynamicHdrRecord& r, const uint8_t*) {
    unsigned size = kFirst;
    for (unsigned i = 0; i < r.count; ++i) size += kHeader + r.entries[i].flagCount;
    return size;
  }

  // The list ends before an entry that has no type.
  static void Layout(const ExactIo& io, DynamicHdrRecord& r, unsigned size) {
    List(io, r.count, r.entries, kFirst, size, [&io](DynamicHdrEntry& entry, unsigned at) -> unsigned {
      Above(io, entry.flagCount, uint32_t{0} - kTypeSize, Place{Low8(at)});
      if (entry.flagCount > kMaxFlags) return 0;
      io(entry.type, Place{Low8(at + 1)}, Place{Low8(at + 2)});
      io.Copy(entry.flags, entry.flagCount, at + kHeader);
      return kHeader + entry.flagCount;
    });
  }
};

struct Hdr10Plus : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_VIDEO, 6, 32};
  static constexpr uint32_t kOui = REEDID_OUI_HDR10_PLUS;

  static unsigned Size(const Hdr10PlusRecord&, const uint8_t*) { return 6; }

  static void Layout(const ExactIo& io, Hdr10PlusRecord& r, unsigned) {
    io(r.applicationVersion, Place{5, 0, 2});
    io(r.fullFramePeakIndex, Place{5, 2, 2});
    io(r.peakIndex, Place{5, 4, 4});
  }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetDynamicHDR(const CeaDataBlock* entry, DynamicHdrRecord* record) {
  return GetExact<DynamicHdr>(entry, record);
}

int32_t CEA_SetDynamicHDR(const DynamicHdrRecord* record, CeaDataBlock* entry) {
  return SetExact<DynamicHdr>(record, entry);
}

int32_t CEA_GetHdr10Plus(const CeaDataBlock* entry, Hdr10PlusRecord* record) {
  return GetExact<Hdr10Plus>(entry, record);
}

int32_t CEA_SetHdr10Plus(const Hdr10PlusRecord* record, CeaDataBlock* entry) {
  return SetExact<Hdr10Plus>(record, entry);
}
