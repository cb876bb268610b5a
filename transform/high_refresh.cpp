// Rewrites an image of more than two blocks into two that still advertise its frame rates, the high ones first: timings
// move from the blocks that go into the DTD space of those that stay, and what is lost on the way comes back as VICs
// and as CVT timings.

#include <algorithm>

#include "base/log.h"
#include "inventory/dtds.h"
#include "inventory/walk.h"
#include "reedid/transforms.h"
#include "timing/dtd.h"
#include "transform/edit.h"
#include "transform/extension_override.h"
#include "transform/high_refresh/choice.h"
#include "transform/high_refresh/descriptors.h"
#include "transform/high_refresh/rates.h"
#include "transform/high_refresh/space.h"
#include "transform/high_refresh/vics.h"
#include "transform/link_limit.h"
#include "transform/reclock.h"

namespace reedid {
namespace {

constexpr const char* kName = "EDID_HighRefreshRate";
constexpr unsigned kBlocksLeft = 2;
constexpr unsigned kSpareDtds = 10;
constexpr uint16_t kMinHighRate = 99;  // Hz

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

// The steps over one image, in order. They end where memory lacks.
class HighRefresh {
 public:
  HighRefresh(EdidHandle& handle, MemoryWatch& memory) : handle_(handle), memory_(memory) {}

  void Run() {
    DropUnusableBlocks();
    TakeInventory();
    if (!memory_.sufficed()) return;
    LimitToLink();
    MeasureSpace(kBlocksLeft);
    if (!memory_.sufficed()) return;
    ChooseDtds();
    DropExtraBlocks();
    if (list_.count() > 0) WriteBackDTD(handle_, memory_, list_);
    if (!FindLostRates()) return;
    FillWith1080pVIC(handle_, memory_, lost_);
    if (lost_.count() > 0) FillWithVIC(handle_, memory_, lost_);
    if (!memory_.sufficed() || !KeepRatesForCvt()) return;
    MakeRoomForCvt();
    AppendCvtDtds();
    if (list_.count() > 0) WriteBackDTD(handle_, memory_, list_);
  }

 private:
  void DropUnusableBlocks() {
    KeepBlocks(handle_,
               [](const EdidBlock& block) { return block.type != EDID_BLOCK_UNKNOWN && block.type != EDID_BLOCK_MAP; });
  }

  void TakeInventory() {
    wanted_.Collect(handle_, memory_);
    REEDID_LOG_OPEN("INFO", kName, "support frameRate(%d):", wanted_.count());
    for (const uint16_t rate : wanted_) Print(" %dHz,", rate);
    EndLine();
    wanted_.FilterFrameRate();
    if (!list_.Collect(handle_, memory_, kSpareDtds)) {
      REEDID_ERR_AS(kName, "malloc fail");
      return;
    }
    PrintDtdList(list_);
    EndLine();
  }

  void LimitToLink() {
    if (wanted_.count() == 0) {  // which the limit refuses; the work goes on
      REEDID_ERR_AS("EDID_LimitToHDMI20", "invalid parameters");
    } else {
      LimitImageToHdmi20(handle_, {wanted_.begin(), wanted_.count()}, memory_);
    }
  }

  void MeasureSpace(unsigned blocks) {
    space_ = GetDtdSpace(handle_, memory_, blocks);
    spaceMax_ = GetDtdSpaceMax(handle_, memory_, blocks);
    REEDID_INFO_AS(kName, "dtdSpaceLimits=%d, dtdSpaceLimitsMax=%d", space_, spaceMax_);
  }

  // Leaves the list of those DTDs that are to stand in the two blocks, and logs it.
  void ChooseDtds() {
    list_.CollectAgain(handle_, memory_);
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
    DeleteUncommonDesc(handle_, memory_, list_.count() - space_);
    const unsigned space = GetDtdSpace(handle_, memory_, kAllBlocks);
    if (space < list_.count()) TrimDtds(list_, space);
  }

  void DropExtraBlocks() {
    while (handle_.blockCount > kBlocksLeft) {
      EDID_DeleteBlock(&handle_, &handle_.blocks[handle_.blockCount - 1]);
    }
    DeleteOverrides(handle_, memory_);
  }

  // Whether the two blocks miss wanted rates.
  bool FindLostRates() {
    RateArray found;
    found.Collect(handle_, memory_);
    if (!memory_.sufficed()) return false;
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
    if (space_ < need) DeleteUncommonDesc(handle_, memory_, need - space_);
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
  MemoryWatch& memory_;
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
  if (!HasBlockArray(handle)) return REEDID_ERR("invalid parameters");
  if (handle->blockCount <= kBlocksLeft) return 0;
  return EditWhole(*handle, [&](MemoryWatch& memory) { HighRefresh(*handle, memory).Run(); });
}
