/* Takes HDR away and leaves two-channel L-PCM audio, for a chain that carries nothing better: sdr_stereo IN OUT */
#include "file.h"

int main(int argc, char** argv) {
  if (argc != 3) return fprintf(stderr, "usage: %s IN OUT\n", argv[0]), 2;
  EdidHandle* edid = OpenFile(argv[1]);
  if (edid == NULL) return 1;
  const int done = EDID_StripHdr(edid) == 0 && EDID_LimitToStereo(edid) == 0;
  const int status = done ? WriteFile(edid, argv[2]) : 1;
  EDID_Close(edid);
  return status;
}
