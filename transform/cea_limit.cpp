// A link limit on a CTA extension: DTDs, HDMI vendor blocks, type VII and X timings, and the VICs by a limiter of their
// own.

#include <algorithm>

#include "cea/codec.h"
#include "cea/type_x.h"
#include "timing/dtd.h"
#include "transform/edit.h"
#include "transform/link_limit.h"
#include "transform/vic_limit.h"

namespace reedid {
namespace {

void LimitHdmi14b(MemoryWatch& memory, CeaBlock& model, CeaDataBlock& entry, const LinkLimit& limit) {
  H14bRecord record;
  if (CEA_GetH14bVSDB(&entry, &record) != 0 || record.max_TMDS_Clock * 1000u <= limit.clock) return;
  record.max_TMDS_Clock = Low16(limit.clock / 1000);
  Rewrite(memory, model, entry, CEA_SetH14bVSDB, &record);
}

// What needs a fixed-rate link goes; auto low latency mode works on any.
void LimitHdmiForum(MemoryWatch& memory, CeaBlock& model, CeaDataBlock& entry, const LinkLimit& limit) {
  HfVsdbRecord record;
  if (CEA_GetHFVSDB(&entry, &record) != 0) return;
  record.TMDS_Character_Rate = std::min(record.TMDS_Character_Rate, Low16(limit.clock / 1000));
  record.Max_FRL_Rate = 0;
  record.mDelta = record.cinemaVrr = record.cnmVrr = record.fva = record.fapaStartLocation = 0;
  record.VRRmin = 0;
  record.VRRmax = 0;
  record.DSC_1p2 = 0;
  Rewrite(memory, model, entry, CEA_SetHFVSDB, &record);
}

// The passes below tell whether the data block stays.

bool LimitVendorBlock(MemoryWatch& memory, CeaBlock& model, CeaDataBlock& entry, const LinkLimit& limit) {
  switch (CEA_GetVSDBType(&entry)) {
    case VSDB_HDMI14B:
      LimitHdmi14b(memory, model, entry, limit);
      return true;
    case VSDB_HDMI_FORUM:
      if (limit.carries420) LimitHdmiForum(memory, model, entry, limit);
      return limit.carries420;
    default:
      return true;
  }
}

// The flag that halves a type VII timing's clock on a link that carries 4:2:0 goes with the need for it.
bool LimitTypeVii(MemoryWatch& memory, CeaBlock& model, CeaDataBlock& entry, const LinkLimit& limit, Rates rates) {
  Cea20ByteDtdRecord record;
  if (CEA_Get20ByteDTD(&entry, &record) != 0 || !HasRate(record.timing)) return true;
  const bool half = limit.carries420 && record.preferred != 0;
  if (record.timing.pixelClock / (half ? 2 : 1) <= limit.clock) return true;
  const auto slower = SlowDown(record.timing, limit, rates);
  if (!slower) return false;
  if (slower->whole < kClockWithout420) record.preferred = 0;
  record.timing.pixelClock = slower->clock;
  Rewrite(memory, model, entry, CEA_Set20ByteDTD, &record);
  return true;
}

bool LimitTypeX(MemoryWatch& memory, CeaBlock& model, CeaDataBlock& entry, const LinkLimit& limit, Rates rates) {
  TypeXRecords read = ReadTypeX(entry);
  if (read.count == 0) return true;
  read.count = KeepIf(read.records, read.count, [&](CvtTiming& timing) {
    return LimitFormula(timing, limit, rates, limit.carries420) != Fate::kDropped;
  });
  if (read.count == 0) return false;
  Rewrite(memory, model, entry, CEA_Set6ByteCVT, read.records, read.count);
  return true;
}

}  // namespace

void LimitCea(MemoryWatch& memory, CeaBlock& model, const LinkLimit& limit, Rates rates) {
  VicLimiter vics(memory, model, limit, rates);
  KeepDtds(model, [&](DtdSlot& slot) { return LimitSlot(slot, limit, rates).fate != Fate::kDropped; });
  KeepDataBlocks(model, [&](CeaDataBlock& entry) { return vics.Limit420Block(entry); });
  KeepDataBlocks(model, [&](CeaDataBlock& entry) {
    if (entry.tag == CEA_TAG_VENDOR) return LimitVendorBlock(memory, model, entry, limit);
    if (entry.tag == CEA_TAG_VIDEO) return vics.LimitVideoBlock(entry), true;
    if (IsKind(entry, CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_VII)) return LimitTypeVii(memory, model, entry, limit, rates);
    if (IsKind(entry, CEA_TAG_EXTENDED, CEA_EXT_TAG_TYPE_X)) return LimitTypeX(memory, model, entry, limit, rates);
    return true;
  });
  vics.Restore();
}

}  // namespace reedid
