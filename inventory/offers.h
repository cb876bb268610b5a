// The walk over every timing that an image offers. It reads the blocks' bytes in place: nothing is allocated, and what a
// model leaves out (behind a reserved data block, behind a faulty descriptor, inside a DisplayID block) is reached too.
#pragma once

#include <cstdint>

#include "base/bytes.h"
#include "patch/cta.h"
#include "reedid/offers.h"
#include "timing/modes.h"

namespace reedid {

// A place in an EdidBlock's bytes: a part of them that knows where it begins.
struct Part {
  Bytes bytes;
  unsigned offset = 0;

  uint8_t operator[](size_t at) const { return bytes[at]; }
  unsigned size() const { return static_cast<unsigned>(bytes.size()); }
  Part From(unsigned at) const { return {bytes.From(at), offset + at}; }
  Part First(unsigned count) const { return {bytes.First(count), offset}; }
};

// What the walk tells each timing to, and the place at which it stands. The functions of the walk set the place as they
// descend; what they do not set stays as they found it.
class Offers {
 public:
  using Take = void (*)(void* context, const OfferedTiming& offer);
  Offers(Take take, void* context) : take_(take), context_(context) {}

  OfferedTiming place = {};
  unsigned nativeDtds = 0;  // of the whole image, told by its first CTA-861 extension
  unsigned dtds = 0;        // met so far

  // A mode without a rate is none.
  void Add(const Mode& mode);
  void AddDmt(unsigned id);
  void AddVic(unsigned tableIndex);
  void AddHdmiVic(unsigned vic);
  void AddCvt(const CvtTiming& request);  // twice when its rate is taken at 1000/1001 too
  void AddDtd(Part slot);                 // 18 bytes; adds nothing when they are no detailed timing

 private:
  Take take_;
  void* context_;
};

// The index at which the timing table has a VIC; 0 for what is none.
constexpr unsigned VicTableIndex(uint32_t vic) {
  return vic < 128 ? vic : vic > 192 && vic < 256 ? vic - 64 : 0;
}

// Lists that more than one kind of block has; `at` begins with them.
void OfferStandardTimings(Part at, unsigned count, const StandardFormula& formula, Offers& offers);
void OfferCvtCodes(Part at, unsigned count, Offers& offers);

// How a base block of this version makes a standard timing; `slots` are the 18 bytes of its descriptors.
StandardFormula FormulaOf(uint8_t version, uint8_t revision, const Bytes (&slots)[4]);

// Blocks, and the data blocks of a CTA-861 extension or of a DisplayID container.
StandardFormula OfferBaseBlock(Part block, Offers& offers);
void OfferVideoTimingExtension(Part block, const StandardFormula& formula, Offers& offers);
void OfferCtaExtension(EdidBlock& block, Offers& offers);
void OfferCtaDataBlocks(const CtaRun& run, Offers& offers);
void OfferSection(EdidBlock& block, Offers& offers);

// Payloads of data blocks that DisplayID and CTA-861 share, by DisplayID's tag; `flags` is the byte before them.
void OfferTypeVii(Part payload, uint8_t flags, bool cta, Offers& offers);
void OfferTimingCodes(uint8_t tag, Part payload, uint8_t flags, Offers& offers);
void OfferFormulaTimings(uint8_t tag, Part payload, uint8_t flags, Offers& offers);

void WalkOffers(const EdidHandle& handle, Offers& offers);

// Calls visit(const OfferedTiming&) for every timing, in the order of the bytes.
template <class Visit>
void VisitOffers(const EdidHandle& handle, Visit&& visit) {
  Offers offers([](void* context, const OfferedTiming& offer) { (*static_cast<Visit*>(context))(offer); }, &visit);
  WalkOffers(handle, offers);
}

}  // namespace reedid
