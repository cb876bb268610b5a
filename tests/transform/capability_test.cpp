#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/edid_builder.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

const ByteVector kPcm8 = {0x0F, 0x7F, 0x07};     // L-PCM, 8 channels, all rates and depths
const ByteVector kAc3 = {0x15, 0x07, 0x50};      // AC-3, 6 channels
const ByteVector kEac3Joc = {0x57, 0x06, 0x03};  // E-AC-3 with a format-dependent byte
const ByteVector kDtsHd2 = {0x5F, 0x7E, 0x02};   // DTS-HD with extension 2

Owned<CeaBlock> OpenCta(EdidHandle* handle, unsigned block = 1) {
  return Owned<CeaBlock>(CEA_Open(&handle->blocks[block]));
}

ByteVector TagsOf(const CeaBlock& model) {
  ByteVector tags;
  for (unsigned i = 0; i < model.dataBlockCount; ++i) {
    tags.push_back(model.dataBlocks[i].tag);
    if (tags.back() == 7) tags.push_back(model.dataBlocks[i].extTag);
  }
  return tags;
}

TEST(Audio, FormatsAreSummedUp) {
  struct Case {
    const char* name;
    ByteVector sads;
    AudioFmtCap cap;
  };
  const Case cases[] = {
      {"L-PCM and AC-3", Concat({kPcm8, kAc3}), {1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0}},
      {"E-AC-3 and DTS-HD with extensions", Concat({kEac3Joc, kDtsHd2}), {0, 0, 1, 1, 1, 0, 0, 1, 1, 0, 0}},
      {"DTS-HD, highest extension", {0x5F, 0x7E, 0x04}, {0, 0, 1, 1, 1, 1, 0, 0, 0, 0, 0}},
      {"DTS-HD, lowest extension; DTS", {0x5F, 0x7E, 0x01, 0x3D, 0x06, 0xC0}, {0, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0}},
      {"MAT with and without its extension", {0x67, 0x54, 0x00, 0x67, 0x54, 0x01}, {0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1}},
      {"E-AC-3 plain", {0x57, 0x06, 0x00}, {0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    AudioFmtCap cap = {9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9};
    const Owned<EdidHandle> handle = OpenImage(Edid().Extension(Cta().Block(1, c.sads)).Build());
    ASSERT_EQ(EDID_GetAudioFmtCap(handle.get(), &cap), 0);
    EXPECT_EQ(std::memcmp(&cap, &c.cap, sizeof cap), 0);
  }
}

TEST(Audio, BlocksAndDescriptorsShareACounter) {
  // Two descriptors in block 1 lead to block 3; one leads on to block 2.
  const auto image = [](const ByteVector& first) {
    return Edid()
        .Extension(Cta().Block(1, first))
        .Extension(Cta().Block(1, kDtsHd2))
        .Extension(Cta().Block(1, kEac3Joc))
        .Build();
  };
  AudioFmtCap cap;
  ASSERT_EQ(EDID_GetAudioFmtCap(OpenImage(image(Concat({kPcm8, kAc3}))).get(), &cap), 0);
  EXPECT_EQ(cap.dtsHd, 0);
  EXPECT_EQ(cap.eac3, 1);
  ASSERT_EQ(EDID_GetAudioFmtCap(OpenImage(image(kPcm8)).get(), &cap), 0);
  EXPECT_EQ(cap.dtsHd, 1);
}

TEST(Audio, LimitedToTwoChannels) {
  struct Case {
    const char* name;
    ByteVector sads;
    ByteVector left;
  };
  const Case cases[] = {
      {"L-PCM keeps its rates and depths", Concat({kAc3, kPcm8}), {0x09, 0x7F, 0x07}},
      {"compressed only", Concat({kAc3, kEac3Joc}), {0x09, 0x04, 0x01}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Owned<EdidHandle> handle =
        OpenImage(Edid().Extension(Cta().Block(1, c.sads).Block(4, {0x4F, 0, 0}).Hdmi(0x1000)).Build());
    EDID_LimitToPCM2CH(handle.get());
    const Owned<CeaBlock> cea = OpenCta(handle.get());
    EXPECT_EQ(cea->checksumValid, 1);
    EXPECT_EQ(ByteVector(cea->dataBlocks[0].bytes + 1, cea->dataBlocks[0].bytes + cea->dataBlocks[0].size), c.left);
    EXPECT_EQ(cea->dataBlocks[1].bytes[1], 0x01);
  }
  // A DVI image has no audio to limit, and a block without audio gets none.
  const ByteVector dvi = Edid().Extension(Cta().Block(1, kAc3)).Build();
  const Owned<EdidHandle> handle = OpenImage(dvi);
  EDID_LimitToPCM2CH(handle.get());
  EXPECT_EQ(Generate(handle.get()), dvi);
}

TEST(Audio, WhatOneBlockGaveStaysForALaterOne) {
  const Owned<EdidHandle> handle =
      OpenImage(Edid().Extension(Cta().Block(1, kPcm8).Hdmi(0x1000)).Extension(Cta().Block(1, kAc3)).Build());
  EDID_LimitToPCM2CH(handle.get());
  EXPECT_EQ(OpenCta(handle.get(), 2)->dataBlocks[0].bytes[2], 0x7F);
}

TEST(Capability, FrlIsCappedAt40G) {
  const auto limited = [](uint8_t byte7, uint8_t byte12) {
    const Owned<EdidHandle> handle =
        OpenImage(Edid().Extension(Cta().HdmiForum({1, 120, 0x80, byte7, 0, 0, 0, 0x80, byte12, 0x0F})).Build());
    EDID_LimitToFrl40G(handle.get());
    const Owned<CeaBlock> cea = OpenCta(handle.get());
    return std::pair<int, int>(cea->dataBlocks[0].bytes[7] >> 4, cea->dataBlocks[0].bytes[8]);
  };
  EXPECT_EQ(limited(0x60, 0x62).first, 5);
  EXPECT_EQ(limited(0x30, 0x62).first, 3);
}

TEST(Capability, SdrKeepsOtherVendorsBlocks) {
  const Owned<EdidHandle> handle = OpenImage(Edid()
                                                 .Extension(Cta()
                                                                .Vdb({16})
                                                                .Extended(6, {0x05, 0x01})
                                                                .Extended(7, {0x03, 0x01, 0x00, 0x00})
                                                                .Extended(1, {0x46, 0xD0, 0x00, 0x48})
                                                                .Extended(1, {0x8B, 0x84, 0x90, 0x01})
                                                                .Extended(6, {0x01, 0x01})
                                                                .Extended(5, {0xC0, 0x00}))
                                                 .Build());
  EDID_LimitToSDR(handle.get());
  const Owned<CeaBlock> cea = OpenCta(handle.get());
  EXPECT_EQ(TagsOf(*cea), (ByteVector{2, 7, 1, 7, 5}));
  EXPECT_EQ(cea->checksumValid, 1);
}

TEST(Capability, RefusesWhatIsNotThere) {
  AudioFmtCap cap;
  const Owned<EdidHandle> handle = OpenImage(Edid().Build());
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_GetAudioFmtCap(handle.get(), nullptr), -1); }),
            Err("EDID_GetAudioFmtCap", "invalid parameters"));
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(EDID_GetAudioFmtCap(nullptr, &cap), -1); }),
            Err("EDID_GetAudioFmtCap", "invalid parameters"));
  EXPECT_EQ(LogOf([] { EDID_LimitToPCM2CH(nullptr); }), Err("EDID_LimitToPCM2CH", "invalid parameters"));
  EXPECT_EQ(LogOf([] { EDID_LimitToFrl40G(nullptr); }), Err("EDID_LimitToFrl40G", "invalid parameters"));
  EXPECT_EQ(LogOf([] { EDID_LimitToSDR(nullptr); }), Err("EDID_LimitToSDR", "invalid parameters"));
}

}  // namespace
}  // namespace reedid::test
