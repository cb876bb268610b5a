// Rewrites an image of three or more blocks into two that still advertise its frame rates, the high ones first: timings
// move from the blocks that go into the DTD space of those that stay, and what is lost on the way comes back as VICs
// and as CVT timings.

#include <algorithm>
#include <cmath>
#include <cstring>

#include "base/bytes.h"
#include "base/log.h"
#include "cea/codec.h"
#include "inventory/dtds.h"
#include "inventory/walk.h"
#include "reedid/transforms.h"
#include "timing/dtd.h"
#include "transform/edit.h"
#include "transform/reclock.h"
#include "vesa/descriptor.h"
#include "vesa/model.h"

namespace reedid {
namespace {

constexpr const char* kName = "EDID_HighRefreshRate";
constexpr unsigned kMaxRates = 50;
constexpr unsigned kBlocksLeft = 2;
constexpr unsigned kSpareDtds = 10;
constexpr float kHighRate = 99.0f;  // Hz, from here on a rate counts as high
constexpr uint16_t kMinHighRate = 99;
constexpr uint8_t kFirstDisplayDescriptor = kEst3Descriptor;  // the lowest tag that an EDID reader knows

// Re-clocking here keeps the reachable rate as it is.
constexpr LinkLimit kReclockLimit = {kHdmi20.clock, 0xFFFFFFFF, true};

// Rates in Hz, highest first, without repeats.
class RateArray {
 public:
  void Collect(const EdidHandle& handle) { count_ = EDID_GetAllFrameRate(&handle, rates_, kMaxRates); }

  // Keeps the film, PAL and NTSC rates and every high rate.
  void FilterFrameRate() {
    count_ = KeepIf(rates_, count_, [](uint16_t rate) {
      return rate == 24 || rate == 25 || rate == 30 || rate == 50 || rate == 60 || rate >= 100;
    });
  }

  template <class IsKept>
  void Keep(IsKept isKept) {
    count_ = KeepIf(rates_, count_, isKept);
  }

  bool Holds(uint16_t rate) const { return std::find(begin(), end(), rate) != end(); }
  unsigned count() const { return count_; }
  const uint16_t* begin() const { return rates_; }
  const uint16_t* end() const { return rates_ + count_; }
  uint16_t operator[](unsigned at) const { return rates_[at]; }

 private:
  uint16_t rates_[kMaxRates] = {};
  unsigned count_ = 0;
};

// ---- Space for DTDs

unsigned DtdSpace(const CeaBlock& model) {
  return model.dtdCount + model.freeSpace / kDtdSize;
}

bool IsDtdOrEmpty(const DtdSlot& slot) {
  return slot.flag < kFirstDisplayDescriptor;
}

// Descriptors that stay even when space is short.
bool IsCommonDescriptor(const DtdSlot& slot) {
  return slot.flag == kEst3Descriptor || slot.flag == kCvtCodesDescriptor || slot.flag == kStandardTimingsDescriptor ||
         slot.flag == kProductNameDescriptor;
}

template <class IsSpace>
uint8_t CountSpace(const EdidHandle& handle, unsigned blocks, IsSpace isSpace) {
  EdidHandle part = handle;
  part.blockCount = Low8(std::min<unsigned>(part.blockCount, blocks));
  unsigned space = 0;
  VisitBlocks(part, Overloaded{[&](const VesaBlock& model) {
                                 space += static_cast<unsigned>(
                                     std::count_if(model.descriptors, model.descriptors + kDescriptorSlots, isSpace));
                               },
                               [&](const CeaBlock& model) { space += DtdSpace(model); }});
  return Low8(space);
}

// How many DTDs the first `blocks` blocks can hold now.
uint8_t GetDtdSpace(const EdidHandle& handle, unsigned blocks) {
  return CountSpace(handle, blocks, IsDtdOrEmpty);
}

// How many they could hold without the uncommon descriptors.
uint8_t GetDtdSpaceMax(const EdidHandle& handle, unsigned blocks) {
  return CountSpace(handle, blocks, [](const DtdSlot& slot) { return !IsCommonDescriptor(slot); });
}

constexpr unsigned kAllBlocks = 255;

const char* UncommonDescriptorName(uint8_t flag) {
  switch (flag) {
    case kColorManagementDescriptor:
      return "Display Color Management (DCM) Data";
    case kColorPointDescriptor:
      return "Color Point Data";
    case kRangeLimitsDescriptor:
      return "Display Range Limits";
    case kDataStringDescriptor:
      return "Alphanumeric Data String (ASCII)";
    case kSerialNumberDescriptor:
      return "Display Product Serial Number";
    default:
      return nullptr;
  }
}

// Deletes up to `count` uncommon descriptors, empty slots and unknown ones included; the others move up.
void DeleteUncommonDesc(VesaBlock& model, unsigned count) {
  unsigned end = kDescriptorSlots;
  for (unsigned i = 0; i < end && count > 0;) {
    const DtdSlot& slot = model.descriptors[i];
    if (slot.flag == kDtdSlotFlag || IsCommonDescriptor(slot)) {
      ++i;
      continue;
    }
    if (const char* name = UncommonDescriptorName(slot.flag)) REEDID_WARN("delete %s", name);
    std::copy(model.descriptors + i + 1, model.descriptors + end, model.descriptors + i);
    model.descriptors[--end] = {};
    --count;
  }
}

void DeleteUncommonDesc(EdidHandle& handle, unsigned count) {
  EditBlocks(handle, [&](VesaBlock& model) { DeleteUncommonDesc(model, Low8(count)); });
}

// ---- Writing DTDs back

// Hands out the records that a descriptor can hold; others are reported by the encoder and take no place.
class DtdSource {
 public:
  explicit DtdSource(const DtdList& list) : list_(list) {}

  bool empty() const { return next_ == list_.count(); }

  bool Next(DtdSlot& slot) {
    while (!empty()) {
      if (VESA_SetDTD(&list_[next_++], &slot) == 0) return true;
    }
    return false;
  }

 private:
  const DtdList& list_;
  uint32_t next_ = 0;
};

// DTDs take the slots from the first on; descriptors keep their order behind them. Slots behind the last DTD keep what
// they held.
void WriteBackDTD(VesaBlock& model, DtdSource& source) {
  DtdSlot* const end = model.descriptors + kDescriptorSlots;
  for (DtdSlot* slot = model.descriptors; slot != end && !source.empty(); ++slot) {
    DtdSlot* const place = std::find_if(slot, end, IsDtdOrEmpty);
    DtdSlot encoded;
    if (place == end || !source.Next(encoded)) return;
    std::copy_backward(slot, place, place + 1);
    *slot = encoded;
  }
}

void WriteBackDTD(CeaBlock& model, DtdSource& source) {
  while (model.dtds != nullptr && model.dtdCount > 0) CEA_DeleteDTD(&model, &model.dtds[0]);
  DtdSlot slot;
  while (model.freeSpace >= kDtdSize && source.Next(slot)) CEA_AddDTD(&model, &slot, model.dtdCount);
}

void WriteBackDTD(EdidHandle& handle, const DtdList& list) {
  DtdSource source(list);
  EditBlocks(handle, Overloaded{[&](VesaBlock& model) { WriteBackDTD(model, source); },
                                [&](CeaBlock& model) { WriteBackDTD(model, source); }});
}

// ---- Filling up with VICs

// Appends VICs for lost rates to the model's Video Data Block, within the free space; false when the block stays as it
// was. `findVic(rate)` gives the VIC for a rate and logs it, or 0.
template <class FindVicForRate>
bool FillVics(CeaBlock& model, RateArray& lost, FindVicForRate findVic) {
  CeaDataBlock* entry = CEA_FindDataBlock(&model, kVideoTag, 0);
  VdbRecord record;
  if (entry == nullptr || CEA_GetVDB(entry, &record) != 0 || record.vicCount >= sizeof record.vics) return false;
  unsigned budget = model.freeSpace;
  lost.Keep([&](uint16_t rate) {
    if (budget == 0 || record.vicCount == sizeof record.vics) return true;
    const uint8_t vic = findVic(rate);
    if (vic == 0) return true;
    record.vics[record.vicCount++] = vic;
    --budget;
    return false;
  });
  ScratchDataBlock block;
  return CEA_SetVDB(&record, &block) == 0 && CEA_ReplaceDataBlock(&model, entry, &block) == 0;
}

// Fills the first CTA extension of the image. Only a written Video Data Block makes it a block to write back.
template <class FindVicForRate>
void FillVics(EdidHandle& handle, RateArray& lost, bool needsSpace, FindVicForRate findVic) {
  EdidBlock* const end = handle.blocks + handle.blockCount;
  EdidBlock* const first =
      std::find_if(handle.blocks, end, [](const EdidBlock& b) { return b.type == EDID_BLOCK_CEA; });
  if (first == end) return;
  const Opened<CeaBlock> model = Open<CeaBlock>(*first);
  if (model == nullptr || (needsSpace && model->freeSpace == 0)) return;
  if (FillVics(*model, lost, findVic)) Regenerate(*model, *first);
}

bool FitsRate(uint32_t vic, uint16_t rate, DtdTiming& timing) {
  return VicToDtd(vic, &timing) == 0 && timing.frameRate == rate && timing.pixelClock <= kHdmi20.clock &&
         !timing.interlaced;
}

constexpr uint32_t kLastVicIndex = 155;

void FillWith1080pVIC(EdidHandle& handle, RateArray& lost) {
  const char* const name = __func__;
  FillVics(handle, lost, false, [&](uint16_t rate) -> uint8_t {
    for (uint32_t vic = 1; vic <= kLastVicIndex; ++vic) {
      DtdTiming t;
      if (!FitsRate(vic, rate, t) || t.hactive != 1920 || t.vactive != 1080 || t.aspectRatio != ASPECT_16_9) continue;
      REEDID_WARN_AS(name, "fill vic%d, 1080p%d", vic, rate);
      return Low8(vic);
    }
    return 0;
  });
}

void FillWithVIC(EdidHandle& handle, RateArray& lost) {
  const char* const name = __func__;
  FillVics(handle, lost, true, [&](uint16_t rate) -> uint8_t {
    for (uint32_t vic = kLastVicIndex; vic >= 1; --vic) {
      DtdTiming t;
      if (!FitsRate(vic, rate, t)) continue;
      REEDID_WARN_AS(name, "fill vic%d, %dx%d@%d", vic, t.hactive, t.vactive, rate);
      return Low8(vic);
    }
    return 0;
  });
}

// ---- Log

void PrintTiming(const DtdTiming& timing) {
  Print(" %ux%u@%0.2f %uKHz,", timing.hactive, timing.vactive, static_cast<double>(FormulaRate<float>(timing)),
        timing.pixelClock);
}

void PrintDtdList(const DtdList& list) {
  REEDID_LOG_OPEN("INFO", kName, "dtdList(%d):", list.count());
  for (uint32_t i = 0; i < list.count(); ++i) PrintTiming(list[i]);
}

void EndLine() {
  Print("\n");
}

// ---- Choosing DTDs

// 1920x1080 with reduced blanking version 2, for a rate that no VIC has.
bool Cvt1080p(uint16_t rate, DtdTiming& timing) {
  CvtTiming request = {};
  request.formula = 2;
  request.aspectRatio = ASPECT_16_9;
  request.hactive = 1920;
  request.vactive = 1080;
  request.frameRate = rate;
  request.flagA = 1;
  return Cvt2ToDtd(&request, &timing) == 0;
}

// The same format by formula, when a descriptor can hold that within the limit.
bool ReplaceByCvt(DtdTiming& timing) {
  CvtTiming request = {};
  request.formula = 1;
  request.aspectRatio = Low8(timing.aspectRatio);
  request.hactive = timing.hactive;
  request.vactive = timing.vactive;
  request.interlaced = timing.interlaced;
  request.frameRate = Low16(std::llround(FormulaRate<float>(timing)));
  if (request.frameRate > 60) {
    request.formula = 2;
    request.flagA = 1;
  }
  DtdTiming generated;
  DtdSlot slot;
  if (Cvt2ToDtd(&request, &generated) != 0 || generated.pixelClock > kHdmi20.clock ||
      VESA_SetDTD(&generated, &slot) != 0) {
    return false;
  }
  timing = generated;
  return true;
}

void DeleteUnspportDTD(DtdList& list) {
  const char* const name = __func__;
  list.Truncate(KeepIf(list.data(), list.count(), [&](DtdTiming& timing) {
    DtdSlot slot;
    if (VESA_SetDTD(&timing, &slot) == 0 || ReplaceByCvt(timing)) return true;
    REEDID_WARN_AS(name, "%ux%u@%0.2f %uKHz outof DTD range, drop", timing.hactive, timing.vactive,
                   static_cast<double>(FormulaRate<float>(timing)), timing.pixelClock);
    return false;
  }));
}

bool IsSameFormat(const DtdTiming& a, const DtdTiming& b) {
  return a.hactive == b.hactive && a.vactive == b.vactive && a.interlaced == b.interlaced;
}

// The first record of each resolution stays. The line shows the dropped rate beside the clock of the record that stays.
void DeleteRepeatDTD(DtdList& list) {
  const char* const name = __func__;
  for (uint32_t i = 0; i < list.count(); ++i) {
    const DtdTiming kept = list[i];
    const unsigned later = KeepIf(list.data() + i + 1, list.count() - i - 1, [&](const DtdTiming& timing) {
      if (!IsSameFormat(kept, timing)) return true;
      REEDID_WARN_AS(name, "%ux%u@%u %uKHz", timing.hactive, timing.vactive, RateForMessage(timing), kept.pixelClock);
      return false;
    });
    list.Truncate(i + 1 + later);
  }
}

// Every record but the first runs at the highest wanted rate that its totals reach.
void ReclockDtds(DtdList& list, const RateArray& wanted) {
  if (wanted.count() == 0) return;
  for (uint32_t i = 1; i < list.count(); ++i) {
    DtdTiming& timing = list[i];
    if (timing.pixelClock == 0 || !HasRate(timing)) continue;
    if (const auto clock = SlowDown(timing, kReclockLimit, {wanted.begin(), wanted.end()})) {
      timing.pixelClock = clock->clock;
    }
  }
}

// Orders all records but the first by rate and returns the first position below the high rates, or the count.
uint32_t SortByRate(DtdList& list) {
  if (list.count() < 2) return list.count();
  SortDTDbyFrameRate(list.data() + 1, static_cast<int32_t>(list.count() - 1));
  uint32_t k = 1;
  while (k < list.count() && SortingRate(list[k]) >= kHighRate) ++k;
  return k;
}

// The first record, then the high rates, then the rest by area, cut to what fits.
void TrimDtds(DtdList& list, unsigned space) {
  const uint32_t k = SortByRate(list);
  if (k < list.count()) SortDTDbyResolution(list.data() + k, list.count() - k);
  list.Truncate(space);
}

// ---- The stages over one image

class HighRefresh {
 public:
  explicit HighRefresh(EdidHandle& handle) : handle_(handle) {}

  int32_t Run() {
    DropUnusableBlocks();
    if (!TakeInventory()) return REEDID_ERR_AS(kName, "malloc fail");
    EDID_LimitToHDMI20(&handle_, wanted_.begin(), wanted_.count());
    MeasureSpace(kBlocksLeft);
    ChooseDtds();
    DropExtraBlocks();
    if (list_.count() > 0) WriteBackDTD(handle_, list_);
    if (!FindLostRates()) return 0;
    FillWith1080pVIC(handle_, lost_);
    if (lost_.count() > 0) FillWithVIC(handle_, lost_);
    if (!KeepRatesForCvt()) return 0;
    MakeRoomForCvt();
    AppendCvtDtds();
    if (list_.count() > 0) WriteBackDTD(handle_, list_);
    return 0;
  }

 private:
  void DropUnusableBlocks() {
    for (unsigned i = 0; i < handle_.blockCount;) {
      const uint8_t type = handle_.blocks[i].type;
      if (type == EDID_BLOCK_UNKNOWN || type == EDID_BLOCK_MAP) {
        EDID_DeleteBlock(&handle_, &handle_.blocks[i]);
      } else {
        ++i;
      }
    }
  }

  bool TakeInventory() {
    wanted_.Collect(handle_);
    REEDID_LOG_OPEN("INFO", kName, "support frameRate(%d):", wanted_.count());
    for (const uint16_t rate : wanted_) Print(" %dHz,", rate);
    EndLine();
    wanted_.FilterFrameRate();
    if (!list_.Collect(handle_, kSpareDtds)) return false;
    PrintDtdList(list_);
    EndLine();
    return true;
  }

  void MeasureSpace(unsigned blocks) {
    space_ = GetDtdSpace(handle_, blocks);
    spaceMax_ = GetDtdSpaceMax(handle_, blocks);
    REEDID_INFO_AS(kName, "dtdSpaceLimits=%d, dtdSpaceLimitsMax=%d", space_, spaceMax_);
  }

  // Leaves the list of those DTDs that are to stand in the two blocks, and logs it.
  void ChooseDtds() {
    list_.CollectAgain(handle_);
    if (list_.count() > 0) DeleteUnspportDTD(list_);
    REEDID_INFO_AS(kName, "delete invalid dtd, dtdCnt=%d", list_.count());
    if (space_ < list_.count()) FitDtds();
    PrintDtdList(list_);
    EndLine();
  }

  void FitDtds() {
    DeleteRepeatDTD(list_);
    REEDID_INFO_AS(kName, "delete repeat dtd, dtdCnt=%d", list_.count());
    ReclockDtds(list_, wanted_);
    if (space_ >= list_.count()) return;
    DeleteUncommonDesc(handle_, list_.count() - space_);
    const unsigned space = GetDtdSpace(handle_, kAllBlocks);
    if (space < list_.count()) TrimDtds(list_, space);
  }

  void DropExtraBlocks() {
    while (handle_.blockCount > kBlocksLeft) {
      EDID_DeleteBlock(&handle_, &handle_.blocks[handle_.blockCount - 1]);
    }
    DeleteEODB(&handle_);
  }

  // Whether the two blocks miss wanted rates.
  bool FindLostRates() {
    RateArray found;
    found.Collect(handle_);
    found.FilterFrameRate();
    if (found.count() == wanted_.count()) return false;
    lost_ = wanted_;
    lost_.Keep([&](uint16_t rate) { return !found.Holds(rate); });
    REEDID_LOG_OPEN("INFO", kName, "remain frameRate(%d):", lost_.count());
    for (const uint16_t rate : lost_) Print(" %d,", rate);
    EndLine();
    return lost_.count() > 0;
  }

  // Leaves those lost rates that a 1920x1080 CVT timing can bring back.
  bool KeepRatesForCvt() {
    lost_.Keep([](uint16_t rate) { return rate >= kMinHighRate; });
    lost_.Keep([](uint16_t rate) {
      DtdTiming timing;
      if (Cvt1080p(rate, timing) && timing.pixelClock <= kHdmi20.clock) return true;
      REEDID_ERR_AS(kName, "frameRate:%d not support, drop", rate);
      return false;
    });
    return lost_.count() > 0;
  }

  void MakeRoomForCvt() {
    const unsigned need = list_.count() + lost_.count();
    MeasureSpace(kAllBlocks);
    if (space_ < need) DeleteUncommonDesc(handle_, need - space_);
    if (spaceMax_ >= need || DropSlowDtds()) return;
    REEDID_LOG_OPEN("WARN", kName, "no enough sapce, drop frameRate: ");
    const unsigned dropped = std::min(std::max(need - spaceMax_, 1u), lost_.count());
    for (unsigned i = 0; i < dropped; ++i) Print(" %dHz,", lost_[lost_.count() - 1 - i]);
    EndLine();
  }

  // Drops the DTDs below the high rates; true when the kept rates fit then.
  bool DropSlowDtds() {
    const uint32_t k = SortByRate(list_);
    if (k >= list_.count()) return false;
    REEDID_LOG_OPEN("WARN", kName, "no enough sapce, drop DTD: ");
    const uint32_t shown = std::min(list_.count() - k, lost_.count());
    for (uint32_t i = 0; i < shown; ++i) PrintTiming(list_[k + i]);
    EndLine();
    list_.Truncate(k);
    return spaceMax_ >= k + lost_.count();
  }

  void AppendCvtDtds() {
    for (const uint16_t rate : lost_) {
      DtdTiming timing;
      if (list_.count() >= spaceMax_ || list_.count() == list_.room() || !Cvt1080p(rate, timing)) return;
      REEDID_WARN_AS(kName, "fill dtd 1080p%d", rate);
      list_.Append(timing);
    }
  }

  EdidHandle& handle_;
  RateArray wanted_;
  RateArray lost_;
  DtdList list_;
  unsigned space_ = 0;     // DTDs that fit now
  unsigned spaceMax_ = 0;  // DTDs that would fit without the uncommon descriptors
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t EDID_HighRefreshRate(EdidHandle* handle) {
  if (handle == nullptr || handle->blocks == nullptr) return REEDID_ERR("invalid parameters");
  if (handle->blockCount <= kBlocksLeft) return 0;
  return HighRefresh(*handle).Run();
}
