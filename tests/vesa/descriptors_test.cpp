#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "reedid/vesa.h"
#include "tests/support/bytes.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

DtdSlot Slot(uint8_t tag, const ByteVector& bytes4To17) {
  DtdSlot slot = {tag, {0, 0, 0, tag}};
  std::copy(bytes4To17.begin(), bytes4To17.end(), slot.bytes + 4);
  return slot;
}

void ExpectSlot(const DtdSlot& slot, const DtdSlot& expected) {
  EXPECT_EQ(slot.flag, expected.flag);
  EXPECT_EQ(ByteVector(slot.bytes, slot.bytes + 18), ByteVector(expected.bytes, expected.bytes + 18));
}

VesaBlock Model(uint8_t revision, uint8_t continuousFreq = 1) {
  VesaBlock model = {};
  model.version = 1;
  model.revision = revision;
  model.continuousFreq = continuousFreq;
  return model;
}

// Every getter, as one call that reads a slot into a buffer of its own.
struct Getter {
  std::string name;
  uint8_t tag;
  std::string kind;
  int32_t (*get)(const DtdSlot*, void*);
  size_t size;
};

const VesaBlock kModel14 = Model(4);

template <auto Get>
int32_t ReadText(const DtdSlot* slot, void* out) {
  return Get(slot, static_cast<char*>(out), 14);
}

template <class Record, auto Get>
int32_t Read(const DtdSlot* slot, void* out) {
  return Get(slot, static_cast<Record*>(out));
}

int32_t ReadRangeLimits(const DtdSlot* slot, void* out) {
  return VESA_GetRangeLimits(&kModel14, slot, static_cast<RangeLimits*>(out));
}

const Getter kGetters[] = {
    {"VESA_GetSerialNumber", 0xFF, "product serail number", ReadText<VESA_GetSerialNumber>, 14},
    {"VESA_GetDataString", 0xFE, "alphanumeric data string", ReadText<VESA_GetDataString>, 14},
    {"VESA_GetProductName", 0xFC, "product name string", ReadText<VESA_GetProductName>, 14},
    {"VESA_GetRangeLimits", 0xFD, "range limits", ReadRangeLimits, sizeof(RangeLimits)},
    {"VESA_GetStandardTimings", 0xFA, "standard timings indentifier", Read<StdTiming, VESA_GetStandardTimings>,
     6 * sizeof(StdTiming)},
    {"VESA_GetCvtTiming", 0xF8, "CVT 3 byte code", Read<VesaCvtRecord, VESA_GetCvtTiming>, sizeof(VesaCvtRecord)},
    {"VESA_GetEst3Timing", 0xF7, "established Timing 3", Read<Est3Record, VESA_GetEst3Timing>, sizeof(Est3Record)},
};

TEST(Descriptors, GettersRefuseOtherSlotsAndLeaveTheOutput) {
  for (const Getter& g : kGetters) {
    SCOPED_TRACE(g.name);
    const ByteVector before(g.size, 0xEE);
    const ExactBytes out(before);
    const auto check = [&](const DtdSlot* slot, void* to, const std::string& message) {
      int32_t result = 0;
      EXPECT_EQ(LogOf([&] { result = g.get(slot, to); }), message.empty() ? "" : Err(g.name, message));
      EXPECT_EQ(result, message.empty() ? 0 : -1);
      EXPECT_EQ(ByteVector(out.data(), out.data() + g.size) == before, !message.empty());
    };
    const DtdSlot good = Slot(g.tag, {});
    check(nullptr, out.data(), "invalid parameters");
    check(&good, nullptr, "invalid parameters");
    for (unsigned at = 0; at < 5; ++at) {
      if (g.tag == 0xFD && at == 4) continue;  // rate offsets
      DtdSlot bad = good;
      ++bad.bytes[at];
      check(&bad, out.data(), "invalid " + g.kind + " descriptor");
      bad.flag = 1;
      check(&bad, out.data(), "invalid parameters");
    }
    check(&good, out.data(), "");
  }
}

TEST(Descriptors, SettersNeedTheirPointers) {
  DtdSlot slot = {};
  const RangeLimits limits = {};
  LogOf([&] {
    EXPECT_EQ(VESA_SetSerialNumber(nullptr, &slot) + VESA_SetSerialNumber("A", nullptr), -2);
    EXPECT_EQ(VESA_SetRangeLimits(nullptr, &limits, &slot) + VESA_SetRangeLimits(&kModel14, nullptr, &slot), -2);
    EXPECT_EQ(VESA_SetStandardTimings(nullptr, &slot) + VESA_SetCvtTiming(nullptr, &slot), -2);
    EXPECT_EQ(VESA_SetEst3Timing(nullptr, &slot), -1);
  });
  ExpectSlot(slot, {});
}

TEST(Descriptors, TextsOfEveryLength) {
  const std::string alphabet = "ABCDEFG IJKLMNOP";
  for (size_t length = 0; length <= alphabet.size(); ++length) {
    SCOPED_TRACE(length);
    const std::string text = alphabet.substr(0, length);
    const std::string kept = text.substr(0, 13);
    std::string payload = kept + (length < 13 ? "\n" : "");
    payload.resize(13, ' ');
    DtdSlot slot;
    std::memset(&slot, 0xEE, sizeof slot);
    ASSERT_EQ(VESA_SetSerialNumber(text.c_str(), &slot), 0);
    ExpectSlot(slot, Slot(0xFF, Concat({{0}, ByteVector(payload.begin(), payload.end())})));
    const ExactBytes out(ByteVector(14, 0xEE));
    auto* read = reinterpret_cast<char*>(out.data());
    ASSERT_EQ(VESA_GetSerialNumber(&slot, read, out.size()), 0);
    EXPECT_EQ(read, kept);
    LogOf([&] { EXPECT_EQ(VESA_GetSerialNumber(&slot, read, 13), -1); });
  }
  DtdSlot data, product;
  EXPECT_EQ(VESA_SetDataString("x", &data) + VESA_SetProductName("x", &product), 0);
  EXPECT_EQ(data.flag, 0xFE);
  EXPECT_EQ(product.flag, 0xFC);
}

RangeLimits Limits(uint16_t minV, uint16_t maxV, uint16_t minH, uint16_t maxH, uint8_t formula) {
  RangeLimits limits = {};
  limits.minVRate = minV, limits.maxVRate = maxV, limits.minHRate = minH, limits.maxHRate = maxH;
  limits.maxPixelClock = 600000;
  limits.timingFormula = formula;
  return limits;
}

// Writes the limits, expects these bytes, reads them back and expects what `back` writes.
void CheckRangeLimits(const VesaBlock& model, const RangeLimits& limits, const ByteVector& payload,
                      const RangeLimits& back, const std::string& log = "") {
  SCOPED_TRACE(testing::PrintToString(payload));
  DtdSlot slot, again, expected;
  RangeLimits read;
  std::memset(&slot, 0xEE, sizeof slot);
  std::memset(&read, 0xEE, sizeof read);
  int32_t result = -1;
  EXPECT_EQ(LogOf([&] { result = VESA_SetRangeLimits(&model, &limits, &slot); }), log);
  EXPECT_EQ(result, 0);
  ExpectSlot(slot, Slot(0xFD, payload));
  EXPECT_EQ(VESA_GetRangeLimits(&model, &slot, &read), 0);
  LogOf([&] { VESA_SetRangeLimits(&model, &read, &again), VESA_SetRangeLimits(&model, &back, &expected); });
  ExpectSlot(again, expected);
}

TEST(Descriptors, RangeLimitsOffsetRatesIn14Only) {
  const VesaBlock v13 = Model(3);
  const auto check = [](const VesaBlock& model, const RangeLimits& limits, const ByteVector& payload) {
    CheckRangeLimits(model, limits, payload, limits);
  };
  check(kModel14, Limits(48, 300, 30, 256, 3), {0x0A, 48, 45, 30, 1, 60, 1});
  check(kModel14, Limits(256, 510, 300, 400, 0), {0x0F, 1, 255, 45, 145, 60, 0});
  check(kModel14, Limits(255, 255, 255, 255, 3), {0, 255, 255, 255, 255, 60, 1});
  CheckRangeLimits(kModel14, Limits(300, 200, 300, 200, 3), {0, 44, 200, 44, 200, 60, 1}, Limits(44, 200, 44, 200, 3));
  CheckRangeLimits(v13, Limits(48, 300, 30, 300, 3), {0, 48, 44, 30, 44, 60, 1}, Limits(48, 44, 30, 44, 3));

  // Only with the maximum's flag does the minimum's mean anything; unknown kinds read as default GTF.
  RangeLimits read;
  DtdSlot slot = Slot(0xFD, {0x05, 44, 45, 30, 80, 0, 3, 9, 9, 9, 9, 9, 9, 9});
  ASSERT_EQ(VESA_GetRangeLimits(&kModel14, &slot, &read), 0);
  EXPECT_EQ(read.minVRate + read.minHRate, 74);
  EXPECT_EQ(read.timingFormula + read.gtfC + read.preferredRefresh, 0);
  slot.bytes[4] = 0x02;
  const VesaBlock* models[] = {&kModel14, &v13};
  for (const VesaBlock* model : models) {
    ASSERT_EQ(VESA_GetRangeLimits(model, &slot, &read), 0);
    EXPECT_EQ(read.maxVRate, model == &v13 ? 45 : 300);
  }
}

TEST(Descriptors, RangeLimitsOfEveryFormula) {
  const std::string name = "VESA_SetRangeLimits";
  const RangeLimits only = Limits(48, 75, 30, 80, 3);
  RangeLimits cut = only;
  cut.maxPixelClock = 609999;
  CheckRangeLimits(Model(4, 0), cut, {0, 48, 75, 30, 80, 60, 1}, only);
  cut.timingFormula = 7;
  CheckRangeLimits(Model(4, 0), cut, {0, 48, 75, 30, 80, 60, 1}, only, Err(name, "invalid timing formula: 7"));

  RangeLimits gtf = Limits(48, 75, 30, 80, 1);
  gtf.gtfStartFreq = 90, gtf.gtfM = 0x1234, gtf.gtfC = 40, gtf.gtfK = 128, gtf.gtfJ = 20;
  CheckRangeLimits(Model(3), gtf, {0, 48, 75, 30, 80, 60, 2, 0, 45, 80, 0x34, 0x12, 128, 40}, gtf);

  RangeLimits cvt = Limits(48, 75, 30, 80, 2);
  CheckRangeLimits(kModel14, cvt, {0, 48, 75, 30, 80, 60, 4}, cvt);
  cvt.cvtVersionMajor = 1, cvt.cvtVersionMinor = 2, cvt.cvtClockPrecision = 63 * 250, cvt.cvtMaxHactive = 1023 * 8;
  cvt.cvtAspect[1] = cvt.cvtAspect[3] = cvt.cvtAspect[5] = cvt.hShrink = cvt.vShrink = 1;
  cvt.cvtPreferredAspect = ASPECT_5_4, cvt.cvtReducedBlanking = 1, cvt.preferredRefresh = 60;
  CheckRangeLimits(kModel14, cvt, {0, 48, 75, 30, 80, 60, 4, 0x12, 0xFF, 0xFF, 0x38, 0x70, 0xA0, 60}, cvt);
  CheckRangeLimits(Model(3), cvt, {0, 48, 75, 30, 80, 60, 4}, Limits(48, 75, 30, 80, 2));

  cvt = Limits(48, 75, 30, 80, 2);
  cvt.cvtMaxHactive = 3840, cvt.cvtPreferredAspect = ASPECT_5_3, cvt.cvtStandardBlanking = 1;
  cvt.cvtAspect[2] = cvt.cvtAspect[4] = cvt.hStretch = cvt.vStretch = 1;
  RangeLimits back = cvt;
  back.cvtPreferredAspect = ASPECT_4_3;
  CheckRangeLimits(Model(4, 0), cvt, {0, 48, 75, 30, 80, 60, 4, 0, 0x01, 0xE0, 0xC0, 0x88, 0x50}, back,
                   Warn(name, "please set supportGTF"));
}

TEST(Descriptors, StandardTimingsKeepFiveBitsOfTheRate) {
  const std::string name = "VESA_SetStandardTimings";
  const StdTiming timings[6] = {{1, 60, 1920, ASPECT_16_9}, {1, 91, 1280, ASPECT_5_4},   {0, 9, 9, 9},
                                {1, 92, 1024, ASPECT_4_3},  {1, 85, 1440, ASPECT_16_10}, {1, 59, 248, ASPECT_1_1}};
  const StdTiming back[6] = {{1, 60, 1920, ASPECT_16_9}, {1, 91, 1280, ASPECT_5_4},   {},
                             {1, 60, 1024, ASPECT_4_3},  {1, 85, 1440, ASPECT_16_10}, {1, 91, 248, ASPECT_16_9}};
  DtdSlot slot;
  StdTiming read[6];
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_SetStandardTimings(timings, &slot), 0); }),
            Err(name, "invalid std hactive: 248") + Err(name, "invalid std refresd rate: 59") +
                Err(name, "invalid std aspect ratio: 0"));
  ExpectSlot(slot, Slot(0xFA, {0, 0xD1, 0xC0, 0x81, 0x9F, 0x01, 0x01, 0x61, 0x40, 0x95, 0x19, 0x00, 0xDF}));
  ASSERT_EQ(VESA_GetStandardTimings(&slot, read), 0);
  for (unsigned i = 0; i < 6; ++i) {
    EXPECT_EQ(read[i].valid, back[i].valid) << i;
    EXPECT_EQ(read[i].frameRate, back[i].frameRate) << i;
    EXPECT_EQ(read[i].hactive, back[i].hactive) << i;
    EXPECT_EQ(read[i].aspectRatio, back[i].aspectRatio) << i;
  }
  slot.bytes[6] = 0xFF;  // the getter reads six bits
  ASSERT_EQ(VESA_GetStandardTimings(&slot, read), 0);
  EXPECT_EQ(read[0].frameRate, 123);
}

TEST(Descriptors, CvtCodesOfEveryAspectAndRate) {
  VesaCvtRecord record = {1,
                          {{1080, ASPECT_16_9, 60, 1, 1, 0, 0, 1},
                           {},
                           {8192, ASPECT_5_3, 85, 0, 0, 0, 1, 0},
                           {768, ASPECT_4_3, 75, 0, 0, 1, 0, 0}}};
  DtdSlot slot;
  VesaCvtRecord read;
  ASSERT_EQ(VESA_SetCvtTiming(&record, &slot), 0);
  ExpectSlot(slot, Slot(0xF8, {0, 1, 0x1B, 0x24, 0x39, 0, 0, 0, 0xFF, 0xFC, 0x62, 0x7F, 0x10, 0x44}));
  ASSERT_EQ(VESA_GetCvtTiming(&slot, &read), 0);
  EXPECT_EQ(read.codes[1].lines + read.codes[1].aspectRatio + read.codes[1].preferredRate, 0);
  EXPECT_EQ(read.codes[2].lines, 8192);
  DtdSlot again;
  ASSERT_EQ(VESA_SetCvtTiming(&read, &again), 0);
  ExpectSlot(again, slot);

  const std::string name = "VESA_SetCvtTiming";
  record.codes[1] = {1, ASPECT_16_10, 50, 0, 0, 0, 0, 0};
  record.codes[2].aspectRatio = ASPECT_5_4;
  record.codes[2].preferredRate = 70;
  EXPECT_EQ(LogOf([&] { EXPECT_EQ(VESA_SetCvtTiming(&record, &slot), -1); }),
            Err(name, "invalid aspect ratio: 1") + Err(name, "invalid preferred frame rate: 70"));
  ExpectSlot(slot, Slot(0xF8, {0, 1, 0x1B, 0x24, 0x39, 0xFF, 0xF8, 0, 0xFF, 0xF4}));
}

TEST(Descriptors, EstablishedTimingsIiiBitByBit) {
  for (unsigned i = 0; i < 48; ++i) {
    Est3Record record = {10, {}};
    Est3Record read;
    ByteVector payload(14);
    payload[1] = 10;
    payload[2 + i / 8] = static_cast<uint8_t>(1u << i % 8);
    record.flags[i] = 1;
    DtdSlot slot;
    ASSERT_EQ(VESA_SetEst3Timing(&record, &slot), 0);
    ExpectSlot(slot, Slot(0xF7, payload));
    ASSERT_EQ(VESA_GetEst3Timing(&slot, &read), 0);
    EXPECT_EQ(std::memcmp(&read, &record, sizeof read), 0) << i;
  }
}

}  // namespace
}  // namespace reedid::test
