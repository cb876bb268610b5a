// The speakers of a Speaker Allocation Data Block, which other blocks name in the same bits.
#pragma once

#include "base/layout.h"

namespace reedid {

// Three bytes of flags from byte `at` on (CTA-861, table 59).
template <class Io, class Record>
constexpr void SpeakerLayout(const Io& io, Record& r, uint8_t at) {
  io(r.FL_FR, Place{at, 0, 1});
  io(r.LFE1, Place{at, 1, 1});
  io(r.FC, Place{at, 2, 1});
  io(r.BL_BR, Place{at, 3, 1});
  io(r.BC, Place{at, 4, 1});
  io(r.FLc_FRc, Place{at, 5, 1});
  io(r.RLC_RRC, Place{at, 6, 1});
  io(r.FLw_FRw, Place{at, 7, 1});
  io(r.TpFL_TpFR, Place{Low8(at + 1), 0, 1});
  io(r.TpC, Place{Low8(at + 1), 1, 1});
  io(r.TpFC, Place{Low8(at + 1), 2, 1});
  io(r.LS_RS, Place{Low8(at + 1), 3, 1});
  io(r.LFE2, Place{Low8(at + 1), 4, 1});
  io(r.TpBC, Place{Low8(at + 1), 5, 1});
  io(r.SiL_SiR, Place{Low8(at + 1), 6, 1});
  io(r.TpSiL_TpSiR, Place{Low8(at + 1), 7, 1});
  io(r.TpBL_TpBR, Place{Low8(at + 2), 0, 1});
  io(r.BtFC, Place{Low8(at + 2), 1, 1});
  io(r.BtFL_BtFR, Place{Low8(at + 2), 2, 1});
  io(r.TpLS_TpRS, Place{Low8(at + 2), 3, 1});
}

}  // namespace reedid
