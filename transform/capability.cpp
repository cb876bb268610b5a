// Audio formats of a sink, and capabilities cut down: to two-channel L-PCM, to 40 Gbit/s, to SDR.

#include <algorithm>

#include "base/log.h"
#include "base/pinned.h"
#include "cea/codec.h"
#include "inventory/walk.h"
#include "reedid/transforms.h"
#include "transform/edit.h"
#include "transform/hdmi_identity.h"
#include "transform/stereo.h"

namespace reedid {
namespace {

PIN_FIELDS(AudioFmtCap, 0, 1, lpcm, dts, dtsHd, dtsHdExt1, dtsHdExt2, dtsHdExt3, ac3, eac3, eac3Ext, mat, matExt);
PIN_SIZE(AudioFmtCap, 11);

enum SadFormat : uint8_t { kLpcm = 1, kAc3 = 2, kDts = 7, kEac3 = 10, kDtsHd = 11, kMat = 12 };

constexpr uint8_t kFrl40G = 5;

// Flags are only ever set: the result is the union of all descriptors.
void AddFormat(const SadRecord& sad, AudioFmtCap& cap) {
  const unsigned detail = sad.formatDependent;
  switch (sad.formatCode) {
    case kLpcm:
      cap.lpcm = 1;
      break;
    case kAc3:
      cap.ac3 = 1;
      break;
    case kDts:
      cap.dts = 1;
      break;
    case kEac3:
      cap.eac3 = 1;
      if (detail != 0) cap.eac3Ext = 1;
      break;
    case kDtsHd:  // each extension includes those below it
      cap.dtsHd = 1;
      if (detail & 7) cap.dtsHdExt1 = 1;
      if (detail & 6) cap.dtsHdExt2 = 1;
      if (detail & 4) cap.dtsHdExt3 = 1;
      break;
    case kMat:
      cap.mat = 1;
      if (detail & 1) cap.matExt = 1;
      break;
    default:
      break;
  }
}

// The first audio data block of an extension; false when there is none that can be read.
bool ReadAudio(const CeaBlock& model, AdbRecord& record) {
  const CeaDataBlock* entry = CEA_FindDataBlock(&model, CEA_TAG_AUDIO, 0);
  return entry != nullptr && CEA_GetADB(entry, &record) == 0;
}

// The record that replaces an audio block. It lives as long as the edit of the whole image: a later block without
// L-PCM gets what an earlier one's descriptor said (odd on purpose: docs/oddities.md).
class TwoChannelAudio {
 public:
  void Apply(MemoryWatch& memory, CeaBlock& model, CeaDataBlock& entry) {
    SadRecord& sad = record_.sads[0];
    SetStereo(record_);
    AdbRecord old;
    if (CEA_GetADB(&entry, &old) == 0) {
      const auto end = old.sads + old.sadCount;
      const auto pcm = std::find_if(old.sads, end, [](const SadRecord& s) { return s.formatCode == kLpcm; });
      if (pcm != end) sad = *pcm;
    }
    sad.channels = 2;
    Rewrite(memory, model, entry, CEA_SetADB, &record_);
  }

 private:
  AdbRecord record_ = {};
};

void LimitAudio(EdidBlock& block, MemoryWatch& memory, TwoChannelAudio& audio) {
  const Opened<CeaBlock> model = Open<CeaBlock>(block, memory);
  if (model == nullptr || !memory.sufficed()) return;
  if (CeaDataBlock* entry = CEA_FindDataBlock(model.get(), CEA_TAG_AUDIO, 0)) {
    audio.Apply(memory, *model, *entry);
    if (memory.sufficed()) Regenerate(*model, block);
  }
  if (CeaDataBlock* entry = CEA_FindDataBlock(model.get(), CEA_TAG_SPEAKERS, 0)) {
    Rewrite(memory, *model, *entry, CEA_SetSADB, &kFrontSpeakers);
    if (memory.sufficed()) Regenerate(*model, block);
  }
}

void LimitFrl(MemoryWatch& memory, CeaBlock& model) {
  for (unsigned i = 0; i < model.dataBlockCount; ++i) {
    CeaDataBlock& entry = model.dataBlocks[i];
    HfVsdbRecord record;
    if (entry.bytes == nullptr || entry.tag != CEA_TAG_VENDOR || CEA_GetVSDBType(&entry) != VSDB_HDMI_FORUM ||
        CEA_GetHFVSDB(&entry, &record) != 0) {
      continue;
    }
    record.Max_FRL_Rate = std::min(record.Max_FRL_Rate, kFrl40G);
    record.DSC_Max_FRL_Rate = std::min(record.DSC_Max_FRL_Rate, kFrl40G);
    Rewrite(memory, model, entry, CEA_SetHFVSDB, &record);
  }
}

// HDR metadata of any kind, and the vendor video block that announces Dolby Vision; others' video blocks stay.
bool IsHdr(const CeaDataBlock& entry) {
  if (entry.tag != CEA_TAG_EXTENDED) return false;
  return entry.extTag == CEA_EXT_TAG_STATIC_HDR || entry.extTag == CEA_EXT_TAG_DYNAMIC_HDR ||
         (entry.extTag == CEA_EXT_TAG_VENDOR_VIDEO && CEA_GetVSVDBType(&entry) == 1);
}

}  // namespace
}  // namespace reedid

using namespace reedid;

int32_t EDID_GetAudioFmtCap(const EdidHandle* handle, AudioFmtCap* cap) {
  if (!HasBlockArray(handle) || cap == nullptr) return REEDID_ERR("invalid parameters");
  *cap = {};
  // Blocks and audio descriptors are counted with one counter, which only moves forward: docs/oddities.md.
  for (unsigned i = 0; i < handle->blockCount;) {
    unsigned next = i + 1;
    if (handle->blocks[i].type == EDID_BLOCK_CEA) {
      const Opened<CeaBlock> model = Open<CeaBlock>(handle->blocks[i]);
      AdbRecord record;
      if (model != nullptr && ReadAudio(*model, record)) {
        for (unsigned k = 0; k < record.sadCount; ++k) AddFormat(record.sads[k], *cap);
        next = std::max(next, record.sadCount + 1u);
      }
    }
    i = next;
  }
  return 0;
}

void EDID_LimitToPCM2CH(EdidHandle* handle) {
  if (!HasBlockArray(handle)) {
    REEDID_ERR("invalid parameters");
    return;
  }
  MemoryWatch asking;
  if (IsDvi(*handle, asking) || !asking.sufficed()) return;
  EditWhole(*handle, [&](MemoryWatch& memory) {
    TwoChannelAudio audio;
    for (unsigned i = 0; i < handle->blockCount && memory.sufficed(); ++i) {
      if (handle->blocks[i].type == EDID_BLOCK_CEA) LimitAudio(handle->blocks[i], memory, audio);
    }
  });
}

void EDID_LimitToFrl40G(EdidHandle* handle) {
  if (!HasBlockArray(handle)) {
    REEDID_ERR("invalid parameters");
    return;
  }
  EditWhole(*handle, [&](MemoryWatch& memory) {
    EditBlocks(*handle, memory, [&](CeaBlock& model) { LimitFrl(memory, model); });
  });
}

void EDID_LimitToSDR(EdidHandle* handle) {
  if (!HasBlockArray(handle)) {
    REEDID_ERR("invalid parameters");
    return;
  }
  EditWhole(*handle, [&](MemoryWatch& memory) {
    EditBlocks(*handle, memory,
               [](CeaBlock& model) { KeepDataBlocks(model, [](const CeaDataBlock& entry) { return !IsHdr(entry); }); });
  });
}
