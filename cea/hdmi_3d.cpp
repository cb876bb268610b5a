// The HDMI 1.4b VSDB (HDMI 1.4b, table 8-16) with all that its video part says of 3D. Bytes 1..3 are the OUI 00-0C-03.
//
//   4-5   physical address, high byte first
//   6     AI 7, 48 bit 6, 36 bit 5, 30 bit 4, Y444 3, DVI dual 0
//   7     max TMDS clock / 5 MHz
//   8     latency 7, interlaced latency 6, video part 5, content types 3..0
//   9..   with 8.7 two latencies, with 8.6 besides two more, as they are coded
//   then, with 8.5, the video part
//     0   3D 7, which lists follow 6..5, image size 4..3
//     1   HDMI VIC count 7..5, bytes of 3D lists 4..0
//     2.. HDMI VICs
//         3D structures of all formats, high byte first, when lists are 1 or 2; which formats those are, when 2
//         then single formats: index of the video descriptor 7..4, 3D structure 3..0, and for structures from 8 on a
//         byte with the detail 7..4

#include <iterator>

#include "base/pinned.h"
#include "cea/exact_codec.h"
#include "cea/hdmi_layout.h"
#include "reedid/cea_hdmi.h"

namespace reedid {
namespace {

PIN_FIELDS(H14b3dEntry, 0, 1, twoD_VIC_order, threeD_Structure, threeD_Detail);
PIN_SIZE(H14b3dEntry, 3);
PIN_FIELDS(H14b3dRecord, 0, 2, physAddr, max_TMDS_Clock);
PIN_FIELDS(H14b3dRecord, 4, 1, supportsAI, DC_48bit, DC_36bit, DC_30bit, DC_Y444, DVI_Dual, latencyPresent,
           iLatencyPresent, hdmiVideoPresent);
PIN_FIELDS(H14b3dRecord, 13, 4, cnc);
PIN_FIELDS(H14b3dRecord, 17, 1, videoLatency, audioLatency, iVideoLatency, iAudioLatency, threeD_present,
           threeD_Multi_present, imageSize, hdmiVicLen);
PIN_FIELDS(H14b3dRecord, 25, 7, hdmiVics);
PIN_FIELDS(H14b3dRecord, 32, 1, entryCount);
PIN_FIELDS(H14b3dRecord, 33, 93, entries);
PIN_FIELDS(H14b3dRecord, 126, 2, threeD_Structure_ALL, threeD_MASK);
PIN_SIZE(H14b3dRecord, 130);

constexpr unsigned kFixedSize = 9;
constexpr uint8_t kDetailed = 8;  // the first structure that has a detail

struct Hdmi14b : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_VENDOR, 0, 6, 32};
  static constexpr uint32_t kOui = REEDID_OUI_HDMI;

  static bool Holds(const H14b3dRecord& r) {
    return r.hdmiVicLen <= std::size(r.hdmiVics) && r.entryCount <= std::size(r.entries) &&
           FullSize(r) <= REEDID_CEA_DATA_BLOCK_SIZE;
  }

  // What a block that ends early does not hold is 0.
  static unsigned Size(const H14b3dRecord& r, const uint8_t* bytes) {
    const unsigned size = FullSize(r);
    return size > kFixedSize ? size : UsedSize(bytes, kForm.minSize);
  }

  static void Layout(const ExactIo& io, H14b3dRecord& r, unsigned size) {
    H14bFixedLayout(io, r);
    unsigned at = kFixedSize;
    if (r.latencyPresent) {
      io(r.videoLatency, Place{9});
      io(r.audioLatency, Place{10});
      at += 2;
    }
    if (r.latencyPresent && r.iLatencyPresent) {
      io(r.iVideoLatency, Place{11});
      io(r.iAudioLatency, Place{12});
      at += 2;
    }
    if (r.hdmiVideoPresent && at + 1 < size) Video(io, r, at, size);
  }

 private:
  static void Video(const ExactIo& io, H14b3dRecord& r, unsigned at, unsigned size) {
    io(r.threeD_present, Place{Low8(at), 7, 1});
    io(r.threeD_Multi_present, Place{Low8(at), 5, 2});
    io(r.imageSize, Place{Low8(at), 3, 2});
    io(r.hdmiVicLen, Place{Low8(at + 1), 5, 3});
    unsigned length = io.Reads() ? 0 : ListSize(r);
    io(length, Place{Low8(at + 1), 0, 5});
    at += 2;
    // VICs and lists that the block ends in are left out.
    if (io.Reads() && at + r.hdmiVicLen > size) r.hdmiVicLen = Low8(size - at);
    io.Copy(r.hdmiVics, r.hdmiVicLen, at);
    at += r.hdmiVicLen;
    Lists(io, r, at, at + length < size ? at + length : size);
  }

  static void Lists(const ExactIo& io, H14b3dRecord& r, unsigned at, unsigned end) {
    if (io.Reads() && HasStructures(r) && at + 2u * r.threeD_Multi_present > end) {
      r.threeD_Multi_present = at + 2 <= end;
    }
    if (HasStructures(r)) io(r.threeD_Structure_ALL, Place{Low8(at + 1)}, Place{Low8(at)});
    if (r.threeD_Multi_present == 2) io(r.threeD_MASK, Place{Low8(at + 3)}, Place{Low8(at + 2)});
    if (HasStructures(r)) at += 2u * r.threeD_Multi_present;
    List(io, r.entryCount, r.entries, at, end,
         [&io](H14b3dEntry& entry, unsigned place) { return Entry(io, entry, place); });
  }

  // Gives back its bytes.
  static unsigned Entry(const ExactIo& io, H14b3dEntry& entry, unsigned at) {
    io(entry.twoD_VIC_order, Place{Low8(at), 4, 4});
    io(entry.threeD_Structure, Place{Low8(at), 0, 4});
    if (entry.threeD_Structure < kDetailed) return 1;
    io(entry.threeD_Detail, Place{Low8(at + 1), 4, 4});
    return 2;
  }

  static bool HasStructures(const H14b3dRecord& r) {
    return r.threeD_Multi_present == 1 || r.threeD_Multi_present == 2;
  }

  static unsigned ListSize(const H14b3dRecord& r) {
    unsigned size = HasStructures(r) ? r.threeD_Multi_present * 2u : 0u;
    for (unsigned i = 0; i < r.entryCount; ++i) size += r.entries[i].threeD_Structure < kDetailed ? 1 : 2;
    return size;
  }

  static unsigned FullSize(const H14b3dRecord& r) {
    const unsigned latencies = r.latencyPresent ? (r.iLatencyPresent ? 4 : 2) : 0;
    return kFixedSize + latencies + (r.hdmiVideoPresent ? 2u + r.hdmiVicLen + ListSize(r) : 0u);
  }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetH14b3D(const CeaDataBlock* entry, H14b3dRecord* record) {
  return GetExact<Hdmi14b>(entry, record);
}

int32_t CEA_SetH14b3D(const H14b3dRecord* record, CeaDataBlock* entry) {
  return SetExact<Hdmi14b>(record, entry);
}
