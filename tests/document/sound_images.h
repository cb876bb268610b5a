// Images without any finding, and ways to spoil them in one place.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "tests/support/edid_builder.h"

namespace reedid::test {

inline constexpr int kThisYear = 2026;

// The sound images' panel, mm.
inline constexpr uint16_t kWidth = 600, kHeight = 340;

DtdTiming Sized(DtdTiming timing, uint16_t width = kWidth, uint16_t height = kHeight);

struct BytesAt {
  size_t at;
  ByteVector bytes;
};
using Spoils = std::vector<BytesAt>;

// Writes bytes and makes the checksums of all blocks right.
ByteVector Spoiled(ByteVector image, const Spoils& spoils);

// Descriptor slots of the sound base block: timing, range limits, name, dummy.
inline constexpr size_t kTimingAt = 0x36, kRangeAt = 0x48, kNameAt = 0x5A, kDummyAt = 0x6C;

// A computer's monitor: one block of EDID 1.4; and the same by EDID 1.3.
ByteVector Monitor(const Spoils& spoils = {});
ByteVector Monitor13(const Spoils& spoils = {});

// A monitor with these timings in front, in place of its own, and then its range limits and name as far as they fit.
ByteVector MonitorWith(const std::vector<DtdTiming>& timings, const Spoils& spoils = {});

// A slot with a text as it stands, 13 bytes from byte 5.
ByteVector TextSlot(uint8_t tag, const std::string& text);

// A television of HDMI 2.0. A data block that is left empty is left out.
struct Tv {
  uint8_t flags = 0xF1;
  ByteVector vdb = {0x90, 4, 1, 97};
  ByteVector audio = {0x09, 0x07, 0x07};
  ByteVector speakers = {0x01, 0x00, 0x00};
  ByteVector hdmi = {0x03, 0x0C, 0x00, 0x10, 0x00, 0x38, 68};
  ByteVector forum = {0xD8, 0x5D, 0xC4, 1, 120, 0x80, 0x00};
  ByteVector capability = {0x00, 0xCA};
  ByteVector colorimetry = {0x05, 0xE0, 0x00};
  ByteVector hdr = {0x06, 0x05, 0x01};
  ByteVector y420 = {};
  ByteVector more = {};  // whole data blocks behind all others
  std::vector<DtdTiming> dtds = {};
  Spoils spoils = {};                       // of the image: the CTA extension is block 1
  std::vector<ByteVector> extensions = {};  // behind the CTA extension
  bool withCta = true;
};
ByteVector Build(const Tv& tv);

// The sound television with a section of DisplayID behind its CTA extension.
ByteVector WithSection(const Section& section, const Spoils& spoils = {});
inline constexpr size_t kSectionAt = 257;  // its version byte

// Display parameters of the sound panel (DisplayID 1.3, table 4-6).
ByteVector PanelParameters(unsigned pixels = 1920, unsigned lines = 1080, unsigned mm = kWidth);

}  // namespace reedid::test
