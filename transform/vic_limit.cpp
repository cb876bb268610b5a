#include "transform/vic_limit.h"

#include <algorithm>

#include "transform/edit.h"

namespace reedid {
namespace {

constexpr unsigned kMaxVics = 31;
constexpr unsigned kMax420Vics = 30;

// A 4:2:0 format has half the TMDS clock of its pixel clock (kHz). One more than twice the limit, as sinks round their
// clocks: docs/oddities.md.
constexpr uint32_t kMax420Clock = 1200001;

// What the table does not know may be slow enough.
uint32_t ClockOfVic(uint8_t vic) {
  DtdTiming timing;
  return VicToDtd(vic, &timing) == 0 ? timing.pixelClock : 0;
}

// A list of VICs that takes what fits.
template <unsigned kRoom, class Record>
void AppendVic(Record& record, uint8_t vic) {
  if (record.vicCount < kRoom) record.vics[record.vicCount++] = vic;
}

template <class Record>
bool HoldsVic(const Record& record, uint8_t vic) {
  return std::find(record.vics, record.vics + record.vicCount, vic) != record.vics + record.vicCount;
}

template <class Record, class IsKept>
void KeepVics(Record& record, IsKept isKept) {
  record.vicCount = Low8(KeepIf(record.vics, record.vicCount, isKept));
}

void DropFast420(Vic420Record& record) {
  KeepVics(record, [](uint8_t vic) { return ClockOfVic(vic) <= kMax420Clock; });
}

}  // namespace

void VicSet::Add(uint8_t vic) {
  if (std::find(begin(), end(), vic) == end()) vics_[count_++] = vic;
}

bool VicLimiter::Limit420Block(CeaDataBlock& entry) {
  const bool video = IsKind(entry, CEA_TAG_EXTENDED, CEA_EXT_TAG_420_VIDEO);
  if (!video && !IsKind(entry, CEA_TAG_EXTENDED, CEA_EXT_TAG_420_MAP)) return true;
  if (!limit_.carries420) return false;
  return video ? Limit420Video(entry) : Limit420Map(entry);
}

bool VicLimiter::Limit420Video(CeaDataBlock& entry) {
  if (CEA_Get420VDB(&entry, &video420_) != 0) return true;
  DropFast420(video420_);
  if (video420_.vicCount == 0) return false;
  Rewrite(memory_, model_, entry, CEA_Set420VDB, &video420_);
  return true;
}

// The map is rewritten when the Video Data Block that it maps has its final list.
bool VicLimiter::Limit420Map(CeaDataBlock& entry) {
  const CeaDataBlock* videoBlock = CEA_FindDataBlock(&model_, CEA_TAG_VIDEO, 0);
  if (videoBlock == nullptr || CEA_Get420CMDB(videoBlock, &entry, &map420_) != 0) return true;
  DropFast420(map420_);
  return map420_.vicCount != 0;
}

void VicLimiter::LimitVideoBlock(CeaDataBlock& entry) {
  VdbRecord record;
  if (CEA_GetVDB(&entry, &record) != 0) return;
  const VdbRecord before = record;
  VicSet fast;
  KeepVics(record, [&](uint8_t vic) {
    if (ClockOfVic(vic) <= limit_.clock) return true;
    fast.Add(vic);
    return false;
  });
  const bool written = Rewrite(memory_, model_, entry, CEA_SetVDB, &record) == 0;
  if (&entry == CEA_FindDataBlock(&model_, CEA_TAG_VIDEO, 0)) firstVideo_ = written ? record : before;
  if (!written) return;
  for (const uint8_t vic : fast) removed_.Add(vic);
}

void VicLimiter::Restore() {
  if (removed_.empty()) return;
  ReplaceRemovedVics();
  if (!limit_.carries420) return;
  Write420Map();
  Write420Video();
}

bool VicLimiter::HoldsFormat(const DtdTiming& wanted) const {
  return std::any_of(firstVideo_.vics, firstVideo_.vics + firstVideo_.vicCount, [&](uint8_t vic) {
    DtdTiming timing;
    return VicToDtd(vic, &timing) == 0 && timing.hactive == wanted.hactive && timing.vactive == wanted.vactive &&
           timing.interlaced == wanted.interlaced;
  });
}

// The VIC of the same format at the first listed rate below that fits, or 0.
uint8_t VicLimiter::SlowerVic(const DtdTiming& fast) const {
  for (const uint16_t rate : rates_) {
    if (rate >= fast.frameRate) continue;
    const uint32_t vic = FindVic(fast.hactive, fast.vactive, rate, fast.aspectRatio, fast.interlaced);
    DtdTiming timing;
    if (VicToDtd(vic, &timing) == 0 && timing.pixelClock <= limit_.clock) return Low8(vic);
  }
  return 0;
}

// A format that went with its only VIC comes back at a slower rate, in the first Video Data Block.
void VicLimiter::ReplaceRemovedVics() {
  const VdbRecord before = firstVideo_;
  for (const uint8_t vic : removed_) {
    DtdTiming timing;
    if (VicToDtd(vic, &timing) != 0 || HoldsFormat(timing)) continue;
    const uint8_t slower = SlowerVic(timing);
    if (slower != 0) AppendVic<kMaxVics>(firstVideo_, slower);
  }
  CeaDataBlock* entry = CEA_FindDataBlock(&model_, CEA_TAG_VIDEO, 0);
  if (entry != nullptr && Rewrite(memory_, model_, *entry, CEA_SetVDB, &firstVideo_) != 0) firstVideo_ = before;
}

// Formats that the sink takes in 4:2:0 too survive as 4:2:0 only when the Video Data Block lost them.
void VicLimiter::Write420Map() {
  if (map420_.vicCount == 0) return;
  CeaDataBlock* entry = CEA_FindDataBlock(&model_, CEA_TAG_EXTENDED, CEA_EXT_TAG_420_MAP);
  if (entry != nullptr) {
    Rewrite(memory_, model_, *entry, CEA_Set420CMDB, &map420_, CEA_FindDataBlock(&model_, CEA_TAG_VIDEO, 0));
  }
  for (unsigned i = 0; i < map420_.vicCount; ++i) {
    if (!HoldsVic(firstVideo_, map420_.vics[i])) AppendVic<kMax420Vics>(video420_, map420_.vics[i]);
  }
}

void VicLimiter::Write420Video() {
  if (video420_.vicCount == 0) return;
  if (CeaDataBlock* entry = CEA_FindDataBlock(&model_, CEA_TAG_EXTENDED, CEA_EXT_TAG_420_VIDEO)) {
    Rewrite(memory_, model_, *entry, CEA_Set420VDB, &video420_);
  } else {
    AddDataBlock(memory_, model_, model_.dataBlockCount, CEA_Set420VDB, &video420_);
  }
}

}  // namespace reedid
