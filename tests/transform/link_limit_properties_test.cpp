// What a link limit promises, for every EDID of the corpus.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "inventory/walk.h"
#include "tests/support/corpus.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"
#include "timing/dtd.h"

namespace reedid::test {
namespace {

struct Link {
  const char* name;
  void (*limit)(EdidHandle*, const uint16_t*, uint32_t);
  uint32_t clock;
  bool keepsDisplayId;
};

const Link kLinks[] = {{"HDMI 2.0", EDID_LimitToHDMI20, 600000, true}, {"HDMI 1.4", EDID_LimitToHDMI14, 340000, false}};

// The same list for every application: after the first the image offers fewer rates.
void Apply(const Link& link, EdidHandle* handle, int times) {
  uint16_t rates[64];
  const uint32_t count = EDID_GetAllFrameRate(handle, rates, 64);
  for (int i = 0; i < times && count > 0; ++i) link.limit(handle, rates, count);
}

std::vector<DtdTiming> DtdsOf(const EdidHandle* handle) {
  std::vector<DtdTiming> list(EDID_GetDTDCnt(handle));
  list.resize(EDID_FindOutAllDTD(handle, list.data(), static_cast<uint32_t>(list.size())));
  return list;
}

std::multiset<uint8_t> VicsOf(const EdidHandle* handle) {
  std::multiset<uint8_t> vics;
  VisitBlocks(*handle, [&](const CeaBlock& model) {
    for (unsigned i = 0; i < model.dataBlockCount; ++i) {
      VdbRecord record;
      if (model.dataBlocks[i].tag != 2 || CEA_GetVDB(&model.dataBlocks[i], &record) != 0) continue;
      vics.insert(record.vics, record.vics + record.vicCount);
    }
  });
  return vics;
}

uint32_t ClockOf(uint8_t vic) {
  DtdTiming timing = {};
  VicToDtd(vic, &timing);
  return timing.pixelClock;
}

// An extension of DTDs alone has no collection of data blocks, and a model without one is not generated: the block
// keeps its bytes, and its timings.
bool HasBareExtension(const EdidHandle* handle) {
  bool bare = false;
  VisitBlocks(*handle, [&](const CeaBlock& model) { bare |= model.dataBlocks == nullptr; });
  return bare;
}

// The rate that a timing reaches is rounded to the nearest, so a clock may stay up to half a hertz above the limit.
bool IsWithinRounding(const DtdTiming& timing, uint32_t clock) {
  return timing.pixelClock <= clock + HTotal(timing) * VTotal(timing) / 2000 + 1;
}

// What the image offers, as bytes: without the checksums and the native marks of CTA extensions. A video block that has
// no mark counts its first VIC as native, and writing it marks that VIC if it can be marked; when the first VIC is one
// that goes and cannot be marked, only the second application finds a first one to mark.
ByteVector OfferOf(const EdidHandle* handle) {
  ByteVector offer;
  for (unsigned i = 0; i < handle->blockCount; ++i) {
    const EdidBlock& block = handle->blocks[i];
    if (block.type != EDID_BLOCK_CEA) offer.insert(offer.end(), block.bytes, block.bytes + block.size);
  }
  VisitBlocks(*handle, [&](const CeaBlock& model) {
    for (unsigned i = 0; i < model.dataBlockCount; ++i) {
      const CeaDataBlock& entry = model.dataBlocks[i];
      VdbRecord record = {};
      const bool video = entry.tag == 2 && CEA_GetVDB(&entry, &record) == 0;
      const uint8_t* bytes = video ? record.vics : entry.bytes;
      offer.insert(offer.end(), bytes, bytes + (video ? record.vicCount : entry.size));
    }
    for (unsigned i = 0; i < model.dtdCount; ++i) {
      offer.insert(offer.end(), model.dtds[i].bytes, model.dtds[i].bytes + sizeof model.dtds[i].bytes);
    }
  });
  return offer;
}

TEST(LinkLimitProperties, HoldForEveryImage) {
  int rounded = 0, limited = 0;
  for (const Link& link : kLinks) {
    for (const auto& image : Corpus()) {
      const auto& [name, content] = image;
      const ByteVector& bytes = content;  // a lambda cannot capture a structured binding
      SCOPED_TRACE(std::string(link.name) + ", " + name);
      Owned<EdidHandle> before, once, twice;
      LogOf([&] {
        before = OpenImage(bytes);
        once = OpenImage(bytes);
        if (once == nullptr) return;
        Apply(link, once.get(), 1);
        twice = OpenImage(bytes);
        Apply(link, twice.get(), 2);
      });
      if (once == nullptr) continue;
      bool bare = false;
      std::vector<DtdTiming> was, is;
      std::multiset<uint8_t> wasVics, isVics;
      ByteVector onceOffer, twiceOffer;
      LogOf([&] {
        bare = HasBareExtension(once.get());
        onceOffer = OfferOf(once.get());
        twiceOffer = OfferOf(twice.get());
        was = DtdsOf(before.get());
        is = DtdsOf(once.get());
        wasVics = VicsOf(before.get());
        isVics = VicsOf(once.get());
      });

      const auto tooFast = [&](const DtdTiming& timing) { return timing.pixelClock > link.clock; };
      const auto above = std::count_if(is.begin(), is.end(), tooFast);
      rounded += static_cast<int>(above);
      for (const DtdTiming& timing : is) {
        EXPECT_TRUE(bare || IsWithinRounding(timing, link.clock)) << timing.pixelClock;
      }
      for (const uint8_t vic : isVics) EXPECT_LE(ClockOf(vic), link.clock) << "VIC " << int{vic};

      for (const uint8_t vic : wasVics) {
        if (ClockOf(vic) <= link.clock) {
          EXPECT_GE(isVics.count(vic), wasVics.count(vic)) << "VIC " << int{vic} << " was lost";
        }
      }
      const bool wasWithin = std::none_of(was.begin(), was.end(), tooFast);
      if (wasWithin && link.keepsDisplayId) {
        EXPECT_EQ(is.size(), was.size());
      }
      limited += !wasWithin;
      if (above == 0) {
        EXPECT_TRUE(onceOffer == twiceOffer) << "twice is not once";
      }
    }
  }
  RecordProperty("images_limited", limited);
  RecordProperty("clocks_above_by_rounding", rounded);
}

}  // namespace
}  // namespace reedid::test
