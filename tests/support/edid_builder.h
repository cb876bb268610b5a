// EDIDs that say what they hold: Edid().Dtd(k1080p60).Extension(Cta().Vdb({16, 97}).Hdmi(0x1000)).
#pragma once

#include <cstdint>
#include <string>

#include "reedid/reedid.h"
#include "tests/support/bytes.h"

namespace reedid::test {

// 1920x1080 at 60 Hz as CTA-861 has it, and the same geometry at other clocks.
inline constexpr DtdTiming k1080p60 = {148500, 1920, 280, 88, 44, 1080, 45, 4, 5, 1, 1, 0, 60, 8, 0, 0, 0, 0, 0};
inline constexpr DtdTiming k720p60 = {74250, 1280, 370, 110, 40, 720, 30, 5, 5, 1, 1, 0, 60, 8, 0, 0, 0, 0, 0};
inline constexpr DtdTiming k2160p60 = {594000, 3840, 560, 176, 88, 2160, 90, 8, 10, 1, 1, 0, 60, 8, 0, 0, 0, 0, 0};

// A timing at another clock, in kHz.
DtdTiming AtClock(DtdTiming timing, uint32_t pixelClock);

// The slot of a timing; stops the test when it does not fit a DTD.
DtdSlot SlotOf(const DtdTiming& timing);

ByteVector DescriptorOf(const DtdTiming& timing);

// Sets the last byte so that all bytes add up to 0.
void FixChecksum(ByteVector& bytes);

// A CTA-861 extension. Data blocks stand in the order of the calls.
class Cta {
 public:
  Cta& Revision(uint8_t revision) { return Header(1, revision); }
  Cta& DtdOffset(uint8_t offset) { return Header(2, offset); }  // where the DTDs would begin otherwise
  Cta& Flags(uint8_t byte3) { return Header(3, byte3); }
  // A data block: header tag and payload; extended tags are the payload's first byte.
  Cta& Block(uint8_t tag, const ByteVector& payload);
  Cta& Vdb(const ByteVector& svds) { return Block(2, svds); }
  Cta& Extended(uint8_t extTag, const ByteVector& payload) { return Block(7, Concat({{extTag}, payload})); }
  // An HDMI 1.4b VSDB with this physical address and these bytes from byte 6 on.
  Cta& Hdmi(uint16_t physAddr, const ByteVector& rest = {0, 30});
  // An HDMI Forum VSDB with these bytes from byte 4 on.
  Cta& HdmiForum(const ByteVector& rest) { return Block(3, Concat({{0xD8, 0x5D, 0xC4}, rest})); }
  Cta& Dtd(const DtdTiming& timing);
  ByteVector Build() const;

 private:
  Cta& Header(size_t at, uint8_t byte);
  ByteVector header_ = {0x02, 3, kBehindBlocks, 0};
  ByteVector blocks_;
  ByteVector dtds_;
  static constexpr uint8_t kBehindBlocks = 255;  // no offset that a test sets
};

// A DisplayID section of a given version nibble and product type.
class Section {
 public:
  explicit Section(uint8_t versionByte = 0x12, uint8_t productType = 2);
  // A data block: tag, byte 1 (flags and revision) and payload.
  Section& Block(uint8_t tag, uint8_t flags, const ByteVector& payload);
  // A type I block of these timings.
  Section& TypeI(const std::vector<DtdTiming>& timings);
  Section& ExtensionCount(uint8_t count);
  // Standalone: the payload as long as its blocks, plus padding.
  ByteVector Build(size_t padding = 0) const;
  // As an EDID extension block.
  ByteVector BuildExtension() const;

 private:
  ByteVector header_;
  ByteVector blocks_;
};

// A base block and its extensions, with right checksums and count.
class Edid {
 public:
  explicit Edid(uint8_t revision = 4);
  Edid& Set(size_t at, const ByteVector& bytes);  // raw bytes of the base block
  // The next free descriptor slot.
  Edid& Slot(ByteVector bytes);
  Edid& Dtd(const DtdTiming& timing) { return Slot(DescriptorOf(timing)); }
  Edid& Descriptor(uint8_t tag, const ByteVector& bytes4To17) { return Slot(Concat({{0, 0, 0, tag}, bytes4To17})); }
  Edid& Name(const std::string& text);
  Edid& Extension(const ByteVector& block);
  Edid& Extension(const Cta& cta) { return Extension(cta.Build()); }
  Edid& Extension(const Section& section) { return Extension(section.BuildExtension()); }
  ByteVector Build() const;

 private:
  ByteVector base_;
  size_t slots_ = 0;
  ByteVector extensions_;
};

}  // namespace reedid::test
