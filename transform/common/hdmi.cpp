// The HDMI blocks of two displays: flags that both have, the lower of two maxima and the higher of two minima. What tells
// of the display itself (address, latencies, version, size of the picture) stays that of the image that is edited.

#include <iterator>

#include "base/log.h"
#include "patch/hdmi_video.h"
#include "patch/video.h"
#include "reedid/two_displays.h"
#include "transform/common/mixes.h"
#include "transform/common/records.h"
#include "transform/common/stereo_formats.h"

namespace reedid {
namespace {

constexpr uint16_t kUntoldTmds = 165;                     // MHz, of a display that tells none (HDMI 1.4b, 8.3.2)
constexpr uint8_t kVicOfHdmiVic[] = {0, 95, 94, 93, 98};  // HDMI 1.4b, table 8-13

constexpr size_t kLatencyEnd = 11, kInterlacedEnd = 13;

template <class Record, size_t kCount>
void AndFlags(Record& record, const Record& theirs, uint8_t Record::*const (&flags)[kCount]) {
  for (const auto flag : flags) record.*flag = Low8(record.*flag & theirs.*flag);
}

constexpr uint8_t H14b3dRecord::*const kHdmiFlags[] = {
    &H14b3dRecord::supportsAI, &H14b3dRecord::DC_48bit, &H14b3dRecord::DC_36bit,
    &H14b3dRecord::DC_30bit,   &H14b3dRecord::DC_Y444,  &H14b3dRecord::DVI_Dual,
};

constexpr uint8_t HfScdsRecord::*const kForumFlags[] = {&HfScdsRecord::scdcPresent,
                                                        &HfScdsRecord::rrCapable,
                                                        &HfScdsRecord::cableStatus,
                                                        &HfScdsRecord::ccbpci,
                                                        &HfScdsRecord::lte340Scramble,
                                                        &HfScdsRecord::independentView,
                                                        &HfScdsRecord::dualView,
                                                        &HfScdsRecord::osdDisparity3d,
                                                        &HfScdsRecord::UHD_VIC,
                                                        &HfScdsRecord::dc48bit420,
                                                        &HfScdsRecord::dc36bit420,
                                                        &HfScdsRecord::dc30bit420,
                                                        &HfScdsRecord::fapaEndExtended,
                                                        &HfScdsRecord::QMS,
                                                        &HfScdsRecord::mDelta,
                                                        &HfScdsRecord::cinemaVrr,
                                                        &HfScdsRecord::cnmVrr,
                                                        &HfScdsRecord::fva,
                                                        &HfScdsRecord::allm,
                                                        &HfScdsRecord::fapaStartLocation};

constexpr uint8_t HfScdsRecord::*const kDscFlags[] = {
    &HfScdsRecord::DSC_1p2,   &HfScdsRecord::dscNative420, &HfScdsRecord::QMS_TFRmax, &HfScdsRecord::QMS_TFRmin,
    &HfScdsRecord::dscAllBpp, &HfScdsRecord::dsc16bpc,     &HfScdsRecord::dsc12bpc,   &HfScdsRecord::dsc10bpc};

// An HDMI VIC is the format of a VIC, too: a display may list it in this way, or any other.
bool ListsHdmiVic(const EdidHandle& image, const H14b3dRecord& record, uint8_t hdmiVic) {
  bool listed = false;
  for (unsigned i = 0; i < record.hdmiVicLen; ++i) listed = listed || record.hdmiVics[i] == hdmiVic;
  OfferedTiming mode;
  if (hdmiVic >= std::size(kVicOfHdmiVic) || VicToMode(kVicOfHdmiVic[hdmiVic], &mode) != 0) return listed;
  VisitOffers(image, [&](const OfferedTiming& offer) {
    listed = listed || (offer.ycc420 != YCC420_ONLY && SameMode(offer, mode));
  });
  return listed;
}

void MixHdmiVics(H14b3dRecord& record, const EdidHandle& other, const H14b3dRecord& theirs) {
  uint8_t kept = 0;
  for (unsigned i = 0; i < record.hdmiVicLen; ++i) {
    if (ListsHdmiVic(other, theirs, record.hdmiVics[i])) record.hdmiVics[kept++] = record.hdmiVics[i];
  }
  for (unsigned i = kept; i < std::size(record.hdmiVics); ++i) record.hdmiVics[i] = 0;
  record.hdmiVicLen = kept;
}

uint16_t CommonTmds(uint16_t ours, uint16_t theirs) {
  const auto told = [](uint16_t tmds) { return tmds == 0 ? kUntoldTmds : tmds; };
  return told(ours) <= told(theirs) ? ours : told(theirs);
}

bool ReadHdmi(Bytes block, H14b3dRecord& record) {
  const CeaDataBlock entry = EntryOf(block);
  return CEA_GetH14b3D(&entry, &record) == 0;
}

void MixHdmi(CtaCursor& cursor, const EdidHandle& image, const EdidHandle& other, const H14b3dRecord& theirs) {
  H14b3dRecord before;
  if (!ReadHdmi(cursor.bytes(), before)) return;
  H14b3dRecord record = before;
  AndFlags(record, theirs, kHdmiFlags);
  for (unsigned i = 0; i < std::size(record.cnc); ++i) record.cnc[i] &= theirs.cnc[i];
  record.max_TMDS_Clock = CommonTmds(before.max_TMDS_Clock, theirs.max_TMDS_Clock);
  MixHdmiVics(record, other, theirs);
  Mix3dFormats(image, record, other, theirs);
  if (SameRecord(before, record)) return;
  const bool tellsVideo = record.imageSize != 0 || record.hdmiVicLen != 0 || record.threeD_present != 0 ||
                          record.threeD_Multi_present != 0 || record.entryCount != 0;
  record.hdmiVideoPresent &= tellsVideo ? 1 : 0;
  // Latencies that the block ends before are none, and would need room.
  const size_t size = cursor.bytes().size();
  if (size < kLatencyEnd) record.latencyPresent = 0;
  if (size < kInterlacedEnd) record.iLatencyPresent = 0;
  WriteRecord(cursor, record, CEA_SetH14b3D);
}

bool ReadForum(Bytes block, HfScdsRecord& record) {
  const CeaDataBlock entry = EntryOf(block);
  return (entry.tag == CEA_TAG_VENDOR ? CEA_GetHFVSDBScds : CEA_GetHFSCDB)(&entry, &record) == 0;
}

// A range of variable rates; a maximum of 0 is that of the timing.
void MixVrr(HfScdsRecord& record, const HfScdsRecord& theirs) {
  if (record.VRRmin == theirs.VRRmin && record.VRRmax == theirs.VRRmax) return;
  const bool both = record.VRRmin != 0 && theirs.VRRmin != 0;
  record.VRRmin = Higher(record.VRRmin, theirs.VRRmin);
  if (record.VRRmax == 0 || (theirs.VRRmax != 0 && theirs.VRRmax < record.VRRmax)) record.VRRmax = theirs.VRRmax;
  if (both && (record.VRRmax == 0 || record.VRRmin <= record.VRRmax)) return;
  record.VRRmin = 0;
  record.VRRmax = 0;
}

void MixDsc(HfScdsRecord& record, const HfScdsRecord& theirs) {
  AndFlags(record, theirs, kDscFlags);
  record.DSC_Max_FRL_Rate = Lower(record.DSC_Max_FRL_Rate, theirs.DSC_Max_FRL_Rate);
  record.DSC_MaxSlices = Lower(record.DSC_MaxSlices, theirs.DSC_MaxSlices);
  record.DSC_TotalChunkKBytes = Lower(record.DSC_TotalChunkKBytes, theirs.DSC_TotalChunkKBytes);
}

void ClearDsc(HfScdsRecord& record) {
  for (const auto flag : kDscFlags) {
    if (flag != &HfScdsRecord::QMS_TFRmax && flag != &HfScdsRecord::QMS_TFRmin) record.*flag = 0;
  }
  record.DSC_Max_FRL_Rate = record.DSC_MaxSlices = record.DSC_TotalChunkKBytes = 0;
}

void MixForum(CtaCursor& cursor, const HfScdsRecord& theirs) {
  HfScdsRecord before;
  if (!ReadForum(cursor.bytes(), before)) return;
  HfScdsRecord record = before;
  AndFlags(record, theirs, kForumFlags);
  record.TMDS_Character_Rate = Lower(record.TMDS_Character_Rate, theirs.TMDS_Character_Rate);
  record.Max_FRL_Rate = Lower(record.Max_FRL_Rate, theirs.Max_FRL_Rate);
  MixVrr(record, theirs);
  MixDsc(record, theirs);
  const bool hadDsc = before.DSC_1p2 != 0 || theirs.DSC_1p2 != 0;
  if (hadDsc && (record.DSC_1p2 == 0 || record.Max_FRL_Rate == 0)) ClearDsc(record);
  if (SameRecord(before, record)) return;
  WriteRecord(cursor, record, cursor.tag() == CEA_TAG_VENDOR ? CEA_SetHFVSDBScds : CEA_SetHFSCDB);
}

bool HaveBlocks(const EdidHandle* handle, const EdidHandle* other) {
  return handle != nullptr && handle->blocks != nullptr && other != nullptr && other->blocks != nullptr;
}

}  // namespace
}  // namespace reedid

using namespace reedid;

void EDID_MIX_H14bVSDB(EdidHandle* handle, const EdidHandle* other) {
  if (!HaveBlocks(handle, other)) {
    REEDID_ERR("invalid parameters");
    return;
  }
  const Bytes block = FirstDataBlock(*other, IsHdmi14b);
  H14b3dRecord theirs;
  if (block.size() == 0 || !ReadHdmi(block, theirs)) {
    theirs = {};
    theirs.max_TMDS_Clock = kUntoldTmds;
  }
  bool first = true;
  VisitDataBlocks(*handle, [&](CtaCursor& cursor) {
    if (!first || !IsHdmi14b(cursor)) return;
    first = false;
    MixHdmi(cursor, *handle, *other, theirs);
  });
}

void EDID_MIX_HFVSDB(EdidHandle* handle, const EdidHandle* other) {
  if (!HaveBlocks(handle, other)) {
    REEDID_ERR("invalid parameters");
    return;
  }
  const Bytes block = FirstDataBlock(*other, IsHdmiForum);
  HfScdsRecord theirs;
  const bool lacks = block.size() == 0 || !ReadForum(block, theirs);
  bool first = true;
  VisitDataBlocks(*handle, [&](CtaCursor& cursor) {
    if (!first || !IsHdmiForum(cursor)) return;
    first = false;
    if (lacks) return cursor.Erase();
    MixForum(cursor, theirs);
  });
}
