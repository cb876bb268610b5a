#include "document/account/cta_room.h"

#include <fmt/format.h>

#include "document/account/cta_audio.h"
#include "document/account/records.h"
#include "document/account/values.h"

namespace reedid::document {
namespace {

// CTA-861, table 34.
std::string SpeakerName(unsigned id) {
  static constexpr const char* kNames[] = {
      "FL",   "FR",  "FC",   "LFE1", "BL",    "BR",    "FLc",  "FRc",  "BC",   "LFE2", "SiL", "SiR", "TpFL", "TpFR",
      "TpFC", "TpC", "TpBL", "TpBR", "TpSiL", "TpSiR", "TpBC", "BtFC", "BtFL", "BtFR", "FLw", "FRw", "LS",   "RS"};
  return id == 31 ? "no speaker" : NameOf(kNames, id);
}

// Of the room, 1 being its edge.
std::string PlaceText(int x, int y, int z) {
  return fmt::format("x {:.3f}, y {:.3f}, z {:.3f}", x / 64.0, y / 64.0, z / 64.0);
}

}  // namespace

bool DescribeRoom(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  RoomRecord r;
  if (CEA_GetRCDB(&entry, &r) != 0) return false;
  node.record = r;
  const bool hasSize = at.size() > 8;
  node.Add("Speakers",
           fmt::format("{}: {}", r.speakerCount == 0 ? "number not stated" : fmt::format("{}", r.speakerCount),
                       SpeakersText(r.speakers)),
           at(2, 4));
  node.Add("Their places", r.locations != 0 ? "in the Speaker Location Data Block" : "not stated", at(2));
  const double x = hasSize ? r.maxX : 16, y = hasSize ? r.maxY : 16, z = hasSize ? r.maxZ : 8;
  node.Add("Farthest", fmt::format("{:.1f} x {:.1f} x {:.1f} m", x / 10, y / 10, z / 10), at(6, 3));
  if (r.displayPlace != 0 && at.size() > 11) {
    node.Add("Display", PlaceText(r.displayX, r.displayY, r.displayZ), at(9, 3));
  }
  return true;
}

bool DescribeSpeakerLocation(const CeaDataBlock& entry, const CeaBlock&, const ByteSource& at, Node& node) {
  SpeakerLocationRecord r;
  if (CEA_GetSLDB(&entry, &r) != 0) return false;
  node.record = r;
  size_t first = 2;
  for (unsigned i = 0; i < r.count; ++i) {
    const SpeakerLocationEntry& e = r.entries[i];
    const size_t size = e.coordinates != 0 ? 5 : 2;
    std::string text = SpeakerName(e.speakerId) + (e.active != 0 ? "" : ", not in use");
    if (e.coordinates != 0) text += ", " + PlaceText(e.x, e.y, e.z);
    node.Add(fmt::format("Channel {}", e.channel), text, at(first, size));
    first += size;
  }
  return true;
}

}  // namespace reedid::document
