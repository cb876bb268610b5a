/*
 * Lists every timing of an EDID: established and standard timings, CVT codes and formulas, identifiers in every block
 * that holds some, and detailed timings: list_timings IN
 */
#include <stdlib.h>

#include "file.h"

/* Width and height of the aspect codes below ASPECT_UNKNOWN. */
static const unsigned kAspect[8][2] = {{1, 1}, {5, 4}, {4, 3}, {5, 3}, {16, 9}, {16, 10}, {64, 27}, {256, 135}};

static void Print(const char* source, const DtdTiming* t, unsigned rate) {
  printf("%-12s %4ux%u%s %3u Hz", source, t->hactive, t->vactive, t->interlaced ? "i" : "", rate);
  if (t->pixelClock != 0) printf(" %7u kHz", (unsigned)t->pixelClock);
  puts("");
}

/* Detailed timings of DisplayID blocks come without their rate. */
static void PrintDetailed(const char* source, const DtdTiming* t) {
  const uint64_t total = (uint64_t)(t->hactive + t->hblank) * (unsigned)(t->vactive + t->vblank);
  const unsigned rate = total == 0 ? 0 : (unsigned)((t->pixelClock * UINT64_C(1000) + total / 2) / total);
  Print(source, t, t->frameRate != 0 ? t->frameRate : rate);
}

/* A timing that no table has: the size and the rate are all that is known. */
static void PrintSize(const char* source, unsigned width, unsigned height, unsigned rate) {
  DtdTiming t = {0};
  t.hactive = (uint16_t)width;
  t.vactive = (uint16_t)height;
  Print(source, &t, rate);
}

enum { kDmt, kVic, kHdmiVic }; /* what a timing code is, as data blocks of codes number it */

static void PrintCode(unsigned kind, unsigned code) {
  static const unsigned kVicOfHdmiVic[5] = {0, 95, 94, 93, 98}; /* HDMI 1.4b, table 8-13 */
  static const char* const kNames[3] = {"DMT", "VIC", "HDMI VIC"};
  if (kind > kHdmiVic || (kind == kHdmiVic && code > 4)) return;
  char source[16];
  DtdTiming t;
  snprintf(source, sizeof source, "%s %u", kNames[kind], kind == kVic && code > 128 ? code + 64 : code);
  const unsigned index = kind == kHdmiVic ? kVicOfHdmiVic[code] : code;
  if ((kind == kDmt ? DmtToDtd(index, &t) : VicToDtd(index, &t)) == 0) Print(source, &t, t.frameRate);
}

static void PrintFormula(const CvtTiming* request) {
  DtdTiming t;
  unsigned lines = request->vactive;
  if (Cvt2ToDtd(request, &t) == 0) {
    Print("formula", &t, request->frameRate);
  } else { /* it has said why */
    if (lines == 0 && request->aspectRatio < ASPECT_UNKNOWN) {
      lines = request->hactive * kAspect[request->aspectRatio][1] / kAspect[request->aspectRatio][0];
    }
    PrintSize("formula", request->hactive, lines, request->frameRate);
  }
}

static void PrintStandard(const StdTiming* standard, unsigned count) {
  for (const StdTiming* s = standard; s != standard + count; ++s) {
    DtdTiming t;
    if (!s->valid) continue;
    if (StdToDtd(s, &t) == 0) {
      Print("standard", &t, t.frameRate);
    } else {
      PrintSize("standard", s->hactive, s->hactive * kAspect[s->aspectRatio][1] / kAspect[s->aspectRatio][0],
                s->frameRate);
    }
  }
}

static void PrintCvtCode(const VesaCvtCode* code) {
  const unsigned rates[5] = {50, 60, 75, 85, 60};
  const uint8_t offered[5] = {code->rate50, code->rate60, code->rate75, code->rate85, code->rate60rb};
  if (code->lines == 0) return;
  for (unsigned i = 0; i < 5; ++i) {
    CvtTiming request = {0};
    request.formula = i == 4;
    request.aspectRatio = code->aspectRatio;
    request.hactive = (uint16_t)(code->lines * kAspect[code->aspectRatio][0] / kAspect[code->aspectRatio][1] / 8 * 8);
    request.vactive = code->lines;
    request.frameRate = (uint16_t)rates[i];
    if (offered[i]) PrintFormula(&request);
  }
}

static void ListDescriptor(const DtdSlot* slot) {
  StdTiming standard[6];
  VesaCvtRecord cvt;
  Est3Record est3;
  if (slot->flag == 0xFA && VESA_GetStandardTimings(slot, standard) == 0) PrintStandard(standard, 6);
  if (slot->flag == 0xF8 && VESA_GetCvtTiming(slot, &cvt) == 0) {
    for (unsigned i = 0; i < 4; ++i) PrintCvtCode(&cvt.codes[i]);
  }
  if (slot->flag == 0xF7 && VESA_GetEst3Timing(slot, &est3) == 0) {
    for (unsigned i = 0; i < 48; ++i) {
      DtdTiming t;
      if (est3.flags[i] && DmtToDtd(Est3ToDmt(128 + i), &t) == 0) Print("established", &t, t.frameRate);
    }
  }
}

static void ListBase(const VesaBlock* base) {
  /* Older than the DMT table: width, height and rate by index. */
  static const unsigned kOld[17][3] = {[4] = {640, 480, 67},   [6] = {720, 400, 88},  [7] = {720, 400, 70},
                                       [12] = {1024, 768, 87}, [13] = {832, 624, 75}, [16] = {1152, 870, 75}};
  for (unsigned i = 0; i < 17; ++i) {
    DtdTiming t;
    if (!base->established[i]) continue;
    if (DmtToDtd(Est12ToDmt(i), &t) == 0) {
      Print("established", &t, t.frameRate);
    } else {
      PrintSize("established", kOld[i][0], kOld[i][1], kOld[i][2]);
    }
  }
  PrintStandard(base->standardTimings, 8);
  for (unsigned i = 0; i < 4; ++i) ListDescriptor(&base->descriptors[i]);
}

static void PrintCodes(unsigned kind, const uint8_t* codes, unsigned count) {
  for (unsigned i = 0; i < count; ++i) PrintCode(kind, codes[i]);
}

static void PrintFormulas(const CvtTiming* formulas, unsigned count) {
  for (unsigned i = 0; i < count; ++i) PrintFormula(&formulas[i]);
}

static void ListCtaDataBlock(const CeaDataBlock* entry) {
  const unsigned kind = entry->tag == 7 ? 0x700u + entry->extTag : entry->tag;
  VdbRecord video;
  Vic420Record only420;
  H14bRecord hdmi;
  Cea20ByteDtdRecord typeVii;
  uint8_t bytes[32];
  TimingCodeRecord codes = {0, 0, 0, 0, bytes};
  CvtTiming formulas[4];
  if (kind == 2 && CEA_GetVDB(entry, &video) == 0) PrintCodes(kVic, video.vics, video.vicCount);
  if (kind == 0x70E && CEA_Get420VDB(entry, &only420) == 0) PrintCodes(kVic, only420.vics, only420.vicCount);
  if (kind == 3 && CEA_GetVSDBType(entry) == VSDB_HDMI14B && CEA_GetH14bVSDB(entry, &hdmi) == 0) {
    PrintCodes(kHdmiVic, hdmi.hdmiVics, hdmi.hdmiVicLen);
  }
  if (kind == 0x722 && CEA_Get20ByteDTD(entry, &typeVii) == 0) PrintDetailed("detailed", &typeVii.timing);
  if (kind == 0x723 && CEA_GetTimingCode(entry, &codes) == 0) PrintCodes(codes.codeType, bytes, codes.codeCount);
  if (kind == 0x72A && CEA_Get6ByteCVT(entry, formulas) == 0) {
    PrintFormulas(formulas, (entry->size - 3u) / (6u + (entry->bytes[2] >> 4 & 7u)));
  }
}

static void ListDisplayIdDataBlock(const DispIdDataBlock* entry) {
  const int32_t timings = DispID_GetTimingCnt(entry);
  const unsigned count = timings < 0 ? 0 : (unsigned)timings;
  CvtTiming formulas[256];
  uint8_t bytes[256] = {0};
  TimingCodeRecord codes = {0, 0, 0, 0, bytes};
  const unsigned tag = entry->tag;
  if (count == 0) return;
  if ((tag == 0x05 && DispID_Get3ByteCVT(entry, formulas, count) == 0) ||
      (tag == 0x11 && DispID_Get7ByteCVT(entry, formulas, count) == 0) ||
      (tag == 0x24 && DispID20_Get6ByteCVT(entry, formulas, count) == 0)) {
    PrintFormulas(formulas, count);
  }
  if ((tag == 0x06 && DispID_GetTimingCode(entry, &codes, count) == 0) ||
      (tag == 0x23 && DispID20_GetTimingCode(entry, &codes, count) == 0)) {
    PrintCodes(codes.codeType, bytes, codes.codeCount);
  }
  if ((tag == 0x07 && DispID_GetVESATiming(entry, bytes, count) == 0) ||
      (tag == 0x08 && DispID_GetCEATiming(entry, bytes, count) == 0)) {
    for (unsigned i = 1; i < count; ++i) {
      if (bytes[i]) PrintCode(tag == 0x07 ? kDmt : kVic, i);
    }
  }
}

static void ListBlock(const EdidBlock* block) {
  VesaBlock* base = block->type == EDID_BLOCK_VESA ? VESA_Open(block) : NULL;
  CeaBlock* cta = block->type == EDID_BLOCK_CEA ? CEA_Open(block) : NULL;
  DispIdBlock* section = block->type >= EDID_BLOCK_DISPID_FIRST ? DispID_Open(block) : NULL;
  if (base != NULL) ListBase(base);
  for (unsigned i = 0; cta != NULL && i < cta->dataBlockCount; ++i) ListCtaDataBlock(&cta->dataBlocks[i]);
  for (unsigned i = 0; section != NULL && i < section->dataBlockCount; ++i)
    ListDisplayIdDataBlock(&section->dataBlocks[i]);
  VESA_Close(base);
  CEA_Close(cta);
  DispID_Close(section);
}

static int ListDetailed(const EdidHandle* edid) {
  DtdTiming* timings = malloc(255 * sizeof *timings); /* no image has more */
  if (timings == NULL) return perror("malloc"), 1;
  const uint32_t count = EDID_FindOutAllDTD(edid, timings, 255);
  for (uint32_t i = 0; i < count; ++i) PrintDetailed(timings[i].preferred ? "preferred" : "detailed", &timings[i]);
  free(timings);
  return 0;
}

int main(int argc, char** argv) {
  if (argc != 2) return fprintf(stderr, "usage: %s IN\n", argv[0]), 2;
  EdidHandle* edid = OpenFile(argv[1]);
  if (edid == NULL) return 1;
  for (unsigned i = 0; i < edid->blockCount; ++i) ListBlock(&edid->blocks[i]);
  const int status = ListDetailed(edid);
  EDID_Close(edid);
  return status;
}
