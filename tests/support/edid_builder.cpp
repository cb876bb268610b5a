#include "tests/support/edid_builder.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>

namespace reedid::test {

DtdTiming AtClock(DtdTiming timing, uint32_t pixelClock) {
  timing.pixelClock = pixelClock;
  timing.frameRate = 0;
  return timing;
}

DtdSlot SlotOf(const DtdTiming& timing) {
  DtdSlot slot;
  if (VESA_SetDTD(&timing, &slot) != 0) throw std::invalid_argument("a timing that no DTD can hold");
  return slot;
}

ByteVector DescriptorOf(const DtdTiming& timing) {
  const DtdSlot slot = SlotOf(timing);
  return ByteVector(slot.bytes, slot.bytes + sizeof slot.bytes);
}

void FixChecksum(ByteVector& bytes) {
  uint8_t& last = bytes.at(bytes.size() - 1);
  last = 0;
  last = static_cast<uint8_t>(0u - std::accumulate(bytes.begin(), bytes.end(), 0u));
}

Cta& Cta::Header(size_t at, uint8_t byte) {
  header_[at] = byte;
  return *this;
}

Cta& Cta::Block(uint8_t tag, const ByteVector& payload) {
  blocks_ = Concat({blocks_, {static_cast<uint8_t>(unsigned{tag} << 5 | payload.size())}, payload});
  return *this;
}

Cta& Cta::Hdmi(uint16_t physAddr, const ByteVector& rest) {
  return Block(3,
               Concat({{0x03, 0x0C, 0x00, static_cast<uint8_t>(physAddr >> 8), static_cast<uint8_t>(physAddr)}, rest}));
}

Cta& Cta::Dtd(const DtdTiming& timing) {
  dtds_ = Concat({dtds_, DescriptorOf(timing)});
  return *this;
}

ByteVector Cta::Build() const {
  ByteVector bytes = Concat({header_, blocks_});
  if (bytes[2] == kBehindBlocks) bytes[2] = static_cast<uint8_t>(bytes.size());
  bytes.resize(std::max<size_t>(bytes.size(), bytes[2]));
  bytes = Concat({bytes, dtds_});
  if (bytes.size() > 127) throw std::invalid_argument("a CTA extension of more than 128 bytes");
  bytes.resize(128);
  FixChecksum(bytes);
  return bytes;
}

Section::Section(uint8_t versionByte, uint8_t productType) : header_{versionByte, 0, productType, 0} {}

Section& Section::Block(uint8_t tag, uint8_t flags, const ByteVector& payload) {
  blocks_ = Concat({blocks_, {tag, flags, static_cast<uint8_t>(payload.size())}, payload});
  return *this;
}

Section& Section::TypeI(const std::vector<DtdTiming>& timings) {
  uint8_t bytes[251];
  DispIdDataBlock entry = {0, 0, 0, 0, bytes};
  if (DispID_Set20ByteDTD(timings.data(), static_cast<uint32_t>(timings.size()), &entry) != 0) {
    throw std::invalid_argument("a timing that no type I descriptor can hold");
  }
  return Block(0x03, 1, ByteVector(bytes + 3, bytes + entry.size));
}

Section& Section::ExtensionCount(uint8_t count) {
  header_[3] = count;
  return *this;
}

ByteVector Section::Build(size_t padding) const {
  ByteVector bytes = Concat({header_, blocks_, ByteVector(padding + 1)});
  bytes[1] = static_cast<uint8_t>(blocks_.size() + padding);
  FixChecksum(bytes);
  return bytes;
}

ByteVector Section::BuildExtension() const {
  if (blocks_.size() > 121) throw std::invalid_argument("a DisplayID extension of more than 128 bytes");
  ByteVector bytes = Concat({{0x70}, Build(121 - blocks_.size()), {0}});
  FixChecksum(bytes);
  return bytes;
}

Edid::Edid(uint8_t revision) : base_(128) {
  const ByteVector head = {0x00, 0xFF, 0xFF, 0xFF,    0xFF, 0xFF, 0xFF, 0x00,  // header
                           0x48, 0xA4, 0x34, 0x12,    0x78, 0x56, 0x34, 0x12,  // maker "RED", product, serial number
                           10,   34,   1,    revision};                        // week 10 of 2024, version
  Set(0, head);
  Set(20, {static_cast<uint8_t>(revision == 4 ? 0xA5 : 0x80), 60, 34, 120, 0x0E});
  Set(25, {0xEE, 0x91, 0xA3, 0x54, 0x4C, 0x99, 0x26, 0x0F, 0x50, 0x54});  // sRGB primaries
  for (size_t at = 38; at < 54; ++at) base_[at] = 0x01;                   // no standard timings
}

Edid& Edid::Set(size_t at, const ByteVector& bytes) {
  std::copy(bytes.begin(), bytes.end(), base_.begin() + static_cast<std::ptrdiff_t>(at));
  return *this;
}

Edid& Edid::Slot(ByteVector bytes) {
  if (slots_ == 4) throw std::invalid_argument("more than four descriptors");
  bytes.resize(18);
  return Set(54 + 18 * slots_++, bytes);
}

Edid& Edid::Name(const std::string& text) {
  ByteVector bytes = Concat({{0}, ByteVector(text.begin(), text.end()), {0x0A}});
  bytes.resize(14, 0x20);
  return Descriptor(0xFC, bytes);
}

Edid& Edid::Extension(const ByteVector& block) {
  extensions_ = Concat({extensions_, block});
  return *this;
}

ByteVector Edid::Build() const {
  ByteVector bytes = base_;
  bytes[126] = static_cast<uint8_t>(extensions_.size() / 128);
  FixChecksum(bytes);
  return Concat({bytes, extensions_});
}

}  // namespace reedid::test
