// One codec: the first byte picks it, the rest is the payload of its block. What the getter decodes is set, and decoded
// again it is the same. An input that is an EDID goes through all codecs instead, data block by data block.
#include <cstring>

#include "fuzz/fuzz.h"
#include "inventory/walk.h"
#include "reedid/reedid.h"
#include "tests/support/data_block.h"
#include "tests/support/handle.h"

namespace reedid::fuzz {
namespace {

using test::BlankDataBlock;
using test::DataBlock;

// Whether the first set keeps all that was decoded. Codecs that normalise drop or change what they report on (a native
// mark that a VIC above 64 cannot carry, values that contradict each other); what they wrote must then be stable.
// Codecs that drift scale a value both ways with truncation, so that each round may take one off it.
enum Fidelity { kExact, kNormalises, kDrifts };

template <class Record>
void ClearAll(Record& record) {
  std::memset(static_cast<void*>(&record), 0, sizeof record);  // the padding too: records are compared whole
}

// get, set, get again, twice. A getter may accept what the setter refuses.
template <class Blank, class Entry, class Record>
void RoundTrip(const Entry& entry, int32_t (*get)(const Entry*, Record*), int32_t (*set)(const Record*, Entry*),
               Fidelity fidelity, const char* name) {
  Record first, second, third;
  ClearAll(first);
  ClearAll(second);
  ClearAll(third);
  if (get(&entry, &first) != 0) return;
  Blank once(entry);
  if (set(&first, &once) != 0) return;
  Check(get(&once, &second) == 0, "what was set can be got", name);
  if (fidelity == kExact) Check(std::memcmp(&first, &second, sizeof first) == 0, "get, set, get is equal", name);
  Blank twice(entry);
  Check(set(&second, &twice) == 0, "what was got after a set can be set", name);
  Check(get(&twice, &third) == 0, "it can be got again", name);
  if (fidelity != kDrifts) Check(std::memcmp(&second, &third, sizeof second) == 0, "the second round is equal", name);
}

// What a setter is given. A setter may keep part of the header that the entry has.
struct CeaBlank : BlankDataBlock {
  explicit CeaBlank(const CeaDataBlock&) {}
};

struct DispIdBlank : DispIdDataBlock {
  explicit DispIdBlank(const DispIdDataBlock& like)
      : DispIdDataBlock{like.tag, like.revision, like.headerFlags, 0, nullptr}, storage(ByteVector(251, 0xEE)) {
    bytes = storage.data();
  }
  ExactBytes storage;
};

struct CeaCodec {
  const char* name;
  uint8_t tag;
  ByteVector head;  // bytes behind the header byte that make it this codec's block
  void (*run)(const CeaDataBlock& entry, const char* name);
};

template <auto Get, auto Set, Fidelity kFidelity = kExact>
void RunCea(const CeaDataBlock& entry, const char* name) {
  RoundTrip<CeaBlank>(entry, Get, Set, kFidelity, name);
}

// The capability map refers to a video data block: here one of 31 formats, 1 to 31.
DataBlock AllFormats() {
  ByteVector bytes = {0x5F};
  for (uint8_t vic = 1; vic <= 31; ++vic) bytes.push_back(vic);
  return DataBlock(bytes);
}

void Run420Map(const CeaDataBlock& entry, const char* name) {
  const DataBlock video = AllFormats();
  Vic420Record first = {}, second = {};
  if (CEA_Get420CMDB(&video, &entry, &first) != 0) return;
  BlankDataBlock once;
  Check(CEA_Set420CMDB(&first, &video, &once) == 0, "what was got can be set", name);
  Check(CEA_Get420CMDB(&video, &once, &second) == 0, "what was set can be got", name);
  Check(std::memcmp(&first, &second, sizeof first) == 0, "get, set, get is equal", name);
}

// Codecs of several timings, with their number, as one record.
template <class Timing, unsigned kMax>
struct TimingList {
  uint32_t count;
  Timing timings[kMax];
};

template <auto Get, class List>
int32_t GetList(const DispIdDataBlock* entry, List* list) {
  const int32_t count = DispID_GetTimingCnt(entry);
  if (count <= 0) return -1;
  list->count = static_cast<uint32_t>(count);
  Check(list->count <= std::size(list->timings), "no more timings than a block holds", "DispID_GetTimingCnt");
  return Get(entry, list->timings, list->count);
}

template <auto Set, class List>
int32_t SetList(const List* list, DispIdDataBlock* entry) {
  return Set(list->timings, list->count, entry);
}

using CtaTypeX = TimingList<CvtTiming, 4>;

int32_t GetCtaTypeX(const CeaDataBlock* entry, CtaTypeX* list) {
  if (entry->size < 9) return CEA_Get6ByteCVT(entry, list->timings);
  list->count = (entry->size - 3u) / (6u + (entry->bytes[2] >> 4 & 7u));
  return list->count == 0 ? -1 : CEA_Get6ByteCVT(entry, list->timings);
}

int32_t SetCtaTypeX(const CtaTypeX* list, CeaDataBlock* entry) {
  return CEA_Set6ByteCVT(list->timings, list->count, entry);
}

// Records with a buffer of the caller's: the pointer is not part of what is compared.
template <class Inner, class Element, unsigned kRoom>
struct Buffered {
  Inner record;
  Element buffer[kRoom];
};

using TimingCodes = Buffered<TimingCodeRecord, uint8_t, 248>;
using ProductId = Buffered<ProductIdRecord, char, 234>;

template <auto Get>
int32_t GetCodes(const DispIdDataBlock* entry, TimingCodes* codes) {
  codes->record.codes = codes->buffer;
  const int32_t result = Get(entry, &codes->record, sizeof codes->buffer);
  codes->record.codes = nullptr;
  return result;
}

template <auto Set, class Entry>
int32_t SetCodes(const TimingCodes* codes, Entry* entry) {
  TimingCodes copy = *codes;
  copy.record.codes = copy.buffer;
  return Set(&copy.record, entry);
}

int32_t GetCtaCodes(const CeaDataBlock* entry, TimingCodes* codes) {
  const ExactBytes room(ByteVector(29));
  codes->record.codes = room.data();
  const int32_t result = CEA_GetTimingCode(entry, &codes->record);
  std::copy(room.data(), room.data() + room.size(), codes->buffer);
  codes->record.codes = nullptr;
  return result;
}

template <auto Get>
int32_t GetProduct(const DispIdDataBlock* entry, ProductId* product) {
  product->record.name = product->buffer;
  const int32_t result = Get(entry, &product->record);
  product->record.name = nullptr;
  return result;
}

template <auto Set>
int32_t SetProduct(const ProductId* product, DispIdDataBlock* entry) {
  ProductId copy = *product;
  copy.record.name = copy.buffer;
  return Set(&copy.record, entry);
}

struct Text {
  char text[253];
};

// A text that ends at once is written as a block that is too short to be read.
int32_t GetSerial(const DispIdDataBlock* entry, Text* text) {
  const int32_t result = DispID_GetSerialNumber(entry, text->text, sizeof text->text);
  return text->text[0] == '\0' ? -1 : result;
}

int32_t SetSerial(const Text* text, DispIdDataBlock* entry) {
  return DispID_SetSerialNumber(text->text, entry);
}

struct DispIdCodec {
  const char* name;
  uint8_t tag;
  void (*run)(const DispIdDataBlock& entry, const char* name);
};

template <auto Get, auto Set, Fidelity kFidelity = kExact>
void RunDispId(const DispIdDataBlock& entry, const char* name) {
  RoundTrip<DispIdBlank>(entry, Get, Set, kFidelity, name);
}

template <auto Get, auto Set, class Timing, unsigned kMax, Fidelity kFidelity = kExact>
void RunList(const DispIdDataBlock& entry, const char* name) {
  using List = TimingList<Timing, kMax>;
  RoundTrip<DispIdBlank>(entry, GetList<Get, List>, SetList<Set, List>, kFidelity, name);
}

template <auto Get, auto Set>
void RunCodes(const DispIdDataBlock& entry, const char* name) {
  RoundTrip<DispIdBlank>(entry, GetCodes<Get>, SetCodes<Set, DispIdDataBlock>, kExact, name);
}

template <auto Get, auto Set>
void RunProduct(const DispIdDataBlock& entry, const char* name) {
  RoundTrip<DispIdBlank>(entry, GetProduct<Get>, SetProduct<Set>, kNormalises, name);
}

// A bitmap and a data string are written under a size and a tag that their getters refuse: there is no way back.
template <auto Get>
void ReadBitmap(const DispIdDataBlock& entry, const char*) {
  const ExactBytes flags(ByteVector(256));
  Get(&entry, flags.data(), flags.size());
}

void ReadString(const DispIdDataBlock& entry, const char*) {
  const ExactBytes text(ByteVector(entry.size));
  DispID_GetDataString(&entry, reinterpret_cast<char*>(text.data()), text.size());
}

const ByteVector kHdmiOui = {0x03, 0x0C, 0x00};
const ByteVector kHdmiForumOui = {0xD8, 0x5D, 0xC4};

const CeaCodec kCeaCodecs[] = {
    {"VDB", 2, {}, RunCea<CEA_GetVDB, CEA_SetVDB, kNormalises>},
    {"ADB", 1, {}, RunCea<CEA_GetADB, CEA_SetADB, kNormalises>},
    {"SADB", 4, {}, RunCea<CEA_GetSADB, CEA_SetSADB>},
    {"CDB", 7, {5}, RunCea<CEA_GetCDB, CEA_SetCDB>},
    {"VCDB", 7, {0}, RunCea<CEA_GetVCDB, CEA_SetVCDB>},
    {"420VDB", 7, {14}, RunCea<CEA_Get420VDB, CEA_Set420VDB>},
    {"420CMDB", 7, {15}, Run420Map},
    {"H14bVSDB", 3, kHdmiOui, RunCea<CEA_GetH14bVSDB, CEA_SetH14bVSDB, kNormalises>},
    {"HFVSDB", 3, kHdmiForumOui, RunCea<CEA_GetHFVSDB, CEA_SetHFVSDB, kNormalises>},
    {"StaticHDR", 7, {6}, RunCea<CEA_GetStaticHDR, CEA_SetStaticHDR>},
    {"20ByteDTD", 7, {0x22}, RunCea<CEA_Get20ByteDTD, CEA_Set20ByteDTD>},
    {"TimingCode", 7, {0x23}, RunCea<GetCtaCodes, SetCodes<CEA_SetTimingCode, CeaDataBlock>>},
    {"6ByteCVT", 7, {0x2A}, RunCea<GetCtaTypeX, SetCtaTypeX, kNormalises>},
};

const DispIdCodec kDispIdCodecs[] = {
    {"PIDB", 0x00, RunProduct<DispID_GetPIDB, DispID_SetPIDB>},
    {"20_PIDB", 0x20, RunProduct<DispID20_GetPIDB, DispID20_SetPIDB>},
    {"DPDB", 0x01, RunDispId<DispID_GetDPDB, DispID_SetDPDB, kNormalises>},
    {"20_DPDB", 0x21, RunDispId<DispID20_GetDPDB, DispID20_SetDPDB, kNormalises>},
    {"20ByteDTD", 0x03, RunList<DispID_Get20ByteDTD, DispID_Set20ByteDTD, DtdTiming, 12>},
    {"20_20ByteDTD", 0x22, RunList<DispID20_Get20ByteDTD, DispID20_Set20ByteDTD, DtdTiming, 12>},
    {"11ByteDTD", 0x04, RunList<DispID_Get11ByteDTD, DispID_Set11ByteDTD, DtdTiming, 22, kNormalises>},
    {"17ByteDTD", 0x13, RunList<DispID_Get17ByteDTD, DispID_Set17ByteDTD, DtdTiming, 17, kDrifts>},
    {"3ByteCVT", 0x05, RunList<DispID_Get3ByteCVT, DispID_Set3ByteCVT, CvtTiming, 82, kNormalises>},
    {"7ByteCVT", 0x11, RunList<DispID_Get7ByteCVT, DispID_Set7ByteCVT, CvtTiming, 35, kNormalises>},
    {"IX 6ByteCVT", 0x24, RunList<DispID20_Get6ByteCVT, DispID20_Set6ByteCVT, CvtTiming, 41, kNormalises>},
    {"X 6ByteCVT", 0x2A, RunList<DispID20_Get6ByteCVT, DispID20_Set6ByteCVT, CvtTiming, 41, kNormalises>},
    {"TimingCode", 0x06, RunCodes<DispID_GetTimingCode, DispID_SetTimingCode>},
    {"20_TimingCode", 0x23, RunCodes<DispID20_GetTimingCode, DispID20_SetTimingCode>},
    {"VESATiming", 0x07, ReadBitmap<DispID_GetVESATiming>},
    {"CEATiming", 0x08, ReadBitmap<DispID_GetCEATiming>},
    {"RangeLimits", 0x09, RunDispId<DispID_GetRangeLimits, DispID_SetRangeLimits, kNormalises>},
    {"20_RangeLimits", 0x25, RunDispId<DispID20_GetRangeLimits, DispID20_SetRangeLimits, kNormalises>},
    {"SerialNumber", 0x0A, RunDispId<GetSerial, SetSerial, kNormalises>},
    {"DataString", 0x0B, ReadString},
};

// The display descriptors of the base block, by their tag.
struct SlotBlank : DtdSlot {
  explicit SlotBlank(const DtdSlot&) : DtdSlot{0xEE, {}} {}
};

template <auto Get>
int32_t GetText(const DtdSlot* slot, Text* text) {
  return Get(slot, text->text, 14);
}

template <auto Set>
int32_t SetText(const Text* text, DtdSlot* slot) {
  return Set(text->text, slot);
}

struct SixTimings {
  StdTiming timings[6];
};

int32_t GetSix(const DtdSlot* slot, SixTimings* six) {
  return VESA_GetStandardTimings(slot, six->timings);
}

int32_t SetSix(const SixTimings* six, DtdSlot* slot) {
  return VESA_SetStandardTimings(six->timings, slot);
}

// The version and the continuous frequencies of the base block that a descriptor stands in.
template <uint8_t kRevision>
VesaBlock BaseBlock() {
  VesaBlock model = {};
  model.version = 1;
  model.revision = kRevision;
  model.continuousFreq = 1;
  return model;
}

template <uint8_t kRevision>
int32_t GetRange(const DtdSlot* slot, RangeLimits* limits) {
  const VesaBlock model = BaseBlock<kRevision>();
  return VESA_GetRangeLimits(&model, slot, limits);
}

template <uint8_t kRevision>
int32_t SetRange(const RangeLimits* limits, DtdSlot* slot) {
  const VesaBlock model = BaseBlock<kRevision>();
  return VESA_SetRangeLimits(&model, limits, slot);
}

struct SlotCodec {
  const char* name;
  uint8_t flag;
  void (*run)(const DtdSlot& slot, const char* name);
};

template <auto Get, auto Set, Fidelity kFidelity = kExact>
void RunSlot(const DtdSlot& slot, const char* name) {
  RoundTrip<SlotBlank>(slot, Get, Set, kFidelity, name);
}

const SlotCodec kSlotCodecs[] = {
    {"DTD", 1, RunSlot<VESA_GetDTD, VESA_SetDTD>},
    {"serial number", 0xFF, RunSlot<GetText<VESA_GetSerialNumber>, SetText<VESA_SetSerialNumber>, kNormalises>},
    {"data string", 0xFE, RunSlot<GetText<VESA_GetDataString>, SetText<VESA_SetDataString>, kNormalises>},
    {"product name", 0xFC, RunSlot<GetText<VESA_GetProductName>, SetText<VESA_SetProductName>, kNormalises>},
    {"range limits 1.3", 0xFD, RunSlot<GetRange<3>, SetRange<3>>},
    {"range limits 1.4", 0xFD, RunSlot<GetRange<4>, SetRange<4>, kNormalises>},
    {"standard timings", 0xFA, RunSlot<GetSix, SetSix, kNormalises>},
    {"CVT codes", 0xF8, RunSlot<VESA_GetCvtTiming, VESA_SetCvtTiming, kNormalises>},
    {"established timings III", 0xF7, RunSlot<VESA_GetEst3Timing, VESA_SetEst3Timing>},
};

void RunSlots(const DtdSlot& slot) {
  for (const SlotCodec& codec : kSlotCodecs) codec.run(slot, codec.name);
}

void RunSlotBytes(const SlotCodec& codec, Input& input) {
  DtdSlot slot = {codec.flag, {}};
  const bool timing = codec.flag == 1;
  if (!timing) slot.bytes[3] = codec.flag;  // the header of a display descriptor, up to its tag
  const ByteVector bytes = input.Take(timing ? 18 : 14);
  std::copy(bytes.begin(), bytes.end(), slot.bytes + (timing ? 0 : 4));
  codec.run(slot, codec.name);
}

void RunCeaBytes(const CeaCodec& codec, Input& input) {
  ByteVector bytes = test::Concat({{0}, codec.head, input.Take(31 - codec.head.size())});
  bytes[0] = static_cast<uint8_t>(unsigned{codec.tag} << 5 | (bytes.size() - 1));
  codec.run(DataBlock(bytes), codec.name);
}

void RunDispIdBytes(const DispIdCodec& codec, Input& input) {
  const uint8_t second = input.Byte();
  ByteVector bytes = test::Concat({{codec.tag, second, 0}, input.Take(248)});
  bytes[2] = static_cast<uint8_t>(bytes.size() - 3);
  const ExactBytes exact(bytes);
  codec.run({codec.tag, static_cast<uint8_t>(second & 7), static_cast<uint8_t>(second >> 3),
             static_cast<uint8_t>(bytes.size()), exact.data()},
            codec.name);
}

void RunPicked(Input input) {
  size_t pick = input.Byte() % (std::size(kCeaCodecs) + std::size(kDispIdCodecs) + std::size(kSlotCodecs));
  if (pick < std::size(kCeaCodecs)) return RunCeaBytes(kCeaCodecs[pick], input);
  pick -= std::size(kCeaCodecs);
  if (pick < std::size(kDispIdCodecs)) return RunDispIdBytes(kDispIdCodecs[pick], input);
  RunSlotBytes(kSlotCodecs[pick - std::size(kDispIdCodecs)], input);
}

void RunAll(const uint8_t* data, size_t size) {
  const test::Owned<EdidHandle> handle(EDID_Open(data, static_cast<uint32_t>(size)));
  if (handle == nullptr) return;
  VisitBlocks(*handle, Overloaded{
                           [](const VesaBlock& model) {
                             for (const DtdSlot& slot : model.descriptors) RunSlots(slot);
                           },
                           [](const CeaBlock& model) {
                             for (unsigned i = 0; i < model.dataBlockCount; ++i) {
                               for (const CeaCodec& codec : kCeaCodecs) codec.run(model.dataBlocks[i], codec.name);
                             }
                             for (unsigned i = 0; i < model.dtdCount; ++i) RunSlots(model.dtds[i]);
                           },
                           [](const DispIdBlock& model) {
                             for (unsigned i = 0; i < model.dataBlockCount; ++i) {
                               for (const DispIdCodec& codec : kDispIdCodecs) {
                                 if (codec.tag == model.dataBlocks[i].tag) codec.run(model.dataBlocks[i], codec.name);
                               }
                             }
                           },
                       });
}

}  // namespace
}  // namespace reedid::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size >= 128 && isEdidHeader(data) != 0) {
    reedid::fuzz::RunAll(data, size);
  } else {
    reedid::fuzz::RunPicked({data, size});
  }
  return 0;
}
