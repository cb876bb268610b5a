#include <gtest/gtest.h>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/record_text.h"

namespace reedid::test {
namespace {

const ByteVector kPcm8 = {0x0F, 0x7F, 0x07};     // L-PCM, 8 channels, all rates and depths
const ByteVector kAc3 = {0x15, 0x07, 0x50};      // AC-3, 6 channels
const ByteVector kEac3Joc = {0x57, 0x06, 0x03};  // E-AC-3 with a format-dependent byte
const ByteVector kDtsHd2 = {0x5F, 0x7E, 0x02};   // DTS-HD with extension 2

Edid WithAudio(std::initializer_list<ByteVector> blocks) {
  Edid edid;
  for (const ByteVector& sads : blocks) edid.Extension(Cta().Block(1, sads));
  return edid;
}

TEST(Audio, FormatsAreSummedUp) {
  const std::pair<Edid, const char*> rows[] = {
      {WithAudio({Concat({kPcm8, kAc3})}), "ac3 lpcm"},
      {WithAudio({Concat({kEac3Joc, kDtsHd2})}), "dtsHd dtsHdExt1 dtsHdExt2 eac3 eac3Ext"},
      {WithAudio({{0x5F, 0x7E, 0x04}}), "dtsHd dtsHdExt1 dtsHdExt2 dtsHdExt3"},
      {WithAudio({{0x5F, 0x7E, 0x01, 0x3D, 0x06, 0xC0}}), "dts dtsHd dtsHdExt1"},
      {WithAudio({{0x67, 0x54, 0x00, 0x67, 0x54, 0x01}}), "mat matExt"},
      {WithAudio({{0x57, 0x06, 0x00}}), "eac3"},
      {WithAudio({{0x67, 0x54, 0x02, 0x5F, 0x7E, 0x08}}), "dtsHd mat"},
      {WithAudio({}), ""},
      // Blocks and descriptors share a counter: two descriptors in block 1 lead to block 3, one leads on to block 2.
      {WithAudio({Concat({kPcm8, kAc3}), kDtsHd2, kEac3Joc}), "ac3 eac3 eac3Ext lpcm"},
      {WithAudio({kPcm8, kDtsHd2}), "dtsHd dtsHdExt1 dtsHdExt2 lpcm"},
  };
  for (const auto& [edid, formats] : rows) {
    AudioFmtCap cap = {9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9};
    ASSERT_EQ(EDID_GetAudioFmtCap(Image(edid.Build()).get(), &cap), 0);
    EXPECT_EQ(ToText(cap), formats);
  }
}

TEST(Capability, IsLimited) {
  const Cta dvi = Cta().Block(1, kAc3), pcm = Cta().Block(1, {0x09, 0x7F, 0x07});
  const Cta hdr = Cta().Vdb({16}).Extended(6, {5, 1}).Extended(7, {3, 1, 0, 0}).Extended(1, {0x46, 0xD0, 0x00, 0x48});
  const auto forum = [](uint8_t frl, uint8_t dscFrl) {
    return Cta().HdmiForum({1, 120, 0x80, frl, 0, 0, 100, 0x80, dscFrl, 0x0F});
  };
  const struct {
    const char* name;
    void (*limit)(EdidHandle*);
    Edid before, after;
  } rows[] = {
      {"L-PCM keeps its rates and depths", EDID_LimitToPCM2CH,
       Edid().Extension(Cta().Block(1, Concat({kAc3, kPcm8})).Block(4, {0x4F, 0, 0}).Hdmi(0x1000)),
       Edid().Extension(Cta().Block(1, {0x09, 0x7F, 0x07}).Block(4, {1, 0, 0}).Hdmi(0x1000))},
      {"compressed audio becomes plain", EDID_LimitToPCM2CH,
       Edid().Extension(Cta().Block(1, Concat({kAc3, kEac3Joc})).Block(4, {0x4F, 0, 0}).Hdmi(0x1000)),
       Edid().Extension(Cta().Block(1, {0x09, 0x04, 0x01}).Block(4, {1, 0, 0}).Hdmi(0x1000))},
      {"a DVI image has no audio to limit", EDID_LimitToPCM2CH, Edid().Extension(dvi), Edid().Extension(dvi)},
      {"what one block gave stays for a later one", EDID_LimitToPCM2CH,
       Edid().Extension(Cta().Block(1, kPcm8).Hdmi(0x1000)).Extension(dvi),
       Edid().Extension(Cta(pcm).Hdmi(0x1000)).Extension(pcm)},
      {"FRL above 40G", EDID_LimitToFrl40G, Edid().Extension(forum(0x60, 0x62)), Edid().Extension(forum(0x50, 0x52))},
      {"FRL below", EDID_LimitToFrl40G, Edid().Extension(forum(0x30, 0x42)), Edid().Extension(forum(0x30, 0x42))},
      {"HDR goes, other vendors' blocks stay", EDID_LimitToSDR,
       Edid().Extension(Cta(hdr).Extended(1, {0x8B, 0x84, 0x90, 0x01}).Extended(6, {1, 1}).Extended(5, {0xC0, 0})),
       Edid().Extension(Cta().Vdb({16}).Extended(1, {0x8B, 0x84, 0x90, 0x01}).Extended(5, {0xC0, 0}))},
  };
  for (const auto& row : rows) {
    const Image handle(row.before.Build());
    row.limit(handle.get());
    EXPECT_EQ(HexOf(Generate(handle.get())), HexOf(row.after.Build())) << row.name;
  }
}

}  // namespace
}  // namespace reedid::test
