/* Gives the EDID of the display behind this port a physical address: phys IN OUT ADDRESS (0x1200 is 1.2.0.0). */
#include <reedid/reedid.h>
#include <stdio.h>
#include <stdlib.h>

int main(int argc, char** argv) {
  static uint8_t in[32768], out[32768];
  if (argc != 4) return 2;
  FILE* file = fopen(argv[1], "rb");
  if (file == NULL) return perror(argv[1]), 1;
  EdidHandle* edid = EDID_Open(in, (uint32_t)fread(in, 1, sizeof in, file));
  fclose(file);
  if (edid == NULL) return 1;

  int32_t size = -1;
  if (EDID_SetPhyAddr(edid, (uint16_t)strtoul(argv[3], NULL, 0)) == 0) size = EDID_GenerateEdid(edid, out, sizeof out);
  EDID_Close(edid);
  if (size < 0) return 1;

  file = fopen(argv[2], "wb");
  if (file == NULL || fwrite(out, 1, (size_t)size, file) != (size_t)size || fclose(file) != 0) {
    return perror(argv[2]), 1;
  }
  return 0;
}
