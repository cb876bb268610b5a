// Video Data Block (CTA-861, 7.5.1), YCbCr 4:2:0 Video Data Block (7.5.10) and Capability Map Data Block (7.5.11).
//
// Video                                  4:2:0 video            4:2:0 capability map
//  1..  short video descriptors (SVD)     1    extended tag 14   1    extended tag 15
//                                         2..  SVDs              2..  a bit for each SVD of the Video Data Block, lowest
//                                                                     bit first
//
// SVD: 1..64 and 65..127 VIC; 129..192 VIC 1..64 with the native mark; 193..253 VIC. VICs from 193 up are kept as
// indexes of the timing table, VIC - 64.

#include <algorithm>

#include "base/bytes.h"
#include "base/log.h"
#include "base/pinned.h"
#include "cea/codec.h"

namespace reedid {
namespace {

PIN_FIELDS(VdbRecord, 0, 1, nativeVic, vicCount);
PIN_FIELDS(VdbRecord, 2, 31, vics);
PIN_SIZE(VdbRecord, 33);
PIN_FIELDS(Vic420Record, 0, 1, vicCount);
PIN_FIELDS(Vic420Record, 1, 31, vics);
PIN_SIZE(Vic420Record, 32);

constexpr CeaForm kVideo = {CEA_TAG_VIDEO, 0, 2, 32};
constexpr CeaForm k420Video = {CEA_TAG_EXTENDED, CEA_EXT_TAG_420_VIDEO, 3, 32};
constexpr CeaForm k420Map = {CEA_TAG_EXTENDED, CEA_EXT_TAG_420_MAP, 3, 6};
constexpr uint8_t kNativeMark = 0x80;
constexpr uint8_t kMaxNativeVic = 64;
constexpr unsigned kMapByte = 2;

constexpr bool IsNative(uint8_t svd) {
  return svd > 128 && svd <= 192;
}

constexpr uint8_t VicOf(uint8_t svd) {
  if (IsNative(svd)) return svd & 0x7F;
  return svd > 192 ? Low8(svd - 64) : svd;
}

constexpr uint8_t SvdOf(uint8_t vic) {
  return vic > 128 ? Low8(vic + 64) : vic;
}

uint8_t DescriptorCount(const CeaDataBlock& videoBlock) {
  return Low8(videoBlock.size - 1);
}

bool Holds(const Vic420Record& record, uint8_t vic) {
  const auto end = record.vics + record.vicCount;
  return std::find(record.vics, end, vic) != end;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetVDB(const CeaDataBlock* entry, VdbRecord* record) {
  if (!Matches(entry, kVideo) || record == nullptr) return REEDID_ERR("invalid parameters");
  *record = {};
  record->vicCount = DescriptorCount(*entry);
  bool native = false;
  for (unsigned i = 0; i < record->vicCount; ++i) {
    const uint8_t svd = entry->bytes[1 + i];
    record->vics[i] = VicOf(svd);
    if (!IsNative(svd)) continue;
    record->nativeVic = record->vics[i];  // the last one marked wins
    native = true;
  }
  if (!native) record->nativeVic = record->vics[0];
  return 0;
}

int32_t CEA_SetVDB(const VdbRecord* record, CeaDataBlock* entry) {
  if (record == nullptr || !CanHold(entry) || record->vicCount > 31) return REEDID_ERR("invalid parameters");
  BeginDataBlock(*entry, kVideo, record->vicCount + 1u);
  for (unsigned i = 0; i < record->vicCount; ++i) {
    const uint8_t vic = record->vics[i];
    const bool native = vic <= kMaxNativeVic && vic == record->nativeVic;
    entry->bytes[1 + i] = Low8(SvdOf(vic) | (native ? kNativeMark : 0));
  }
  return 0;
}

int32_t CEA_Get420VDB(const CeaDataBlock* entry, Vic420Record* record) {
  if (!Matches(entry, k420Video) || record == nullptr) return REEDID_ERR("invalid parameters");
  *record = {};
  record->vicCount = Low8(entry->size - 2);
  for (unsigned i = 0; i < record->vicCount; ++i) record->vics[i] = VicOf(entry->bytes[2 + i]);
  return 0;
}

int32_t CEA_Set420VDB(const Vic420Record* record, CeaDataBlock* entry) {
  if (record == nullptr || !CanHold(entry) || record->vicCount > 30) return REEDID_ERR("invalid parameters");
  BeginDataBlock(*entry, k420Video, record->vicCount + 2u);
  for (unsigned i = 0; i < record->vicCount; ++i) entry->bytes[2 + i] = SvdOf(record->vics[i]);
  return 0;
}

int32_t CEA_Get420CMDB(const CeaDataBlock* videoBlock, const CeaDataBlock* mapBlock, Vic420Record* record) {
  if (!Matches(videoBlock, kVideo) || !Matches(mapBlock, k420Map) || record == nullptr) {
    return REEDID_ERR("invalid parameters");
  }
  *record = {};
  const Bytes map = BytesOf(*mapBlock);  // reads 0 past its end: descriptors that it does not reach are not marked
  for (unsigned i = 0; i < DescriptorCount(*videoBlock); ++i) {
    if (Bit(map[kMapByte + i / 8], i % 8)) record->vics[record->vicCount++] = VicOf(videoBlock->bytes[1 + i]);
  }
  return 0;
}

int32_t CEA_Set420CMDB(const Vic420Record* record, const CeaDataBlock* videoBlock, CeaDataBlock* out) {
  if (record == nullptr || !Matches(videoBlock, kVideo) || !CanHold(out) || record->vicCount > 31) {
    return REEDID_ERR("invalid parameters");
  }
  if (videoBlock->size <= record->vicCount) return REEDID_ERR("420 also vic exceeds 444 vic, please check");
  const unsigned count = DescriptorCount(*videoBlock);
  uint8_t map[4] = {};  // taken first: `out` may be the video block's own buffer
  for (unsigned i = 0; i < count; ++i) {
    if (Holds(*record, VicOf(videoBlock->bytes[1 + i]))) map[i / 8] = Low8(map[i / 8] | 1u << (i % 8));
  }
  const unsigned mapSize = (count + 7) / 8;
  BeginDataBlock(*out, k420Map, kMapByte + mapSize);
  std::memcpy(out->bytes + kMapByte, map, mapSize);
  return 0;
}
