// Colorimetry Data Block (CTA-861, 7.5.5) and Video Capability Data Block (7.5.6).
//
// Colorimetry:      1 extended tag 5, 2 eight flags, 3 metadata profiles 3..0, ICtCp 6, DCI-P3 7
// Video capability: 1 extended tag 0, 2 QY 7, QS 6, S_PT 5..4, S_IT 3..2, S_CE 1..0

#include "base/layout.h"
#include "base/log.h"
#include "base/pinned.h"
#include "cea/codec.h"

namespace reedid {
namespace {

PIN_FIELDS(ColorimetryRecord, 0, 1, xvYCC601, xvYCC709, sYCC601, opYCC601, opRGB, BT2020cYCC, BT2020YCC, BT2020RGB,
           metadataProfiles, ICtCp, DCI_P3);
PIN_SIZE(ColorimetryRecord, 11);
PIN_FIELDS(VideoCapRecord, 0, 1, QY, QS, S_PT, S_IT, S_CE);
PIN_SIZE(VideoCapRecord, 5);

constexpr CeaForm kColorimetry = {CEA_TAG_EXTENDED, CEA_EXT_TAG_COLORIMETRY, 4, 31};
constexpr CeaForm kVideoCapability = {CEA_TAG_EXTENDED, CEA_EXT_TAG_VIDEO_CAPABILITY, 3, 31};

template <class Io, class Record>
constexpr void ColorimetryLayout(const Io& io, Record& r) {
  io(r.xvYCC601, Place{2, 0, 1});
  io(r.xvYCC709, Place{2, 1, 1});
  io(r.sYCC601, Place{2, 2, 1});
  io(r.opYCC601, Place{2, 3, 1});
  io(r.opRGB, Place{2, 4, 1});
  io(r.BT2020cYCC, Place{2, 5, 1});
  io(r.BT2020YCC, Place{2, 6, 1});
  io(r.BT2020RGB, Place{2, 7, 1});
  io(r.metadataProfiles, Place{3, 0, 4});
  io(r.ICtCp, Place{3, 6, 1});
  io(r.DCI_P3, Place{3, 7, 1});
}

template <class Io, class Record>
constexpr void VideoCapabilityLayout(const Io& io, Record& r) {
  io(r.QY, Place{2, 7, 1});
  io(r.QS, Place{2, 6, 1});
  io(r.S_PT, Place{2, 4, 2});
  io(r.S_IT, Place{2, 2, 2});
  io(r.S_CE, Place{2, 0, 2});
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetCDB(const CeaDataBlock* entry, ColorimetryRecord* record) {
  if (!Matches(entry, kColorimetry) || record == nullptr) return REEDID_ERR("invalid parameters");
  *record = {};
  ColorimetryLayout(LayoutReader(BytesOf(*entry)), *record);
  return 0;
}

int32_t CEA_SetCDB(const ColorimetryRecord* record, CeaDataBlock* entry) {
  if (record == nullptr || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  ColorimetryLayout(BeginDataBlock(*entry, kColorimetry, 4), *record);
  return 0;
}

int32_t CEA_GetVCDB(const CeaDataBlock* entry, VideoCapRecord* record) {
  if (!Matches(entry, kVideoCapability) || record == nullptr) return REEDID_ERR("invalid parameters");
  *record = {};
  VideoCapabilityLayout(LayoutReader(BytesOf(*entry)), *record);
  return 0;
}

int32_t CEA_SetVCDB(const VideoCapRecord* record, CeaDataBlock* entry) {
  if (record == nullptr || !CanHold(entry)) return REEDID_ERR("invalid parameters");
  VideoCapabilityLayout(BeginDataBlock(*entry, kVideoCapability, 3), *record);
  return 0;
}
