/*
 * Lists the timings of an EDID: established and standard timings of the base block, video identification codes, and
 * detailed timings wherever they stand: list_timings IN
 */
#include <stdlib.h>

#include "file.h"

static void Print(const char* source, const DtdTiming* t) {
  printf("%-12s %4ux%u%s %3u Hz %7u kHz\n", source, t->hactive, t->vactive, t->interlaced ? "i" : "", t->frameRate,
         (unsigned)t->pixelClock);
}

static void ListBase(const EdidBlock* block) {
  VesaBlock* base = VESA_Open(block);
  if (base == NULL) return;
  DtdTiming timing;
  for (unsigned i = 0; i < 17; ++i) {
    if (base->established[i] && DmtToDtd(Est12ToDmt(i), &timing) == 0) Print("established", &timing);
  }
  for (unsigned i = 0; i < 8; ++i) {
    if (base->standardTimings[i].valid && StdToDtd(&base->standardTimings[i], &timing) == 0) Print("standard", &timing);
  }
  VESA_Close(base);
}

static void ListVics(const EdidBlock* block) {
  CeaBlock* cta = CEA_Open(block);
  if (cta == NULL) return;
  for (unsigned i = 0; i < cta->dataBlockCount; ++i) {
    VdbRecord video;
    DtdTiming timing;
    if (cta->dataBlocks[i].tag != 2 || CEA_GetVDB(&cta->dataBlocks[i], &video) != 0) continue;
    for (unsigned v = 0; v < video.vicCount; ++v) {
      char source[16];
      snprintf(source, sizeof source, "VIC %u", video.vics[v] > 127 ? video.vics[v] + 64u : video.vics[v]);
      if (VicToDtd(video.vics[v], &timing) == 0) Print(source, &timing);
    }
  }
  CEA_Close(cta);
}

static int ListDetailed(const EdidHandle* edid) {
  DtdTiming* timings = malloc((EDID_GetDTDCnt(edid) + 1) * sizeof *timings);
  if (timings == NULL) return perror("malloc"), 1;
  const uint32_t count = EDID_FindOutAllDTD(edid, timings, EDID_GetDTDCnt(edid));
  for (uint32_t i = 0; i < count; ++i) Print(timings[i].preferred ? "preferred" : "detailed", &timings[i]);
  free(timings);
  return 0;
}

int main(int argc, char** argv) {
  if (argc != 2) return fprintf(stderr, "usage: %s IN\n", argv[0]), 2;
  EdidHandle* edid = OpenFile(argv[1]);
  if (edid == NULL) return 1;
  for (unsigned i = 0; i < edid->blockCount; ++i) {
    if (edid->blocks[i].type == EDID_BLOCK_VESA) ListBase(&edid->blocks[i]);
    if (edid->blocks[i].type == EDID_BLOCK_CEA) ListVics(&edid->blocks[i]);
  }
  const int status = ListDetailed(edid);
  EDID_Close(edid);
  return status;
}
