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
enum Fidelity { kExact, kNormalises };

template <class Record>
void ClearAll(Record& record) {
  std::memset(static_cast<void*>(&record), 0, sizeof record);  // the padding too: records are compared whole
}

// get, set, get again, twice. A getter may accept what the setter refuses.
template <class Blank, class Record, class Entry>
void RoundTrip(const Entry& entry, int32_t (*get)(const Entry*, Record*), int32_t (*set)(const Record*, Entry*),
               Fidelity fidelity, const char* name) {
  Record first, second, third;
  ClearAll(first);
  ClearAll(second);
  ClearAll(third);
  if (get(&entry, &first) != 0) return;
  Blank once;
  if (set(&first, &once) != 0) return;
  Check(get(&once, &second) == 0, "what was set can be got", name);
  if (fidelity == kExact) Check(std::memcmp(&first, &second, sizeof first) == 0, "get, set, get is equal", name);
  Blank twice;
  Check(set(&second, &twice) == 0, "what was got after a set can be set", name);
  Check(get(&twice, &third) == 0, "it can be got again", name);
  Check(std::memcmp(&second, &third, sizeof second) == 0, "the second round is equal", name);
}

struct CeaCodec {
  const char* name;
  uint8_t tag;
  ByteVector head;  // bytes behind the header byte that make it this codec's block
  void (*run)(const CeaDataBlock& entry, const char* name);
};

template <auto Get, auto Set, Fidelity kFidelity = kExact>
void RunCea(const CeaDataBlock& entry, const char* name) {
  RoundTrip<BlankDataBlock>(entry, Get, Set, kFidelity, name);
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
};

// A descriptor that says what a DTD can: borders, stereo and analogue sync are not decoded.
void RunDtd(const DtdSlot& slot) {
  DtdTiming first = {}, second = {};
  if (VESA_GetDTD(&slot, &first) != 0) return;
  DtdSlot again = {};
  if (VESA_SetDTD(&first, &again) != 0) return;
  Check(VESA_GetDTD(&again, &second) == 0, "what was set can be got", "DTD");
  Check(std::memcmp(&first, &second, sizeof first) == 0, "get, set, get is equal", "DTD");
}

void RunDtdBytes(Input& input) {
  DtdSlot slot = {1, {}};
  const ByteVector bytes = input.Take(sizeof slot.bytes);
  std::copy(bytes.begin(), bytes.end(), slot.bytes);
  RunDtd(slot);
}

void RunCeaBytes(const CeaCodec& codec, Input& input) {
  ByteVector bytes = test::Concat({{0}, codec.head, input.Take(31 - codec.head.size())});
  bytes[0] = static_cast<uint8_t>(unsigned{codec.tag} << 5 | (bytes.size() - 1));
  codec.run(DataBlock(bytes), codec.name);
}

void RunPicked(Input input) {
  const size_t pick = input.Byte() % (std::size(kCeaCodecs) + 1);
  if (pick == std::size(kCeaCodecs)) {
    RunDtdBytes(input);
  } else {
    RunCeaBytes(kCeaCodecs[pick], input);
  }
}

void RunAll(const uint8_t* data, size_t size) {
  const test::Owned<EdidHandle> handle(EDID_Open(data, static_cast<uint32_t>(size)));
  if (handle == nullptr) return;
  VisitBlocks(*handle, Overloaded{
                           [](const VesaBlock& model) {
                             for (const DtdSlot& slot : model.descriptors) RunDtd(slot);
                           },
                           [](const CeaBlock& model) {
                             for (unsigned i = 0; i < model.dataBlockCount; ++i) {
                               for (const CeaCodec& codec : kCeaCodecs) codec.run(model.dataBlocks[i], codec.name);
                             }
                             for (unsigned i = 0; i < model.dtdCount; ++i) RunDtd(model.dtds[i]);
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
