// What a display takes of dynamic HDR metadata: the HDR Dynamic Metadata Data Block and the block of HDR10+.
//
// HDR dynamic metadata (CTA-861, 7.5.14), extended tag 7: entries from byte 2 on
//   0 bytes that follow, 1-2 type, low byte first, 3.. support flags
//
// HDR10+, extended tag 1, bytes 2..4 the OUI 90-84-8B: 5 application version 1..0, full-frame peak index 3..2, peak
// index 7..4

#include <iterator>

#include "cea/exact_codec.h"
#include "reedid/cea_vendor.h"

namespace reedid {
namespace {

struct DynamicHdr : ExactCodec {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_DYNAMIC_HDR, 2, 32};
  static constexpr unsigned kFirst = 2, kHeader = 3;
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

  // A list ends before an entry that has no type or reaches beyond the block.
  static void Layout(const LayoutReader& io, DynamicHdrRecord& r, unsigned size) {
    for (unsigned at = kFirst; at + kHeader <= size && r.count < std::size(r.entries);) {
      uint8_t length = 0;
      io(length, Place{Low8(at)});
      if (length < 2 || at + 1 + length > size) return;
      at = Entry(io, r.entries[r.count++], at, length - 2u);
    }
  }

  static void Layout(const LayoutWriter& io, const DynamicHdrRecord& r, unsigned) {
    unsigned at = kFirst;
    for (unsigned i = 0; i < r.count; ++i) {
      io(r.entries[i].flagCount + 2, Place{Low8(at)});
      at = Entry(io, r.entries[i], at, r.entries[i].flagCount);
    }
  }

 private:
  // Gives back where the next one begins.
  template <class Io, class Field>
  static unsigned Entry(const Io& io, Field& entry, unsigned at, unsigned flagCount) {
    if constexpr (Io::kReads) entry.flagCount = Low8(flagCount);
    io(entry.type, Place{Low8(at + 1)}, Place{Low8(at + 2)});
    for (unsigned i = 0; i < flagCount; ++i) io(entry.flags[i], Place{Low8(at + kHeader + i)});
    return at + kHeader + flagCount;
  }
};

struct Hdr10Plus : ExactCodec {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_VENDOR_VIDEO, 6, 32};
  static constexpr uint32_t kOui = REEDID_OUI_HDR10_PLUS;

  static unsigned Size(const Hdr10PlusRecord&, const uint8_t*) { return 6; }

  template <class Io, class Record>
  static void Layout(const Io& io, Record& r, unsigned) {
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
