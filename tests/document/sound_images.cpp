#include "tests/document/sound_images.h"

#include <algorithm>

namespace reedid::test {
namespace {

const ByteVector kRange = {0x00, 24, 75, 30, 140, 60, 0x01, 0x0A, 0x20, 0x20, 0x20, 0x20, 0x20, 0x20};

Edid MonitorBase(const std::vector<DtdTiming>& timings) {
  Edid edid(4);
  size_t slots = 0;
  for (const DtdTiming& timing : timings) {
    edid.Dtd(timing);
    ++slots;
  }
  if (++slots <= 4) edid.Descriptor(0xFD, kRange);
  if (++slots <= 4) edid.Name("Sound");
  if (++slots <= 4) edid.Descriptor(0x10, {});
  return edid;
}

void AddBlock(Cta& cta, uint8_t tag, const ByteVector& payload) {
  if (!payload.empty()) cta.Block(tag, payload);
}

}  // namespace

DtdTiming Sized(DtdTiming timing, uint16_t width, uint16_t height) {
  timing.hImageSize = width;
  timing.vImageSize = height;
  return timing;
}

ByteVector Spoiled(ByteVector image, const Spoils& spoils) {
  if (spoils.empty()) return image;
  for (const auto& [at, bytes] : spoils) std::copy(bytes.begin(), bytes.end(), image.begin() + static_cast<long>(at));
  for (size_t at = 0; at < image.size(); at += 128) {
    ByteVector block(image.begin() + static_cast<long>(at), image.begin() + static_cast<long>(at) + 128);
    FixChecksum(block);
    image[at + 127] = block[127];
  }
  return image;
}

ByteVector Monitor(const Spoils& spoils) {
  return MonitorWith({Sized(k1080p60)}, spoils);
}

ByteVector Monitor13(const Spoils& spoils) {
  return Spoiled(Monitor({{0x13, {3}}, {0x14, {0x80}}, {0x18, {0x0E}}, {kRangeAt + 10, {0}}}), spoils);
}

ByteVector MonitorWith(const std::vector<DtdTiming>& timings, const Spoils& spoils) {
  return Spoiled(MonitorBase(timings).Build(), spoils);
}

ByteVector TextSlot(uint8_t tag, const std::string& text) {
  ByteVector slot = Concat({{0, 0, 0, tag, 0}, ByteVector(text.begin(), text.end())});
  slot.resize(18, 0x20);
  return slot;
}

ByteVector Build(const Tv& tv) {
  Edid edid = MonitorBase({Sized(k1080p60)});
  edid.Set(0x14, {0xA2});
  if (tv.withCta) {
    Cta cta;
    cta.Flags(tv.flags);
    AddBlock(cta, 2, tv.vdb);
    AddBlock(cta, 1, tv.audio);
    AddBlock(cta, 4, tv.speakers);
    AddBlock(cta, 3, tv.hdmi);
    AddBlock(cta, 3, tv.forum);
    for (const ByteVector& extended : {tv.capability, tv.colorimetry, tv.hdr, tv.y420}) AddBlock(cta, 7, extended);
    for (size_t at = 0; at < tv.more.size();) {
      const size_t size = tv.more[at] & 0x1F;
      const auto payload = tv.more.begin() + static_cast<long>(at) + 1;
      cta.Block(tv.more[at] >> 5, ByteVector(payload, payload + static_cast<long>(size)));
      at += size + 1;
    }
    for (const DtdTiming& timing : tv.dtds) cta.Dtd(Sized(timing));
    edid.Extension(cta);
  }
  for (const ByteVector& extension : tv.extensions) edid.Extension(extension);
  return Spoiled(edid.Build(), tv.spoils);
}

ByteVector WithSection(const Section& section, const Spoils& spoils) {
  return Build({.spoils = spoils, .extensions = {section.BuildExtension()}});
}

ByteVector PanelParameters(unsigned pixels, unsigned lines, unsigned mm) {
  const auto low = [](unsigned value) { return static_cast<uint8_t>(value); };
  const auto high = [](unsigned value) { return static_cast<uint8_t>(value >> 8); };
  return {low(mm * 10),
          high(mm * 10),
          low(kHeight * 10),
          high(kHeight * 10),
          low(pixels),
          high(pixels),
          low(lines),
          high(lines),
          0x00,
          120,
          78,
          0x77};
}

}  // namespace reedid::test
