// The fields that every record of an HDMI vendor block has: the byte maps stand in hdmi.cpp (what the plain records hold),
// hdmi_3d.cpp and hdmi_forum.cpp (what the full ones hold beside it).
#pragma once

#include "base/layout.h"

namespace reedid {

// Bytes 4..8 of the 1.4b block; a reader of a shorter block gets zeroes.
template <class Io, class Record>
constexpr void H14bFixedLayout(const Io& io, Record& r) {
  io(r.physAddr, Place{5}, Place{4});
  io(r.supportsAI, Place{6, 7, 1});
  io(r.DC_48bit, Place{6, 6, 1});
  io(r.DC_36bit, Place{6, 5, 1});
  io(r.DC_30bit, Place{6, 4, 1});
  io(r.DC_Y444, Place{6, 3, 1});
  io(r.DVI_Dual, Place{6, 0, 1});
  Scaled(io, r.max_TMDS_Clock, 5, Place{7});
  io(r.latencyPresent, Place{8, 7, 1});
  io(r.iLatencyPresent, Place{8, 6, 1});
  io(r.hdmiVideoPresent, Place{8, 5, 1});
  for (uint8_t i = 0; i < 4; ++i) io(r.cnc[i], Place{8, i, 1});
}

template <class Io, class Record>
constexpr void HfBaseLayout(const Io& io, Record& r) {
  io(r.version, Place{4});
  Scaled(io, r.TMDS_Character_Rate, 5, Place{5});
  io(r.scdcPresent, Place{6, 7, 1});
  io(r.rrCapable, Place{6, 6, 1});
  io(r.ccbpci, Place{6, 4, 1});
  io(r.lte340Scramble, Place{6, 3, 1});
  io(r.independentView, Place{6, 2, 1});
  io(r.dualView, Place{6, 1, 1});
  io(r.osdDisparity3d, Place{6, 0, 1});
  io(r.Max_FRL_Rate, Place{7, 4, 4});
  io(r.dc48bit420, Place{7, 2, 1});
  io(r.dc36bit420, Place{7, 1, 1});
  io(r.dc30bit420, Place{7, 0, 1});
}

template <class Io, class Record>
constexpr void HfVrrFlagsLayout(const Io& io, Record& r) {
  io(r.mDelta, Place{8, 5, 1});
  io(r.cinemaVrr, Place{8, 4, 1});
  io(r.cnmVrr, Place{8, 3, 1});
  io(r.fva, Place{8, 2, 1});
  io(r.allm, Place{8, 1, 1});
  io(r.fapaStartLocation, Place{8, 0, 1});
}

template <class Io, class Record>
constexpr void HfVrrLayout(const Io& io, Record& r) {
  io(r.VRRmin, Place{9, 0, 6});
  io(r.VRRmax, Place{10}, Place{9, 6, 2});
}

template <class Io, class Record>
constexpr void HfDscLayout(const Io& io, Record& r) {
  io(r.DSC_1p2, Place{11, 7, 1});
  io(r.dscNative420, Place{11, 6, 1});
  io(r.dscAllBpp, Place{11, 3, 1});
  io(r.dsc16bpc, Place{11, 2, 1});
  io(r.dsc12bpc, Place{11, 1, 1});
  io(r.dsc10bpc, Place{11, 0, 1});
  io(r.DSC_Max_FRL_Rate, Place{12, 4, 4});
  io(r.DSC_MaxSlices, Place{12, 0, 4});
}

}  // namespace reedid
