/*
 * What an HDMI 2.0 repeater shows on an input port: the EDID of the display behind it, cut down to 600 MHz, with the
 * port's own physical address: limit_hdmi20 IN OUT ADDRESS, where 0x1200 is 1.2.0.0.
 */
#include <stdlib.h>

#include "file.h"

int main(int argc, char** argv) {
  if (argc != 4) return fprintf(stderr, "usage: %s IN OUT ADDRESS\n", argv[0]), 2;
  EdidHandle* edid = OpenFile(argv[1]);
  if (edid == NULL) return 1;

  /* The display's own rates: a timing that is too fast is slowed down to the first of them that fits. */
  uint16_t rates[255];
  const uint32_t count = EDID_GetAllFrameRate(edid, rates, 255);
  EDID_LimitToHDMI20(edid, rates, count);

  /* A DVI display has no address; an HDMI repeater in front of it gives the source one. */
  const uint16_t address = (uint16_t)strtoul(argv[3], NULL, 0);
  const int32_t addressed = isDVIEdid(edid) ? EDID_DVItoHDMI(edid, address) : EDID_SetPhyAddr(edid, address);
  const int status = addressed == 0 ? WriteFile(edid, argv[2]) : 1;
  EDID_Close(edid);
  return status;
}
