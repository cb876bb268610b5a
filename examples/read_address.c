/* Prints the CEC physical address that an EDID gives to its reader: read_address IN */
#include "file.h"

int main(int argc, char** argv) {
  if (argc != 2) return fprintf(stderr, "usage: %s IN\n", argv[0]), 2;
  EdidHandle* edid = OpenFile(argv[1]);
  if (edid == NULL) return 1;
  const unsigned address = EDID_GetPhyAddr(edid);
  EDID_Close(edid);
  if (address == 0xFFFF) return fprintf(stderr, "%s: no physical address\n", argv[1]), 1;
  printf("%u.%u.%u.%u\n", address >> 12, address >> 8 & 15u, address >> 4 & 15u, address & 15u);
  return 0;
}
