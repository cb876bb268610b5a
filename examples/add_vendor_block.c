/*
 * Adds a vendor-specific data block to the first CTA-861 extension: add_vendor_block IN OUT OUI BYTE...
 * add_vendor_block in.bin out.bin 0x123456 1 2 3
 */
#include <stdlib.h>

#include "file.h"

/* CTA-861, 7.5.4: the header (tag 3, payload length), the OUI with its least significant byte first, the payload. */
static CeaDataBlock VendorBlock(unsigned long oui, int count, char** payload, uint8_t bytes[32]) {
  const CeaDataBlock block = {3, 0, (uint8_t)(4 + count), bytes};
  bytes[0] = (uint8_t)(3 << 5 | (3 + count));
  for (int i = 0; i < 3; ++i) bytes[1 + i] = (uint8_t)(oui >> 8 * i);
  for (int i = 0; i < count; ++i) bytes[4 + i] = (uint8_t)strtoul(payload[i], NULL, 0);
  return block;
}

/* Opens the extension, adds the block behind the others, writes the extension back. */
static int32_t AddTo(EdidBlock* extension, const CeaDataBlock* block) {
  CeaBlock* cta = CEA_Open(extension);
  if (cta == NULL) return -1;
  int32_t result = CEA_AddDataBlock(cta, block, cta->dataBlockCount);
  if (result == 0) result = CEA_GenerateBlock(cta, extension);
  CEA_Close(cta);
  return result;
}

int main(int argc, char** argv) {
  if (argc < 4 || argc - 4 > 28) return fprintf(stderr, "usage: %s IN OUT OUI BYTE...\n", argv[0]), 2;
  EdidHandle* edid = OpenFile(argv[1]);
  if (edid == NULL) return 1;
  uint8_t bytes[32];
  const CeaDataBlock block = VendorBlock(strtoul(argv[3], NULL, 0), argc - 4, argv + 4, bytes);

  int32_t result = -1;
  for (unsigned i = 0; i < edid->blockCount && result != 0; ++i) {
    if (edid->blocks[i].type == EDID_BLOCK_CEA) result = AddTo(&edid->blocks[i], &block);
  }
  if (result != 0) fprintf(stderr, "%s: no CTA-861 extension has room for the block\n", argv[1]);
  const int status = result == 0 ? WriteFile(edid, argv[2]) : 1;
  EDID_Close(edid);
  return status;
}
