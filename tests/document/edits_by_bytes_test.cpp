// No edit makes an EDID worse: what the check finds in an image that an edit has changed, it found before.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>

#include "document/check/check.h"
#include "reedid/reedid.h"
#include "tests/support/corpus.h"
#include "tests/support/handle.h"
#include "tests/support/log_capture.h"

namespace reedid::test {
namespace {

using document::Check;

std::map<std::string, int> Worst(const ByteVector& image) {
  std::map<std::string, int> worst;  // by rule, 0 for none
  for (const document::Finding& finding : Check(image, 2030)) {
    int& severity = worst[finding.rule->id];
    severity = std::max(severity, static_cast<int>(finding.severity) + 1);
  }
  return worst;
}

template <const EdidLink* kLink>
int32_t LimitTo(EdidHandle* handle) {
  return EDID_LimitToLink(handle, kLink);
}

constexpr struct {
  const char* name;
  int32_t (*run)(EdidHandle* handle);
  std::initializer_list<const char*> cost;  // what cannot be had otherwise
} kEdits[] = {
    {"address", [](EdidHandle* handle) { return EDID_PatchPhyAddr(handle, 0x1000); }, {}},
    {"SDR", EDID_StripHdr, {}},
    {"HDMI 2.0", LimitTo<&EDID_LINK_HDMI20>, {}},
    {"FRL 3", LimitTo<&EDID_LINK_FRL3>, {}},
    // The panel's own size at no rate that both it and the link take: another one is preferred.
    {"HDMI 1.4", LimitTo<&EDID_LINK_HDMI14>, {"displayid-differs"}},
    {"300 MHz with 4:2:0", LimitTo<&EDID_LINK_300MHZ_420>, {"displayid-differs"}},
    {"capture", LimitTo<&EDID_LINK_CAPTURE_165MHZ>, {"displayid-differs"}},
    // The HDMI block that goes with DVI said that image sizes are ratios.
    {"DVI", LimitTo<&EDID_LINK_DVI>, {"displayid-differs", "dtd-size-over-display", "preferred-size-below-display"}},
    // A map would push the HDMI block out of the first two blocks; a display that takes 640x480 by no means of its own
    // gets it as its only VIC.
    {"HDMI",
     [](EdidHandle* handle) { return EDID_MakeHdmi(handle, 0x1000); },
     {"block-map-missing", "vic-outside-range-limits"}},
};

TEST(EditsByBytes, LeaveNothingWorse) {
  for (const auto& [name, bytes] : Corpus()) {
    const std::map<std::string, int> found = Worst(bytes);
    if (found.contains("block-checksum") || found.contains("cta-padding")) continue;  // damaged: anything may follow
    for (const auto& edit : kEdits) {
      SCOPED_TRACE(name + ", " + edit.name);
      Quietly([&, &image = bytes] {
        const Image handle(image);
        const ByteVector before = Generate(handle.get());
        const int32_t result = edit.run(handle.get());
        const ByteVector after = handle.Bytes();
        EXPECT_TRUE(result == 0 || Generate(handle.get()) == before);
        if (Generate(handle.get()) == before) return;
        std::map<std::string, int> then = Worst(before);
        for (const auto& [rule, severity] : Worst(after)) {
          const bool cost = std::any_of(edit.cost.begin(), edit.cost.end(), [&](auto* id) { return rule == id; });
          EXPECT_TRUE(cost || then[rule] >= severity) << rule;
        }
      });
    }
  }
}

}  // namespace
}  // namespace reedid::test
