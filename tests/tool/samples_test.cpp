#include "tools/reedid/samples.h"

#include <gtest/gtest.h>

#include "tools/reedid/describe.h"
#include "tools/reedid/streams.h"

namespace reedid::tool {
namespace {

// What a sample is good for: it is right in every byte, and the library has nothing to say about it.
TEST(Samples, AreValidAndSilent) {
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.name);
    std::string log = CaptureDiagnostics([&] {
      Image image = Image::FromBytes(sample.name, sample.build());
      EXPECT_EQ(image.firstBlockFaults(), "");
      EXPECT_NE(isValidEdid(image.handle()), 0);
      EXPECT_EQ(image.Generate(), sample.build());
      DescribeImage(image);
    });
    EXPECT_EQ(log, "");
  }
}

// Every block, field and data block kind that `show` decodes has to be found by its name and value.
TEST(Samples, AreShownDecoded) {
  const struct {
    const char* sample;
    const char* line;
  } cases[] = {
      {"tv-4k", "Manufacturer      RED"},
      {"tv-4k", "detailed timing: 3840x2160 60.000 Hz 594.000 MHz\n"},
      {"tv-4k", "Horizontal   15 to 270 kHz\n"},
      {"tv-4k", "Product name (fc)\n      Text  REED TV 4K\n"},
      {"tv-4k", "AC-3           6 channels; 32, 44.1, 48 kHz; up to 640 kbit/s\n"},
      {"tv-4k", "Speakers  FL/FR\n"},
      {"tv-4k", "Physical address  1.0.0.0\n"},
      {"tv-4k", "FRL rate           12 Gbit/s on 4 lanes\n"},
      {"tv-4k", "VRR                48 to 120 Hz\n"},
      {"tv-4k", "VICs, 4:2:0 too  97, 118, 117, 96\n"},
      {"tv-4k", "HDR Static Metadata Data Block (7/6)\n      Transfer         SDR gamma, PQ (ST 2084), HLG\n"},
      {"gaming-dp", "VIC 16  1920x1080 60.000 Hz 148.500 MHz 16:9, native\n"},
      {"gaming-dp", "Product type      3, standalone display device\n"},
      {"gaming-dp", "Type I Timing, Detailed (03), revision 0\n"},
      {"dvi", "Timing 1  1280x1024 60.020 Hz 108.000 MHz 5:4\n"},
      {"dvi", "Sync        digital separate, horizontal +, vertical +\n"},
  };
  for (const auto& c : cases) {
    const std::string text = ToText(DescribeImage(Image::FromBytes(c.sample, SampleBytes(c.sample))));
    EXPECT_NE(text.find(c.line), std::string::npos) << c.sample << ": " << c.line;
  }
}

}  // namespace
}  // namespace reedid::tool
