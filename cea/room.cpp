// Where speakers are: Room Configuration and Speaker Location Data Block (CTA-861, 7.5.15 and 7.5.16).
//
// Room configuration, extended tag 19; 6, 9 or 12 bytes
//   2     display place 7, speaker count is told 6, speaker locations are told 5, speaker count - 1 4..0
//   3-5   speakers, as in speaker allocation
//   6-8   greatest x, y, z / 0.1 m
//   9-11  x, y, z of the display, signed, in 1/64 of the greatest
//
// Speaker location, extended tag 20: from 2 on descriptors of 2 bytes, or of 5
//   0     coordinates 6, active 5, channel 4..0
//   1     speaker 4..0
//   2-4   x, y, z, signed, in 1/64 of the greatest

#include <iterator>

#include "base/pinned.h"
#include "cea/exact_codec.h"
#include "cea/speakers.h"
#include "reedid/cea_media.h"

namespace reedid {
namespace {

PIN_FIELDS(RoomRecord, 0, 1, displayPlace, locations, speakerCount);
PIN_FIELDS(RoomRecord, 3, 20, speakers);
PIN_FIELDS(RoomRecord, 23, 1, maxX, maxY, maxZ, displayX, displayY, displayZ);
PIN_SIZE(RoomRecord, 29);
PIN_FIELDS(SpeakerLocationEntry, 0, 1, coordinates, active, channel, speakerId, x, y, z);
PIN_SIZE(SpeakerLocationEntry, 7);
PIN_FIELDS(SpeakerLocationRecord, 0, 1, count);
PIN_FIELDS(SpeakerLocationRecord, 1, 105, entries);
PIN_SIZE(SpeakerLocationRecord, 106);

struct Room : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_ROOM_CONFIGURATION, 6, 32};

  static unsigned Size(const RoomRecord& r, const uint8_t* bytes) {
    const unsigned used = UsedSize(bytes, 6);
    return r.displayPlace || used > 9 ? 12 : used > 6 ? 9 : 6;
  }

  static void Layout(const ExactIo& io, RoomRecord& r, unsigned) {
    io(r.displayPlace, Place{2, 7, 1});
    uint8_t counted = r.speakerCount != 0;
    io(counted, Place{2, 6, 1});
    if (counted) LessOne(io, r.speakerCount, Place{2, 0, 5});
    io(r.locations, Place{2, 5, 1});
    SpeakerLayout(io, r.speakers, 3);
    io(r.maxX, Place{6});
    io(r.maxY, Place{7});
    io(r.maxZ, Place{8});
    io(r.displayX, Place{9});
    io(r.displayY, Place{10});
    io(r.displayZ, Place{11});
  }
};

struct Locations : ExactDefaults {
  static constexpr CeaForm kForm = {CEA_TAG_EXTENDED, CEA_EXT_TAG_SPEAKER_LOCATION, 4, 32};
  static constexpr unsigned kFirst = 2;

  static bool Holds(const SpeakerLocationRecord& r) {
    return r.count <= std::size(r.entries) && Size(r, nullptr) <= REEDID_CEA_DATA_BLOCK_SIZE;
  }

  static unsigned Size(const SpeakerLocationRecord& r, const uint8_t*) {
    unsigned size = kFirst;
    for (unsigned i = 0; i < r.count; ++i) size += EntrySize(r.entries[i]);
    return size;
  }

  static void Layout(const ExactIo& io, SpeakerLocationRecord& r, unsigned size) {
    List(io, r.count, r.entries, kFirst, size, [&io](SpeakerLocationEntry& entry, unsigned at) {
      io(entry.coordinates, Place{Low8(at), 6, 1});
      io(entry.active, Place{Low8(at), 5, 1});
      io(entry.channel, Place{Low8(at), 0, 5});
      io(entry.speakerId, Place{Low8(at + 1), 0, 5});
      if (entry.coordinates) {
        io(entry.x, Place{Low8(at + 2)});
        io(entry.y, Place{Low8(at + 3)});
        io(entry.z, Place{Low8(at + 4)});
      }
      return EntrySize(entry);
    });
  }

 private:
  static unsigned EntrySize(const SpeakerLocationEntry& entry) { return entry.coordinates ? 5 : 2; }
};

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t CEA_GetRCDB(const CeaDataBlock* entry, RoomRecord* record) {
  return GetExact<Room>(entry, record);
}

int32_t CEA_SetRCDB(const RoomRecord* record, CeaDataBlock* entry) {
  return SetExact<Room>(record, entry);
}

int32_t CEA_GetSLDB(const CeaDataBlock* entry, SpeakerLocationRecord* record) {
  return GetExact<Locations>(entry, record);
}

int32_t CEA_SetSLDB(const SpeakerLocationRecord* record, CeaDataBlock* entry) {
  return SetExact<Locations>(record, entry);
}
