// InfoFrame Data Block (CTA-861, 7.5.9), extended tag 32.
//
//   2     bytes of the header's own 7..5
//   3     vendor-specific InfoFrames besides
//   then  the header's own bytes, then one descriptor after another:
//         payload length 7..5, type 4..0; type 1: 3 bytes OUI, low byte first; payload

#include <iterator>

#include "base/pinned.h"
#include "cea/exact_codec.h"
#include "reedid/cea_media.h"

namespace reedid {
namespace {

PIN_FIELDS(InfoFrameEntry, 0, 1, type);
PIN_FIELDS(InfoFrameEntry, 1, 3, oui);
PIN_FIELDS(InfoFrameEntry, 4, 1, payloadLength);
PIN_FIELDS(InfoFrameEntry, 5, 7, payload);
PIN_SIZE(InfoFrameEntry, 12);
PIN_FIELDS(InfoFrameRecord, 0, 1, additionalVendor, headerLength);
PIN_FIELDS(InfoFrameRecord, 2, 7, header);
PIN_FIELDS(InfoFrameRecord, 9, 1, count);
PIN_FIELDS(InfoFrameRecord, 10, 336, entries);
PIN_SIZE(InfoFrameRecord, 346);

constexpr uint8_t kVendorType = 1;
constexpr unsigned kHeader = 4;

struct InfoFrames : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_INFOFRAME, 4, 32};

  static bool Holds(const InfoFrameRecord& r) {
    if (r.headerLength > std::size(r.header) || r.count > std::size(r.entries)) return false;
    for (unsigned i = 0; i < r.count; ++i) {
      if (r.entries[i].payloadLength > std::size(r.entries[i].payload)) return false;
    }
    return Size(r, nullptr) <= REEDID_CEA_DATA_BLOCK_SIZE;
  }

  static unsigned Size(const InfoFrameRecord& r, const uint8_t*) {
    unsigned size = kHeader + r.headerLength;
    for (unsigned i = 0; i < r.count; ++i) size += EntrySize(r.entries[i]);
    return size;
  }

  static void Layout(const ExactIo& io, InfoFrameRecord& r, unsigned size) {
    io(r.headerLength, Place{2, 5, 3});
    io(r.additionalVendor, Place{3});
    if (io.Reads() && kHeader + r.headerLength > size) r.headerLength = Low8(size - kHeader);
    io.Copy(r.header, r.headerLength, kHeader);
    List(io, r.count, r.entries, kHeader + r.headerLength, size, [&io](InfoFrameEntry& entry, unsigned at) {
      io(entry.payloadLength, Place{Low8(at), 5, 3});
      io(entry.type, Place{Low8(at), 0, 5});
      const unsigned bytes = EntrySize(entry);
      if (entry.type == kVendorType) io.Copy(entry.oui, sizeof entry.oui, at + 1);
      io.Copy(entry.payload, entry.payloadLength, at + bytes - entry.payloadLength);
      return bytes;
    });
  }

 private:
  static unsigned EntrySize(const InfoFrameEntry& entry) {
    return 1u + (entry.type == kVendorType ? 3u : 0u) + entry.payloadLength;
  }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetInfoFrame(const CeaDataBlock* entry, InfoFrameRecord* record) {
  return GetExact<InfoFrames>(entry, record);
}

int32_t CEA_SetInfoFrame(const InfoFrameRecord* record, CeaDataBlock* entry) {
  return SetExact<InfoFrames>(record, entry);
}
