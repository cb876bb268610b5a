/*
 * What an HDMI 2.0 repeater shows on an input port: the EDID of the display behind it, cut down to 600 MHz, with the
 * port's own physical address: limit_hdmi20 IN OUT ADDRESS, where 0x1200 is 1.2.0.0.
 */
#include <stdlib.h>

#include "file.h"

/* A number of four hexadecimal digits that a port can have as its address; 0 is none. */
static uint16_t ReadAddress(const char* text) {
  char* end;
  const unsigned long value = strtoul(text, &end, 0);
  return end != text && *end == '\0' && value <= 0xFFFF && EDID_IsPortAddress((uint16_t)value) ? (uint16_t)value : 0;
}

int main(int argc, char** argv) {
  if (argc != 4) return fprintf(stderr, "usage: %s IN OUT ADDRESS\n", argv[0]), 2;
  const uint16_t address = ReadAddress(argv[3]);
  if (address == 0) return fprintf(stderr, "%s: no address of a port, such as 0x1200 for 1.2.0.0\n", argv[3]), 2;
  EdidHandle* edid = OpenFile(argv[1]);
  if (edid == NULL) return 1;

  /* What is too fast is slowed down to a rate of the display. A DVI display has no address; an HDMI repeater in front of
   * it gives the source one. */
  const int done = EDID_LimitToLink(edid, &EDID_LINK_HDMI20) == 0 &&
                   (EDID_PatchPhyAddr(edid, address) == 0 || EDID_MakeHdmi(edid, address) == 0);
  const int status = done ? WriteFile(edid, argv[2]) : 1;
  EDID_Close(edid);
  return status;
}
