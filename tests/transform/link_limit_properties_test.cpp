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

uint32_t ClockOf(uint8_t vic) {
  DtdTiming timing = {};
  VicToDtd(vic, &timing);
  return timing.pixelClock;
}

// An extension of DTDs alone has no collection of data blocks, and a model without one is not generated: the block
// keeps its bytes, and its timings.
std::ptrdiff_t TimingsInBareExtensions(const EdidHandle* handle) {
  std::ptrdiff_t count = 0;
  VisitBlocks(*handle, [&](const CeaBlock& model) { count += model.dataBlocks == nullptr ? model.dtdCount : 0; });
  return count;
}

// The rate that a timing reaches is rounded to the nearest, so a clock may stay up to half a hertz above the limit.
bool IsWithinRounding(const DtdTiming& timing, uint32_t clock) {
  return timing.pixelClock <= clock + HTotal(timing) * VTotal(timing) / 2000 + 1;
}

struct Offer {
  std::vector<DtdTiming> dtds;
  std::multiset<uint8_t> vics;
  // All of it, without the checksums and the native marks of CTA extensions. A video block that has no mark counts its
  // first VIC as native, and writing it marks that VIC if it can be marked; when the first VIC is one that goes and
  // cannot be marked, only the second application finds a first one to mark.
  ByteVector bytes;
};

Offer OfferOf(const EdidHandle* handle) {
  Offer offer;
  offer.dtds.resize(EDID_GetDTDCnt(handle));
  offer.dtds.resize(EDID_FindOutAllDTD(handle, offer.dtds.data(), static_cast<uint32_t>(offer.dtds.size())));
  const auto add = [&offer](const uint8_t* bytes, size_t count) {
    offer.bytes.insert(offer.bytes.end(), bytes, bytes + count);
  };
  for (unsigned i = 0; i < handle->blockCount; ++i) {
    const EdidBlock& block = handle->blocks[i];
    if (block.type != EDID_BLOCK_CEA) add(block.bytes, block.size);
  }
  VisitBlocks(*handle, [&](const CeaBlock& model) {
    for (unsigned i = 0; i < model.dataBlockCount; ++i) {
      const CeaDataBlock& entry = model.dataBlocks[i];
      VdbRecord record = {};
      const bool video = entry.tag == 2 && CEA_GetVDB(&entry, &record) == 0;
      offer.vics.insert(record.vics, record.vics + record.vicCount);
      add(video ? record.vics : entry.bytes, video ? record.vicCount : entry.size);
    }
    for (unsigned i = 0; i < model.dtdCount; ++i) add(model.dtds[i].bytes, sizeof model.dtds[i].bytes);
  });
  return offer;
}

// To how many images each promise applied.
struct Applied {
  unsigned limit = 0, keepTimings = 0, twice = 0;
};

void CheckPromises(const Link& link, const ByteVector& bytes, Applied& applied) {
  const Image before(bytes), once(bytes), twice(bytes);
  if (!before) return;
  ++applied.limit;
  Apply(link, once.get(), 1);
  Apply(link, twice.get(), 2);
  const Offer was = OfferOf(before.get()), is = OfferOf(once.get());
  const auto tooFast = [&](const DtdTiming& timing) { return timing.pixelClock > link.clock; };
  const auto above = [&](const DtdTiming& timing) { return !IsWithinRounding(timing, link.clock); };
  EXPECT_LE(std::count_if(is.dtds.begin(), is.dtds.end(), above), TimingsInBareExtensions(once.get()));
  for (const uint8_t vic : is.vics) EXPECT_LE(ClockOf(vic), link.clock) << "VIC " << int{vic};
  for (const uint8_t vic : was.vics) {
    if (ClockOf(vic) > link.clock) continue;
    EXPECT_GE(is.vics.count(vic), was.vics.count(vic)) << "VIC " << int{vic} << " was lost";
  }
  if (link.keepsDisplayId && std::none_of(was.dtds.begin(), was.dtds.end(), tooFast)) {
    EXPECT_EQ(is.dtds.size(), was.dtds.size());
    ++applied.keepTimings;
  }
  if (std::none_of(is.dtds.begin(), is.dtds.end(), tooFast)) {
    EXPECT_TRUE(is.bytes == OfferOf(twice.get()).bytes) << "twice is not once";
    ++applied.twice;
  }
}

TEST(LinkLimitProperties, HoldForEveryImage) {
  for (const Link& link : kLinks) {
    Applied applied;
    for (const auto& [name, bytes] : Corpus()) {
      SCOPED_TRACE(std::string(link.name) + ", " + name);
      Quietly([&, &image = bytes] { CheckPromises(link, image, applied); });
    }
    EXPECT_GT(applied.limit, Corpus().size() / 2) << link.name;
    EXPECT_EQ(applied.keepTimings > 0, link.keepsDisplayId);
    EXPECT_GT(applied.twice, applied.limit / 2) << link.name;
  }
}

// The limits of single models, for callers who have one open, are those of the whole image.
template <auto LimitVesa, auto LimitCea, auto LimitSection>
void LimitModels(EdidHandle* handle, const uint16_t* rates, uint32_t count) {
  MemoryWatch memory;
  EditBlocks(*handle, memory,
             Overloaded{[&](VesaBlock& model) { LimitVesa(&model, rates, count); },
                        [&](CeaBlock& model) { LimitCea(&model, rates, count); },
                        [&](DispIdBlock& model) { LimitSection(&model, rates, count); }});
}

void DeleteDisplayIdBlocks(EdidHandle& handle) {
  for (unsigned i = handle.blockCount; i-- > 0;) {
    if (Family<DispIdBlock>::Owns(handle.blocks[i].type)) EDID_DeleteBlock(&handle, &handle.blocks[i]);
  }
}

void LeaveSection(DispIdBlock*, const uint16_t*, uint32_t) {}  // HDMI 1.4 has none

TEST(LinkLimitProperties, OfModelsAreThoseOfTheImage) {
  const Link models[] = {
      {"", LimitModels<VESA_LimitToHDMI20, CEA_LimitToHDMI20, DispID_LimitToHDMI20>, 0, true},
      {"", LimitModels<VESA_LimitToHDMI14, CEA_LimitToHDMI14, LeaveSection>, 0, false},
  };
  for (const auto& [name, bytes] : Corpus()) {
    for (unsigned i = 0; i < 2; ++i) {
      Image whole, parts;
      Quietly([&, &image = bytes] {
        whole = Image(image);
        parts = Image(image);
        Apply(kLinks[i], whole.get(), 1);
        Apply(models[i], parts.get(), 1);
      });
      if (!kLinks[i].keepsDisplayId) DeleteDisplayIdBlocks(*parts);
      EXPECT_TRUE(Generate(whole.get()) == Generate(parts.get())) << name << kLinks[i].name;
    }
  }
}

}  // namespace
}  // namespace reedid::test
