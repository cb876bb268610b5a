// The audio that every HDMI sink takes: two channels of L-PCM on the front speakers.
#pragma once

#include "reedid/cea.h"

namespace reedid {

// Makes the record one descriptor of L-PCM at 48 kHz and 16 bit. What the descriptor says beyond that stays.
inline void SetStereo(AdbRecord& record) {
  record.sadCount = 1;
  SadRecord& sad = record.sads[0];
  sad.formatCode = 1;
  sad.channels = 2;
  sad.rate48k = 1;
  sad.bits16 = 1;
}

inline constexpr SpeakerRecord kFrontSpeakers = [] {
  SpeakerRecord record = {};
  record.FL_FR = 1;
  return record;
}();

}  // namespace reedid
