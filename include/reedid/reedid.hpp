/**
 * @file reedid.hpp
 * @brief The C interface for C++20: owners that close what they opened, ranges, spans and typed records. Header only.
 *
 * Nothing means anything else here than in C: each owner holds one pointer that the C interface handed out, get() gives
 * it to any C call, and * and -> reach the public fields. An empty owner stands for the null pointer of a refused call;
 * test it before you use it. Spans and ranges point into their owner and go stale as the C pointers do, with any add
 * or delete. The functions that return a std::vector allocate with it; nothing else here throws or allocates.
 */
#ifndef REEDID_REEDID_HPP
#define REEDID_REEDID_HPP

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "reedid/records.hpp"
#include "reedid/reedid.h"

namespace reedid {
inline namespace cpp0 {  // keeps these names apart from those inside the static library

/// Bytes that somebody else owns.
using ByteView = std::span<const uint8_t>;

/// The bytes of an image's block or section; empty when it has none.
inline ByteView BytesOf(const EdidBlock& block) {
  return block.bytes == nullptr ? ByteView() : ByteView(block.bytes, block.size);
}

/// The bytes of a CTA-861 data block with its header; empty when it has none.
inline ByteView BytesOf(const CeaDataBlock& entry) {
  return entry.bytes == nullptr ? ByteView() : ByteView(entry.bytes, entry.size);
}

/// The bytes of a DisplayID data block with its header; empty when it has none.
inline ByteView BytesOf(const DispIdDataBlock& entry) {
  return entry.bytes == nullptr ? ByteView() : ByteView(entry.bytes, entry.size);
}

/// The detailed timings among some descriptors, decoded by VESA_GetDTD one at a time; a forward range.
class TimingRange {
 public:
  /// Steps from one slot with flag 1 to the next.
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;   ///< dereferences to a value
    using iterator_concept = std::forward_iterator_tag;  ///< may be copied and started again
    using value_type = DtdTiming;                        ///< what * decodes
    using difference_type = std::ptrdiff_t;              ///< of two slots
    using pointer = void;                                ///< there is no object to point at
    using reference = DtdTiming;                         ///< by value

    Iterator() = default;
    /// Starts at the first detailed timing of `slots`.
    explicit Iterator(std::span<const DtdSlot> slots) : rest_(slots) { SkipOthers(); }
    /// The decoded timing.
    DtdTiming operator*() const {
      DtdTiming timing{};
      VESA_GetDTD(&slot(), &timing);
      return timing;
    }
    /// The descriptor behind the timing, for CEA_DeleteDTD and its like.
    const DtdSlot& slot() const { return rest_.front(); }
    /// To the next detailed timing.
    Iterator& operator++() {
      rest_ = rest_.subspan(1);
      SkipOthers();
      return *this;
    }
    /// To the next detailed timing; returns the place before.
    Iterator operator++(int) {
      const Iterator before = *this;
      ++*this;
      return before;
    }
    /// Whether both stand at the same place of the same descriptors.
    friend bool operator==(const Iterator& a, const Iterator& b) { return a.rest_.size() == b.rest_.size(); }

   private:
    void SkipOthers() {
      while (!rest_.empty() && rest_.front().flag != 1) rest_ = rest_.subspan(1);
    }
    std::span<const DtdSlot> rest_;
  };

  /// The detailed timings among `slots`, which must outlive the range.
  explicit TimingRange(std::span<const DtdSlot> slots) : slots_(slots) {}
  /// The first detailed timing.
  Iterator begin() const { return Iterator(slots_); }
  /// Past the last one.
  Iterator end() const { return Iterator(slots_.last(0)); }

 private:
  std::span<const DtdSlot> slots_;
};

/// Move-only owner of one object of the C interface, closed by `kClose` when the owner goes.
template <class T, auto kClose>
class Owner {
 public:
  Owner() = default;
  /// Takes over what a C call handed out; null makes an empty owner.
  explicit Owner(T* taken) : object_(taken) {}
  /// Whether there is an object.
  explicit operator bool() const { return object_ != nullptr; }
  /// The object, for C calls; still owned here.
  T* get() const { return object_.get(); }
  /// The object, which is the caller's to close from now on.
  T* release() { return object_.release(); }
  /// The object's fields. The owner must not be empty.
  T& operator*() const { return *object_; }
  /// A field of the object. The owner must not be empty.
  T* operator->() const { return object_.get(); }

 private:
  struct Closer {
    void operator()(T* object) const { kClose(object); }
  };
  std::unique_ptr<T, Closer> object_;
};

/// An image: EDID_Open, EDID_Close, EDID_GenerateEdid and the questions that need an array.
class Image : public Owner<EdidHandle, &EDID_Close> {
 public:
  Image() = default;  ///< empty
  /// Takes over what a C call handed out.
  explicit Image(EdidHandle* taken) : Owner(taken) {}
  /// Opens a copy of `bytes`. Empty when EDID_Open refuses them.
  explicit Image(ByteView bytes) : Owner(EDID_Open(bytes.data(), LengthOf(bytes))) {}

  /// The blocks in image order; none when empty.
  std::span<EdidBlock> Blocks() const {
    return get() == nullptr || get()->blocks == nullptr ? std::span<EdidBlock>()
                                                        : std::span(get()->blocks, get()->blockCount);
  }

  /// The image as bytes, right as a whole, from EDID_GenerateImage; empty without memory.
  std::vector<uint8_t> Bytes() const {
    size_t size = 0;
    for (const EdidBlock& block : Blocks()) size += block.size;
    std::vector<uint8_t> bytes(size);
    const int32_t written = EDID_GenerateImage(get(), bytes.data(), static_cast<uint32_t>(size));
    bytes.resize(written < 0 ? 0 : static_cast<size_t>(written));
    return bytes;
  }

  /// Every timing that the image offers, in the order of its bytes: EDID_GetTimings.
  std::vector<OfferedTiming> Timings() const {
    std::vector<OfferedTiming> timings(EDID_GetTimings(get(), nullptr, 0));
    timings.resize(EDID_GetTimings(get(), timings.data(), static_cast<uint32_t>(timings.size())));
    return timings;
  }

  /// Their rates in mHz, highest first: EDID_GetRates.
  std::vector<uint32_t> Rates() const {
    std::vector<uint32_t> rates(EDID_GetRates(get(), nullptr, 0));
    rates.resize(EDID_GetRates(get(), rates.data(), static_cast<uint32_t>(rates.size())));
    return rates;
  }

  /// The whole-number frame rates of EDID_GetAllFrameRate; Rates() has those of the display.
  std::vector<uint16_t> FrameRates() const {
    std::vector<uint16_t> rates(255);
    rates.resize(EDID_GetAllFrameRate(get(), rates.data(), 255));
    return rates;
  }

  /// Every detailed timing of the image in block order: EDID_FindOutAllDTD.
  std::vector<DtdTiming> DetailedTimings() const {
    std::vector<DtdTiming> timings(EDID_GetDTDCnt(get()));
    if (!timings.empty()) {
      timings.resize(EDID_FindOutAllDTD(get(), timings.data(), static_cast<uint32_t>(timings.size())));
    }
    return timings;
  }

 private:
  static uint32_t LengthOf(ByteView bytes) {  // more than 32 bits count is no image and is refused as one
    return static_cast<uint32_t>(std::min<size_t>(bytes.size(), UINT32_MAX));
  }
};

/// A decoded base block: VESA_Open, VESA_Close, VESA_GenerateBlock.
class BaseBlock : public Owner<VesaBlock, &VESA_Close> {
 public:
  BaseBlock() = default;  ///< empty
  /// Takes over what a C call handed out.
  explicit BaseBlock(VesaBlock* taken) : Owner(taken) {}
  /// Opens a block of type EDID_BLOCK_VESA. Empty when VESA_Open refuses it.
  explicit BaseBlock(const EdidBlock& block) : Owner(VESA_Open(&block)) {}
  /// Writes the model to the bytes of `block`; 0, or -1 when VESA_GenerateBlock refuses.
  int32_t GenerateInto(EdidBlock& block) const { return VESA_GenerateBlock(get(), &block); }
  /// The four descriptor slots; none when empty.
  std::span<DtdSlot> Descriptors() const { return get() == nullptr ? std::span<DtdSlot>() : get()->descriptors; }
  /// The detailed timings among the descriptors.
  TimingRange Timings() const { return TimingRange(Descriptors()); }
};

/// The first range limits of a base block; their meaning depends on its version.
template <>
inline std::optional<RangeLimits> Find<RangeLimits, BaseBlock>(const BaseBlock& base) {
  for (const DtdSlot& slot : base.Descriptors()) {
    RangeLimits limits{};
    if (slot.flag == EDID_DESCRIPTOR_RANGE_LIMITS && VESA_GetRangeLimits(base.get(), &slot, &limits) == 0)
      return limits;
  }
  return std::nullopt;
}

/// A decoded CTA-861 extension: CEA_Open, CEA_Close, CEA_GenerateBlock.
class CtaExtension : public Owner<CeaBlock, &CEA_Close> {
 public:
  CtaExtension() = default;  ///< empty
  /// Takes over what a C call handed out.
  explicit CtaExtension(CeaBlock* taken) : Owner(taken) {}
  /// Opens a block of type EDID_BLOCK_CEA. Empty when CEA_Open refuses it.
  explicit CtaExtension(const EdidBlock& block) : Owner(CEA_Open(&block)) {}
  /// Writes the model to the bytes of `block`; 0, or -1 when CEA_GenerateBlock refuses.
  int32_t GenerateInto(EdidBlock& block) const { return CEA_GenerateBlock(get(), &block); }
  /// The data blocks in their order; none when empty.
  std::span<CeaDataBlock> DataBlocks() const {
    return get() == nullptr || get()->dataBlocks == nullptr ? std::span<CeaDataBlock>()
                                                            : std::span(get()->dataBlocks, get()->dataBlockCount);
  }
  /// The descriptor slots behind the data blocks; none when empty.
  std::span<DtdSlot> Descriptors() const {
    return get() == nullptr || get()->dtds == nullptr ? std::span<DtdSlot>() : std::span(get()->dtds, get()->dtdCount);
  }
  /// The detailed timings behind the data blocks.
  TimingRange Timings() const { return TimingRange(Descriptors()); }
};

/// A decoded DisplayID section: DispID_Open, DispID_Close, DispID_GenerateBlock.
class DisplayIdSection : public Owner<DispIdBlock, &DispID_Close> {
 public:
  DisplayIdSection() = default;  ///< empty
  /// Takes over what a C call handed out.
  explicit DisplayIdSection(DispIdBlock* taken) : Owner(taken) {}
  /// Opens a block of a DisplayID type. Empty when DispID_Open refuses it.
  explicit DisplayIdSection(const EdidBlock& block) : Owner(DispID_Open(&block)) {}
  /// Writes the model to the bytes of `block`; 0, or -1 when DispID_GenerateBlock refuses.
  int32_t GenerateInto(EdidBlock& block) const { return DispID_GenerateBlock(get(), &block); }
  /// The data blocks in their order; none when empty.
  std::span<DispIdDataBlock> DataBlocks() const {
    return get() == nullptr || get()->dataBlocks == nullptr ? std::span<DispIdDataBlock>()
                                                            : std::span(get()->dataBlocks, get()->dataBlockCount);
  }
};

}  // namespace cpp0
}  // namespace reedid

#endif
