//  8     latencies present 7, interlaced latencies present 6, video part present 5
//  L     3D present 7, 3D multi 6..5, image size 4..3; L is 9, 11 or 13, behind the latencies
//  L+1   number of HDMI VICs 7..5, bytes of the 3D part 4..0
//  L+2   HDMI VICs; then the 3D part: with multi 1 and 2 the structures that all have (16 bits), with 2 a mask of short
//        video descriptors (16 bits, most significant byte first), then entries: descriptor 7..4, structure 3..0, and a
//        second byte when the structure is 8 or more

#include "patch/hdmi_video.h"

#include <algorithm>
#include <cstring>

namespace reedid {
namespace {

constexpr unsigned kFlagsByte = 8;
constexpr unsigned kMaskBits = 16;
constexpr unsigned kFirstDetailed = 8;  // structure

// Places in a VSDB; a part that passes its end is cut off.
struct VideoPart {
  explicit VideoPart(Bytes bytes) {
    const bool latency = Bit(bytes[kFlagsByte], 7);
    begin = 9 + (latency ? 2u : 0u) + (latency && Bit(bytes[kFlagsByte], 6) ? 2u : 0u);
    const auto size = static_cast<unsigned>(bytes.size());
    present = Bit(bytes[kFlagsByte], 5) && size > begin + 1;
    if (!present) return;
    const auto within = [size](unsigned at) { return std::min(at, size); };
    vics = begin + 2;
    formats = within(vics + Bits(bytes[begin + 1], 5, 3));
    end = within(formats + Bits(bytes[begin + 1], 0, 5));
    const unsigned multi = Bits(bytes[begin], 5, 2);
    mask = multi == 2 && formats + 4 <= end ? formats + 2 : 0;
    entries = within(formats + (multi == 1 ? 2 : multi == 2 ? 4 : 0));
  }
  bool present = false;
  unsigned begin = 0, vics = 0, formats = 0, mask = 0, entries = 0, end = 0;
};

// A copy to edit; it never grows.
struct Scratch {
  explicit Scratch(Bytes from) : size(static_cast<unsigned>(from.size())) { from.CopyTo(bytes); }
  void Erase(unsigned at, unsigned count) {
    std::memmove(bytes + at, bytes + at + count, size - at - count);
    size -= count;
    bytes[0] = Low8(bytes[0] - count);
  }
  Bytes view() const { return {bytes, size}; }
  uint8_t bytes[REEDID_CEA_DATA_BLOCK_SIZE] = {};
  unsigned size;
};

void EraseFromMask(uint8_t* mask, unsigned index) {
  const unsigned bits = unsigned{mask[0]} << 8 | mask[1];
  const unsigned below = (1u << index) - 1;
  const unsigned after = (bits & below) | ((bits >> 1) & ~below);
  mask[0] = Low8(after >> 8);
  mask[1] = Low8(after);
}

}  // namespace

bool HasRatios(const CtaCursor& vsdb) {
  const VideoPart part(vsdb.bytes());
  return part.present && Bits(vsdb.bytes()[part.begin], 3, 2) == 1;
}

bool Has3d(const CtaCursor& vsdb) {
  const VideoPart part(vsdb.bytes());
  return part.present && Bit(vsdb.bytes()[part.begin], 7) != 0;
}

void EraseHdmiVic(CtaCursor& vsdb, unsigned at) {
  const VideoPart part(vsdb.bytes());
  const unsigned place = at - vsdb.at();
  if (!part.present || place < part.vics || place >= part.formats) return;
  Scratch scratch(vsdb.bytes());
  scratch.bytes[part.begin + 1] = Low8(scratch.bytes[part.begin + 1] - 0x20);
  scratch.Erase(place, 1);
  vsdb.Replace(scratch.view());
}

void EraseFrom3d(CtaCursor& vsdb, unsigned index) {
  const VideoPart part(vsdb.bytes());
  if (!part.present || index >= kMaskBits) return;
  Scratch scratch(vsdb.bytes());
  if (part.mask != 0) EraseFromMask(scratch.bytes + part.mask, index);
  unsigned end = part.end;
  for (unsigned at = part.entries; at < end;) {
    const unsigned size = Bits(scratch.bytes[at], 0, 4) < kFirstDetailed ? 1 : 2;
    const unsigned order = Bits(scratch.bytes[at], 4, 4);
    if (order == index && at + size <= end) {
      scratch.bytes[part.begin + 1] = Low8(scratch.bytes[part.begin + 1] - size);
      scratch.Erase(at, size);
      end -= size;
      continue;
    }
    if (order > index) scratch.bytes[at] = Low8(scratch.bytes[at] - 0x10);
    at += size;
  }
  vsdb.Replace(scratch.view());
}

}  // namespace reedid
