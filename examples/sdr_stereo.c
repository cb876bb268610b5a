/* Takes HDR away and leaves two-channel L-PCM audio, for a chain that carries nothing better: sdr_stereo IN OUT */
#include "file.h"

int main(int argc, char** argv) {
  if (argc != 3) return fprintf(stderr, "usage: %s IN OUT\n", argv[0]), 2;
  EdidHandle* edid = OpenFile(argv[1]);
  if (edid == NULL) return 1;
  EDID_LimitToSDR(edid);
  EDID_LimitToPCM2CH(edid);
  const int status = WriteFile(edid, argv[2]);
  EDID_Close(edid);
  return status;
}
