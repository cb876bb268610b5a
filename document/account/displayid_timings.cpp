// One reader for each form of timing, and a table from tag to reader.

#include "document/account/displayid_timings.h"

#include <fmt/format.h>

#include <array>
#include <optional>

#include "document/account/detailed_timing.h"
#include "document/account/records.h"
#include "document/account/timing_lists.h"

namespace reedid::document {
namespace {

constexpr uint32_t kMostRecords = 256;
constexpr size_t kHeader = 3;

// Getters deliver as many records as the block has, so an array of kMostRecords holds any answer.
template <class Record>
std::optional<uint32_t> Read(const DispIdDataBlock& entry, int32_t (*get)(const DispIdDataBlock*, Record*, uint32_t),
                             Record* records) {
  const int32_t count = DispID_GetTimingCnt(&entry);
  if (count < 0 || get(&entry, records, kMostRecords) < 0) return std::nullopt;
  return static_cast<uint32_t>(count);
}

// Where a detailed timing has what; `at` begins with it. Type II packs both syncs into byte 3.
TimingBytes TypeIIBytes(const ByteSource& at) {
  return {at(0, 4), at({3, 4, 5, 6}), at({3, 7, 8, 9, 10})};
}

TimingBytes TypeVIBytes(const ByteSource& at) {
  return {at(0, 3), at({3, 4, 7, 8, 9, 10}), at({5, 6, 11, 12, 13})};
}

unsigned TypeISize(const ByteSource&) {
  return 20;
}

unsigned TypeIISize(const ByteSource&) {
  return 11;
}

// With aspect ratio and image size, as bit 6 of byte 2 says.
unsigned TypeVISize(const ByteSource& at) {
  const SourceBytes third = at(2);
  return !third.empty() && (third[0] & 0x40) != 0 ? 17 : 14;
}

template <int32_t (*get)(const DispIdDataBlock*, DtdTiming*, uint32_t), unsigned (*sizeOf)(const ByteSource&),
          TimingBytes (*bytesOf)(const ByteSource&)>
bool DescribeDetailed(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  std::array<DtdTiming, kMostRecords> timings = {};
  const auto count = Read(entry, get, timings.data());
  ByteSource payload = at.Part(kHeader);
  for (uint32_t i = 0; i < count.value_or(0); ++i) {
    const TimingItem item = {TimingKind::kDetailed, 0, false, timings[i]};
    const ByteSource descriptor = payload.Part(0, sizeOf(payload));
    Node child = DescribeTiming(fmt::format("Timing {}", i + 1), item, bytesOf(descriptor));
    if (timings[i].preferred != 0) child.Add("Preferred", "yes", descriptor(bytesOf == TypeVIBytes ? 2 : 3));
    child.AddRest(descriptor);
    node.Child(std::move(child));
    payload = payload.Part(descriptor.size());
  }
  return count.has_value();
}

// Types III, V, IX; type X has as many bytes more as its header says.
template <int32_t (*get)(const DispIdDataBlock*, CvtTiming*, uint32_t), unsigned size>
bool DescribeFormulas(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  std::array<CvtTiming, kMostRecords> timings = {};
  const auto count = Read(entry, get, timings.data());
  if (!count) return false;
  const unsigned extra = entry.tag == DISPID20_TAG_TYPE_X ? entry.headerFlags >> 1 & 7u : 0;
  AddFormulas({timings.data(), *count}, size + extra, at.Part(kHeader), node);
  return true;
}

template <int32_t (*get)(const DispIdDataBlock*, TimingCodeRecord*, uint32_t)>
bool DescribeCodes(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  std::array<uint8_t, kMostRecords> codes = {};
  TimingCodeRecord record = {};
  record.codes = codes.data();
  if (get(&entry, &record, kMostRecords) < 0) return false;
  node.record = record;
  AddTimingCodes(record, at.Part(kHeader), node);
  return true;
}

// Element i of the bitmap is DMT identifier or VIC i.
template <int32_t (*get)(const DispIdDataBlock*, uint8_t*, uint32_t), bool isVic>
bool DescribeBitmap(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  std::array<uint8_t, kMostRecords> flags = {};
  const auto count = Read(entry, get, flags.data());
  for (unsigned id = 1; id < count.value_or(0); ++id) {
    if (flags[id] == 0) continue;
    const SourceBytes from = at(kHeader + (id - 1) / 8);
    if (isVic) {
      node.AddTiming(fmt::format("VIC {}", CtaVic(id)), VicItem(id), "", from);
    } else {
      node.AddTiming(fmt::format("DMT {:#04x}", id), DmtItem(id), "", from);
    }
  }
  return count.has_value();
}

struct BlockReader {
  uint8_t tag;
  bool (*read)(const DispIdDataBlock&, const ByteSource&, Node&);
};

constexpr BlockReader kReaders[] = {
    {DISPID_TAG_TYPE_I, DescribeDetailed<DispID_Get20ByteDTD, TypeISize, TypeIBytes>},
    {DISPID_TAG_TYPE_II, DescribeDetailed<DispID_Get11ByteDTD, TypeIISize, TypeIIBytes>},
    {DISPID_TAG_TYPE_III, DescribeFormulas<DispID_Get3ByteCVT, 3>},
    {DISPID_TAG_TYPE_IV, DescribeCodes<DispID_GetTimingCode>},
    {DISPID_TAG_VESA_TIMINGS, DescribeBitmap<DispID_GetVESATiming, false>},
    {DISPID_TAG_CTA_TIMINGS, DescribeBitmap<DispID_GetCEATiming, true>},
    {DISPID_TAG_TYPE_V, DescribeFormulas<DispID_Get7ByteCVT, 7>},
    {DISPID_TAG_TYPE_VI, DescribeDetailed<DispID_Get17ByteDTD, TypeVISize, TypeVIBytes>},
    {DISPID20_TAG_TYPE_VII, DescribeDetailed<DispID20_Get20ByteDTD, TypeISize, TypeIBytes>},
    {DISPID20_TAG_TYPE_VIII, DescribeCodes<DispID20_GetTimingCode>},
    {DISPID20_TAG_TYPE_IX, DescribeFormulas<DispID20_Get6ByteCVT, 6>},
    {DISPID20_TAG_TYPE_X, DescribeFormulas<DispID20_Get6ByteCVT, 6>},
};

}  // namespace

bool DescribeSectionTimings(const DispIdDataBlock& entry, const ByteSource& at, Node& node) {
  for (const BlockReader& reader : kReaders) {
    if (reader.tag == entry.tag) return reader.read(entry, at, node);
  }
  return false;
}

}  // namespace reedid::document
