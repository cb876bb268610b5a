/* Writes the EDID of an HDMI display from nothing: 1920x1080 at 60 Hz, two-channel audio: write_edid OUT */
#include <string.h>

#include "file.h"

static const DtdTiming kFullHd = {.pixelClock = 148500,
                                  .hactive = 1920,
                                  .hblank = 280,
                                  .hfrontPorch = 88,
                                  .hsyncWidth = 44,
                                  .vactive = 1080,
                                  .vblank = 45,
                                  .vfrontPorch = 4,
                                  .vsyncWidth = 5,
                                  .hsyncPositive = 1,
                                  .vsyncPositive = 1,
                                  .frameRate = 60,
                                  .hImageSize = 600,
                                  .vImageSize = 340};

/* EDID 1.4, 3.4 to 3.10. Zero everywhere else is what a display says that has nothing to add. */
static int32_t MakeBase(EdidBlock* block) {
  static const uint8_t header[8] = {0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0};
  VesaBlock base = {.manufacturer = "RED", .productCode = 1, .week = 1, .year = 2026, .version = 1, .revision = 4};
  memcpy(base.header, header, sizeof header);
  base.digitalInput = 1;
  base.bitDepth = 8;
  base.interfaceType = 2; /* HDMI-a */
  base.hScreenSize = 60;
  base.vScreenSize = 34;
  base.gammaX100 = 220;
  base.sRgbDefault = 1;
  base.preferredNative = 1;
  base.redX = 655, base.redY = 338; /* the primaries of sRGB in units of 1/1024 */
  base.greenX = 307, base.greenY = 614;
  base.blueX = 154, base.blueY = 61;
  base.whiteX = 320, base.whiteY = 337;
  base.established[5] = 1; /* 640x480 at 60 Hz, which every display takes */
  if (VESA_SetDTD(&kFullHd, &base.descriptors[0]) != 0) return -1;
  if (VESA_SetProductName("Example", &base.descriptors[1]) != 0) return -1;
  base.descriptors[2].flag = base.descriptors[2].bytes[3] = 0x10; /* dummy descriptors (EDID 1.4, 3.10.3.11) */
  base.descriptors[3] = base.descriptors[2];
  return VESA_GenerateBlock(&base, block);
}

static int32_t AddDataBlocks(CeaBlock* cta) {
  const VdbRecord video = {.nativeVic = 16, .vicCount = 3, .vics = {16, 4, 1}};
  const AdbRecord audio = {1, {{.formatCode = 1, .channels = 2, .rate48k = 1, .bits16 = 1}}};
  const SpeakerRecord speakers = {.FL_FR = 1};
  const H14bRecord hdmi = {.physAddr = 0x1000, .max_TMDS_Clock = 165};
  uint8_t bytes[32];
  CeaDataBlock entry = {0, 0, 0, bytes};
  if (CEA_SetVDB(&video, &entry) != 0 || CEA_AddDataBlock(cta, &entry, 0) != 0) return -1;
  if (CEA_SetADB(&audio, &entry) != 0 || CEA_AddDataBlock(cta, &entry, 1) != 0) return -1;
  if (CEA_SetSADB(&speakers, &entry) != 0 || CEA_AddDataBlock(cta, &entry, 2) != 0) return -1;
  return CEA_SetH14bVSDB(&hdmi, &entry) == 0 ? CEA_AddDataBlock(cta, &entry, 3) : -1;
}

/* A CTA-861 extension begins empty: tag 2, revision 3, detailed timings at byte 4, which leaves all its room free. */
static int32_t MakeCta(EdidBlock* block) {
  memcpy(block->bytes, "\2\3\4", 3);
  block->bytes[127] = (uint8_t)GetChecksum(block->bytes, 128);
  CeaBlock* cta = CEA_Open(block);
  if (cta == NULL) return -1;
  cta->basicAudio = 1;
  const int32_t result = AddDataBlocks(cta) == 0 ? CEA_GenerateBlock(cta, block) : -1;
  CEA_Close(cta);
  return result;
}

int main(int argc, char** argv) {
  if (argc != 2) return fprintf(stderr, "usage: %s OUT\n", argv[0]), 2;
  uint8_t bytes[2][128] = {{0}};
  EdidBlock base = {EDID_BLOCK_VESA, 128, 128, bytes[0]};
  EdidBlock cta = {EDID_BLOCK_CEA, 128, 128, bytes[1]};
  if (MakeBase(&base) != 0 || MakeCta(&cta) != 0) return 1;

  EdidHandle* edid = EDID_Open(base.bytes, base.size);
  if (edid == NULL) return 1;
  const int status = EDID_AddBlock(edid, &cta, 1) == 0 ? WriteFile(edid, argv[1]) : 1; /* counts the extension */
  EDID_Close(edid);
  return status;
}
