// A sequence of edits chosen by the input. An EDID is followed by its edits (the bytes behind its last whole block), or
// edited by its own last bytes when nothing follows; a DisplayID structure is edited by the last quarter of the input.
#include "fuzz/fuzz.h"
#include "inventory/walk.h"
#include "reedid/reedid.h"
#include "tests/support/data_block.h"
#include "tests/support/handle.h"
#include "tests/support/operations.h"

namespace reedid::fuzz {
namespace {

constexpr size_t kBlockSize = 128;
constexpr size_t kOwnEdits = 48;
constexpr unsigned kMaxEdits = 64;

// An entry chosen by the input; null when there is none.
template <class T>
T* Pick(T* items, unsigned count, Input& input) {
  return items == nullptr || count == 0 ? nullptr : &items[input.Byte() % count];
}

EdidBlock* PickBlock(EdidHandle& handle, Input& input) {
  return Pick(handle.blocks, handle.blockCount, input);
}

void AddOwnBlock(EdidHandle& handle, Input& input) {
  const EdidBlock* block = PickBlock(handle, input);
  if (block != nullptr) EDID_AddBlock(&handle, block, input.Byte());
}

void AddNewBlock(EdidHandle& handle, Input& input) {
  const auto type = static_cast<uint8_t>(input.Byte() % 8);
  const bool section = type == EDID_BLOCK_DISPID_FIRST || type == EDID_BLOCK_DISPID_NEXT;
  ByteVector content = input.Take(section ? size_t{5} + input.Byte() % 64 : kBlockSize);
  content.resize(section ? std::max<size_t>(content.size(), 5) : kBlockSize);
  const test::Block block(type, content, section ? 256 : kBlockSize);
  EDID_AddBlock(&handle, &block, input.Byte());
}

void DeleteBlock(EdidHandle& handle, Input& input) {
  if (const EdidBlock* block = PickBlock(handle, input)) EDID_DeleteBlock(&handle, block);
}

// Opens a block chosen by the input as a model of this family, edits it and writes it back.
template <class Model, void (*Edit)(Model&, Input&)>
void EditModel(EdidHandle& handle, Input& input) {
  EdidBlock* block = PickBlock(handle, input);
  if (block == nullptr) return;
  const Opened<Model> model = Open<Model>(*block);
  if (model == nullptr) return;
  do Edit(*model, input);
  while (input.Byte() % 2 == 1);
  Regenerate(*model, *block);
}

test::DataBlock NewDataBlock(Input& input) {
  const uint8_t header = input.Byte();
  ByteVector bytes = test::Concat({{header}, input.Take(header & 0x1F)});
  bytes[0] = static_cast<uint8_t>((header & 0xE0) | (bytes.size() - 1));
  return test::DataBlock(bytes);
}

DtdSlot NewSlot(Input& input) {
  DtdSlot slot = {input.Byte(), {}};
  const ByteVector bytes = input.Take(sizeof slot.bytes);
  std::copy(bytes.begin(), bytes.end(), slot.bytes);
  return slot;
}

void EditCta(CeaBlock& model, Input& input) {
  switch (input.Byte() % 6) {
    case 0: {
      const test::DataBlock block = NewDataBlock(input);
      CEA_AddDataBlock(&model, &block, input.Byte());
      break;
    }
    case 1:
      CEA_DeleteDataBlock(&model, Pick(model.dataBlocks, model.dataBlockCount, input));
      break;
    case 2: {
      const test::DataBlock block = NewDataBlock(input);
      CEA_ReplaceDataBlock(&model, Pick(model.dataBlocks, model.dataBlockCount, input), &block);
      break;
    }
    case 3: {
      CeaDataBlock* const from = Pick(model.dataBlocks, model.dataBlockCount, input);
      CEA_ReplaceDataBlock(&model, Pick(model.dataBlocks, model.dataBlockCount, input), from);
      break;
    }
    case 4: {
      const DtdSlot slot = NewSlot(input);
      CEA_AddDTD(&model, &slot, input.Byte());
      break;
    }
    case 5:
      CEA_DeleteDTD(&model, Pick(model.dtds, model.dtdCount, input));
      break;
  }
}

void EditSection(DispIdBlock& model, Input& input) {
  DispIdDataBlock* const entry = Pick(model.dataBlocks, model.dataBlockCount, input);
  const uint8_t what = input.Byte();
  ByteVector content = input.Take(size_t{3} + input.Byte() % 64);
  content.resize(std::max<size_t>(content.size(), 3));
  content[2] = static_cast<uint8_t>(content.size() - 3);
  const ExactBytes bytes(content);
  const DispIdDataBlock fresh = {content[0], static_cast<uint8_t>(content[1] & 7),
                                 static_cast<uint8_t>(content[1] >> 3), static_cast<uint8_t>(content.size()),
                                 bytes.data()};
  switch (what % 3) {
    case 0:
      DispID_AddDB(&model, &fresh, input.Byte());
      break;
    case 1:
      DispID_DeleteDB(&model, entry);
      break;
    case 2:
      DispID_ReplaceDB(&model, entry, &fresh);
      break;
  }
}

void EditBase(VesaBlock& model, Input& input) {
  switch (input.Byte() % 3) {
    case 0:
      VESA_DeleteDescriptor(&model, input.Byte() % 5);
      break;
    case 1:
      model.descriptors[input.Byte() % 4] = NewSlot(input);
      break;
    case 2:
      model.standardTimings[input.Byte() % 8] = {input.Byte(), input.Byte(), input.Word(), input.Byte()};
      break;
  }
}

void RunOperation(EdidHandle& handle, Input& input) {
  const auto operations = test::Operations();
  operations[input.Byte() % operations.size()].run(handle);
}

constexpr void (*kEdits[])(EdidHandle&, Input&) = {
    RunOperation,
    RunOperation,
    AddOwnBlock,
    AddNewBlock,
    DeleteBlock,
    EditModel<VesaBlock, EditBase>,
    EditModel<CeaBlock, EditCta>,
    EditModel<DispIdBlock, EditSection>,
};

// Written whole into a buffer that just holds it, refused one byte below; then opened again.
void CheckWritten(EdidHandle& handle) {
  uint32_t total = 0;
  for (unsigned i = 0; i < handle.blockCount; ++i) total += handle.blocks[i].size;
  if (total == 0) return;
  const ExactBytes tight(ByteVector(total - 1));
  Check(EDID_GenerateEdid(&handle, tight.data(), tight.size()) == -1, "too small a buffer is refused", "edits");
  const ExactBytes out(ByteVector{ByteVector(total)});
  Check(EDID_GenerateEdid(&handle, out.data(), out.size()) == static_cast<int32_t>(total), "all is written", "edits");
  const Image again(EDID_Open(out.data(), out.size()));
}

void Run(const uint8_t* data, size_t size) {
  const bool edid = size >= kBlockSize && isEdidHeader(data) != 0;
  const size_t length = edid ? size - size % kBlockSize : size - size / 4;
  const size_t edits = length < size ? length : size - std::min(size, kOwnEdits);
  const ExactBytes image(ByteVector(data, data + length));
  const Image handle(EDID_Open(image.data(), image.size()));
  if (!handle) return;
  Input input(data + edits, size - edits);
  for (unsigned i = 0; i < kMaxEdits && !input.Empty(); ++i) kEdits[input.Byte() % std::size(kEdits)](*handle, input);
  CheckWritten(*handle);
}

}  // namespace
}  // namespace reedid::fuzz

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  reedid::fuzz::Run(data, size);
  return 0;
}
