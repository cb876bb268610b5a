// A link limit on a CTA extension: DTDs, 4:2:0 blocks, HDMI vendor blocks, type VII and X timings, VICs.

#include <algorithm>

#include "cea/codec.h"
#include "cea/type_x.h"
#include "timing/dtd.h"
#include "transform/link_limit.h"

namespace reedid {
namespace {

constexpr unsigned kMaxVics = 31;
constexpr unsigned kMax420Vics = 30;

uint32_t ClockOfVic(uint8_t vic) {
  DtdTiming timing;
  return VicToDtd(vic, &timing) == 0 ? timing.pixelClock
                                     : 0;  // what the table does not know is not known to be too fast
}

// VICs in the order in which they came, without repeats.
class VicSet {
 public:
  void Add(uint8_t vic) {
    if (std::find(vics_, vics_ + count_, vic) == vics_ + count_) vics_[count_++] = vic;
  }
  bool empty() const { return count_ == 0; }
  const uint8_t* begin() const { return vics_; }
  const uint8_t* end() const { return vics_ + count_; }

 private:
  uint8_t vics_[256];
  unsigned count_ = 0;
};

// A list of VICs that takes what fits.
template <unsigned kRoom, class Record>
void AppendVic(Record& record, uint8_t vic) {
  if (record.vicCount < kRoom) record.vics[record.vicCount++] = vic;
}

template <class Record>
bool HoldsVic(const Record& record, uint8_t vic) {
  return std::find(record.vics, record.vics + record.vicCount, vic) != record.vics + record.vicCount;
}

// One run of the passes over one extension. Data blocks are visited by index; a pass that deletes its block says so,
// and the block that moved up is visited next.
class CeaLimiter {
 public:
  CeaLimiter(CeaBlock& model, const LinkLimit& limit, Rates rates) : model_(model), limit_(limit), rates_(rates) {}

  void Run() {
    LimitDtds();
    ForEachDataBlock([&](CeaDataBlock& entry) { return Limit420Block(entry); });
    ForEachDataBlock([&](CeaDataBlock& entry) { return LimitDataBlock(entry); });
    if (removed_.empty()) return;
    ReplaceRemovedVics();
    if (!limit_.carries420) return;
    Write420Map();
    Write420Video();
  }

 private:
  enum class Visit { kNext, kDeleted };

  template <class Pass>
  void ForEachDataBlock(Pass pass) {
    for (unsigned i = 0; model_.dataBlocks != nullptr && i < model_.dataBlockCount;) {
      CeaDataBlock& entry = model_.dataBlocks[i];
      if (entry.bytes == nullptr || pass(entry) == Visit::kNext) ++i;
    }
  }

  Visit Delete(const CeaDataBlock& entry) {
    CEA_DeleteDataBlock(&model_, &entry);
    return Visit::kDeleted;
  }

  // Puts a block that was set into `scratch` in place of an entry; a refused setter or a lack of space changes nothing.
  bool Replace(CeaDataBlock& entry, int32_t setResult, const ScratchDataBlock& scratch) {
    return setResult == 0 && CEA_ReplaceDataBlock(&model_, &entry, &scratch) == 0;
  }

  CeaDataBlock* Find(uint8_t tag, uint8_t extTag = 0) const { return CEA_FindDataBlock(&model_, tag, extTag); }

  void LimitDtds() {
    for (unsigned i = 0; model_.dtds != nullptr && i < model_.dtdCount;) {
      if (LimitSlot(model_.dtds[i], limit_, rates_).fate == Fate::kDropped) {
        CEA_DeleteDTD(&model_, &model_.dtds[i]);
      } else {
        ++i;
      }
    }
  }

  Visit Limit420Block(CeaDataBlock& entry) {
    const bool video = IsKind(entry, kExtendedTag, k420VideoExtTag);
    if (!video && !IsKind(entry, kExtendedTag, k420MapExtTag)) return Visit::kNext;
    if (!limit_.carries420) return Delete(entry);
    return video ? Limit420Video(entry) : Limit420Map(entry);
  }

  static void DropFast420(Vic420Record& list) {
    const auto fits = [](uint8_t vic) { return ClockOfVic(vic) <= kMax420Clock; };
    list.vicCount = Low8(KeepIf(list.vics, list.vicCount, fits));
  }

  Visit Limit420Video(CeaDataBlock& entry) {
    if (CEA_Get420VDB(&entry, &video420_) != 0) return Visit::kNext;
    DropFast420(video420_);
    if (video420_.vicCount == 0) return Delete(entry);
    ScratchDataBlock block;
    Replace(entry, CEA_Set420VDB(&video420_, &block), block);
    return Visit::kNext;
  }

  // The map is rewritten when the Video Data Block that it maps has its final list.
  Visit Limit420Map(CeaDataBlock& entry) {
    const CeaDataBlock* videoBlock = Find(kVideoTag);
    if (videoBlock == nullptr || CEA_Get420CMDB(videoBlock, &entry, &map420_) != 0) return Visit::kNext;
    DropFast420(map420_);
    return map420_.vicCount == 0 ? Delete(entry) : Visit::kNext;
  }

  Visit LimitDataBlock(CeaDataBlock& entry) {
    if (entry.tag == kVendorTag) return LimitVendorBlock(entry);
    if (entry.tag == kVideoTag) return LimitVideoBlock(entry);
    if (IsKind(entry, kExtendedTag, kTypeViiExtTag)) return LimitTypeVii(entry);
    if (IsKind(entry, kExtendedTag, kTypeXExtTag)) return LimitTypeX(entry);
    return Visit::kNext;
  }

  Visit LimitVendorBlock(CeaDataBlock& entry) {
    switch (CEA_GetVSDBType(&entry)) {
      case VSDB_HDMI14B:
        return LimitHdmi14b(entry);
      case VSDB_HDMI_FORUM:
        return limit_.carries420 ? LimitHdmiForum(entry) : Delete(entry);
      default:
        return Visit::kNext;
    }
  }

  Visit LimitHdmi14b(CeaDataBlock& entry) {
    H14bRecord record;
    if (CEA_GetH14bVSDB(&entry, &record) != 0 || record.max_TMDS_Clock * 1000u <= limit_.clock) return Visit::kNext;
    record.max_TMDS_Clock = Low16(limit_.clock / 1000);
    ScratchDataBlock block;
    Replace(entry, CEA_SetH14bVSDB(&record, &block), block);
    return Visit::kNext;
  }

  // What needs a fixed-rate link goes; auto low latency mode works on any.
  Visit LimitHdmiForum(CeaDataBlock& entry) {
    HfVsdbRecord record;
    if (CEA_GetHFVSDB(&entry, &record) != 0) return Visit::kNext;
    record.TMDS_Character_Rate = std::min(record.TMDS_Character_Rate, Low16(limit_.clock / 1000));
    record.Max_FRL_Rate = 0;
    record.mDelta = record.cinemaVrr = record.cnmVrr = record.fva = record.fapaStartLocation = 0;
    record.VRRmin = 0;
    record.VRRmax = 0;
    record.DSC_1p2 = 0;
    ScratchDataBlock block;
    Replace(entry, CEA_SetHFVSDB(&record, &block), block);
    return Visit::kNext;
  }

  Visit LimitVideoBlock(CeaDataBlock& entry) {
    VdbRecord record;
    if (CEA_GetVDB(&entry, &record) != 0) return Visit::kNext;
    VicSet fast;
    const auto fits = [&](uint8_t vic) {
      if (ClockOfVic(vic) <= limit_.clock) return true;
      fast.Add(vic);
      return false;
    };
    const VdbRecord before = record;
    record.vicCount = Low8(KeepIf(record.vics, record.vicCount, fits));
    ScratchDataBlock block;
    const bool written = Replace(entry, CEA_SetVDB(&record, &block), block);
    if (&entry == Find(kVideoTag)) firstVideo_ = written ? record : before;
    if (written) std::for_each(fast.begin(), fast.end(), [&](uint8_t vic) { removed_.Add(vic); });
    return Visit::kNext;
  }

  // The flag that halves a type VII timing's clock on a link that carries 4:2:0 goes with the need for it.
  Visit LimitTypeVii(CeaDataBlock& entry) {
    Cea20ByteDtdRecord record;
    if (CEA_Get20ByteDTD(&entry, &record) != 0 || !HasRate(record.timing)) return Visit::kNext;
    const bool half = limit_.carries420 && record.preferred != 0;
    if (record.timing.pixelClock / (half ? 2 : 1) <= limit_.clock) return Visit::kNext;
    const auto slower = SlowDown(record.timing, limit_, rates_);
    if (!slower) return Delete(entry);
    if (slower->whole < kClockWithout420) record.preferred = 0;
    record.timing.pixelClock = slower->clock;
    ScratchDataBlock block;
    Replace(entry, CEA_Set20ByteDTD(&record, &block), block);
    return Visit::kNext;
  }

  Visit LimitTypeX(CeaDataBlock& entry) {
    TypeXRecords read = ReadTypeX(entry);
    if (read.count == 0) return Visit::kNext;
    read.count = KeepIf(read.records, read.count, [&](CvtTiming& timing) {
      return LimitFormula(timing, limit_, rates_, limit_.carries420) != Fate::kDropped;
    });
    if (read.count == 0) return Delete(entry);
    ScratchDataBlock block;
    Replace(entry, CEA_Set6ByteCVT(read.records, read.count, &block), block);
    return Visit::kNext;
  }

  bool HoldsFormat(const DtdTiming& wanted) const {
    return std::any_of(firstVideo_.vics, firstVideo_.vics + firstVideo_.vicCount, [&](uint8_t vic) {
      DtdTiming timing;
      return VicToDtd(vic, &timing) == 0 && timing.hactive == wanted.hactive && timing.vactive == wanted.vactive &&
             timing.interlaced == wanted.interlaced;
    });
  }

  // The VIC of the same format at the first listed rate below that fits, or 0.
  uint8_t SlowerVic(const DtdTiming& fast) const {
    for (const uint16_t rate : rates_) {
      if (rate >= fast.frameRate) continue;
      const uint32_t vic = FindVic(fast.hactive, fast.vactive, rate, fast.aspectRatio, fast.interlaced);
      DtdTiming timing;
      if (VicToDtd(vic, &timing) == 0 && timing.pixelClock <= limit_.clock) return Low8(vic);
    }
    return 0;
  }

  // A format that went with its only VIC comes back at a slower rate, in the first Video Data Block.
  void ReplaceRemovedVics() {
    const VdbRecord before = firstVideo_;
    for (const uint8_t vic : removed_) {
      DtdTiming timing;
      if (VicToDtd(vic, &timing) != 0 || HoldsFormat(timing)) continue;
      const uint8_t slower = SlowerVic(timing);
      if (slower != 0) AppendVic<kMaxVics>(firstVideo_, slower);
    }
    CeaDataBlock* entry = Find(kVideoTag);
    if (entry == nullptr) return;
    ScratchDataBlock block;
    if (!Replace(*entry, CEA_SetVDB(&firstVideo_, &block), block)) firstVideo_ = before;
  }

  // Formats that the sink takes in 4:2:0 too survive as 4:2:0 only when the Video Data Block lost them.
  void Write420Map() {
    if (map420_.vicCount == 0) return;
    CeaDataBlock* entry = Find(kExtendedTag, k420MapExtTag);
    if (entry != nullptr) {
      ScratchDataBlock block;
      Replace(*entry, CEA_Set420CMDB(&map420_, Find(kVideoTag), &block), block);
    }
    for (unsigned i = 0; i < map420_.vicCount; ++i) {
      if (!HoldsVic(firstVideo_, map420_.vics[i])) AppendVic<kMax420Vics>(video420_, map420_.vics[i]);
    }
  }

  void Write420Video() {
    if (video420_.vicCount == 0) return;
    ScratchDataBlock block;
    if (CEA_Set420VDB(&video420_, &block) != 0) return;
    CeaDataBlock* entry = Find(kExtendedTag, k420VideoExtTag);
    if (entry != nullptr) {
      Replace(*entry, 0, block);
    } else {
      CEA_AddDataBlock(&model_, &block, model_.dataBlockCount);
    }
  }

  CeaBlock& model_;
  const LinkLimit& limit_;
  Rates rates_;
  VdbRecord firstVideo_ = {};   // the first Video Data Block's list as it stands
  VicSet removed_;              // what the Video Data Blocks lost
  Vic420Record video420_ = {};  // the 4:2:0 Video Data Block's list as it stands
  Vic420Record map420_ = {};    // the VICs that the capability map marks
};

}  // namespace

void LimitCea(CeaBlock& model, const LinkLimit& limit, Rates rates) {
  CeaLimiter(model, limit, rates).Run();
}

}  // namespace reedid
