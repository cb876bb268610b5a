#include <gtest/gtest.h>

#include "document/account/detailed_timing.h"
#include "document/account/image_account.h"
#include "document/account/tree_json.h"
#include "document/account/tree_text.h"
#include "document/read/samples.h"
#include "tests/support/edid_builder.h"
#include "tests/support/log_capture.h"

namespace reedid::document {
namespace {

using test::Concat;
using test::Cta;
using test::Edid;
using test::Section;

const ByteVector kTypeI = {0x61, 0xE8, 0x00, 0x84, 0xFF, 0x0E, 0x2F, 0x02, 0xAF, 0x80,  // 3840x2160 at 60.091 Hz
                           0x57, 0x00, 0x6F, 0x08, 0x59, 0x00, 0x07, 0x80, 0x09, 0x00};

// Data blocks of every kind that a DisplayID section can have, in three extensions.
ByteVector EveryDisplayIdBlock() {
  const ByteVector typeVI = {0x61, 0xE8, 0x42, 0xFF, 0x8E, 0x6F, 0x88, 0x2F, 0xAF, 0x02, 0x57, 0x59, 7, 9, 152, 1, 2};
  const ByteVector product = {'A', 'B', 'C', 1, 2, 3, 4, 5, 6, 7, 8, 2, 'n', 'm'};
  const ByteVector parameters20 = {1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12,   13, 14, 15,
                                   16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 0x12, 28, 29};
  Section first, second, third(0x20);
  first.Block(0, 0, product).Block(1, 0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}).Block(3, 1, kTypeI);
  first.Block(9, 0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}).Block(0x0A, 0, {'S', '1'});
  second.Block(4, 0, {0x61, 0xE8, 0x00, 0x84, 1, 2, 3, 4, 5, 6, 7}).Block(5, 1, {0x84, 99, 59}).Block(6, 0, {0x52});
  second.Block(7, 0, {8, 0, 0, 0, 0, 0, 0, 0, 0, 1}).Block(8, 0, {0, 0x80, 0, 0, 0, 0, 0, 4});
  second.Block(0x11, 0, {0, 0, 0x7F, 0x07, 0x37, 0x04, 59}).Block(0x13, 0, typeVI);
  third.Block(0x20, 0, product).Block(0x21, 0, parameters20).Block(0x22, 0, kTypeI);
  third.Block(0x24, 0, {0x02, 0x7F, 0x07, 0x37, 0x04, 59}).Block(0x25, 0, {1, 2, 3, 4, 5, 6, 7, 8, 0x81});
  third.Block(0x2A, 0x10, {0x02, 0x7F, 0x07, 0x37, 0x04, 59, 0xE4});
  Section fourth(0x20);
  fourth.Block(0x2B, 0, {0x27, 0, 60, 0xA4, 0, 0}).Block(0x26, 0, {7, 7, 3, 3, 8, 0xE0, 0x50, 0, 1, 0x44});
  fourth.Block(0x28, 0, {0xC2, 0x10, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18});
  fourth.Block(0x7E, 0, {0x3A, 2, 0x92, 1, 0x48, 0x0C, 8}).Block(0x81, 0, {0xE3, 5, 0x80, 0, 0x65, 1, 2});
  return Edid().Extension(first).Extension(second).Extension(third).Extension(fourth).Build();
}

// Whatever can be shown, as the bytes of an image.
struct Shown {
  Shown(const ByteVector& image) : bytes(image) {}
  Shown(const char* sample) : bytes(SampleBytes(sample)) {}
  Shown(const Edid& edid) : bytes(edid.Build()) {}
  Shown(const Cta& cta) : bytes(Edid().Extension(cta).Build()) {}
  Shown(const Section& section) : bytes(Edid().Extension(section).Build()) {}
  ByteVector bytes;
};

// What stands in the account of an image, alone or with the bytes that it was made from.
struct Case {
  const char* name;
  Shown image;
  const char* line;
};

void ExpectLines(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    Node account;
    test::Quietly([&] { account = DescribeImage(Image::FromBytes("x", c.image.bytes)); });
    const std::string text = ToText(account) + ToText(account, {200, false, true});
    EXPECT_NE(text.find(c.line), std::string::npos) << c.name << ":\n" << text;
  }
}

TEST(Describe, CtaDataBlocks) {
  ExpectLines({
      {"every native mark", Cta().Vdb({0x90, 0x84, 5}), "VIC 4   1280x720 60.000 Hz 74.250 MHz 16:9, native\n"},
      {"VICs that look marked", Cta().Vdb({193, 128, 129}), "VIC 128  not in the tables\n"},
      {"no VIC", Cta().Vdb({}), "Not decoded  its size"},
      {"extended audio", Cta().Block(1, {0x7A, 0x07, 0x22}), "MPEG-4 HE AAC  3 channels; 32, 44.1, 48 kHz"},
      {"3D audio channels", Cta().Block(1, {0xFF, 0x04, 0x68}), "L-PCM 3D Audio  16 channels; 48 kHz; no bits\n"},
      {"HDMI address alone", Cta().Block(3, {0x03, 0x0C, 0x00, 0x12, 0x34}), "Physical address  1.2.3.4\n"},
      {"HDMI cut off", Cta().Block(3, {0x03, 0x0C, 0x00}), "HDMI 1.4b\n      Not decoded"},
      {"HDMI latency", Cta().Hdmi(0x1000, {0, 0, 0x80, 11, 0}), "Latency           video 20 ms, audio unknown\n"},
      {"no audio", Cta().Hdmi(0x1000, {0, 0, 0xC0, 1, 255, 254, 2}),
       "Interlaced latency  video reserved, audio 2 ms\n"},
      {"HDMI VICs behind one latency", Cta().Hdmi(0x1000, {0, 0, 0xA0, 1, 255, 0, 0x40, 1, 3}),
       "video 0 ms, audio not supported\n      Image size        not stated\n      HDMI VICs         1 (3840x2160 30 "
       "Hz), 3"},
      {"3D", Cta().Hdmi(0x1000, {0, 0, 0x20, 0xC0, 7, 1, 0x40, 0, 5, 0x46, 0x98, 0x10}),
       "3D                           all formats that HDMI requires\n"},
      {"3D structures", Cta().Hdmi(0x1000, {0, 0, 0x20, 0xC0, 7, 1, 0x40, 0, 5, 0x46, 0x98, 0x10}),
       "top and bottom, side by side (half)\n      3D descriptors               1, 3\n"},
      {"3D of one", Cta().Hdmi(0x1000, {0, 0, 0x20, 0xC0, 7, 1, 0x40, 0, 5, 0x46, 0x98, 0x10}),
       "3D of descriptor 10          side by side (half), horizontal\n"},
      {"3D cut off", Cta().Hdmi(0x1000, {0, 0, 0x20, 0x80, 0x1F, 0x98}), "HDMI VICs         none\n"},
      {"a block of tag 0", Cta().Vdb({16}).Block(0, {}).Hdmi(0x1234), "Behind the data block of tag 0 at byte 6"},
      {"what follows it", Cta().Vdb({16}).Block(0, {}).Hdmi(0x1234), "Physical address  1.2.3.4\n"},
      {"HDMI Forum with reserved rate", Cta().HdmiForum({1, 0, 0x80, 0xF0}), "FRL rate           reserved\n"},
      {"a vendor's block cut off", Cta().Block(3, {0x1A, 0x00, 0x00, 0x05}), "(3), AMD FreeSync\n      Not decoded"},
      {"no OUI", Cta().Block(3, {0x1A}), "Vendor-Specific Data Block (3)\n      Bytes  1a\n"},
      {"a vendor without a name", Cta().Block(3, {1, 2, 3}), "Vendor-Specific Data Block (3), OUI 03-02-01\n"},
      {"more than is decoded", Cta().Hdmi(0x1000, {0, 30, 0, 9}),
       "Content types     none\n      Other bytes       09\n"},
      {"a vendor's block of another kind", Cta().Extended(1, {0x1A, 0, 0, 9}), "(7/1), AMD\n      Bytes  09\n"},
      {"reserved tag", Cta().Extended(99, {1}), "Reserved Data Block (7/99)\n      Bytes  01\n"},
      {"4:2:0 map of everything", Cta().Vdb({97}).Extended(15, {}), "4:2:0 too  all of the Video Data Block\n"},
      {"4:2:0 map of nothing", Cta().Extended(15, {1}), "Not decoded"},
      {"4:2:0 only, above 128", Cta().Extended(14, {97, 218}), "VIC 218  4096x2160 100.000 Hz 1188.000 MHz 256:135\n"},
      {"scan behaviour", Cta().Extended(0, {0xC9}), "IT formats        always underscanned\n"},
      {"no IT formats", Cta().Extended(0, {0x01}), "IT formats        not supported\n"},
      {"quantization", Cta().Extended(0, {0x41}), "YCC not stated, RGB selectable\n"},
      {"least luminance", Cta().Extended(6, {5, 1, 0, 0, 0}), "Minimum          0 cd/m2, or not stated\n"},
      {"a maximum missing", Cta().Extended(6, {5, 1, 0, 96, 255}), "0.01 of a maximum that is not stated\n"},
      {"colorimetry", Cta().Extended(5, {0x80, 0xC0}), "Colorimetry  BT2020RGB, ICtCp, DCI-P3\n"},
      {"AC-3", "tv-4k", "AC-3           15 07 50  6 channels; 32, 44.1, 48 kHz; up to 640 kbit/s\n"},
      {"HDMI", "tv-4k", "HDMI 1.4b  [6d 03 0c 00]\n      Physical address  10 00        1.0.0.0\n"},
      {"HDMI VICs", "tv-4k", "HDMI VICs         60 01 02 03  1 (3840x2160 30 Hz)"},
      {"image size", Cta().Hdmi(0x1000, {0, 0, 0xE0, 1, 2, 3, 4, 8, 0x20, 1}), "Image size          08 "},
      {"FRL", "tv-4k", "FRL rate           63     12 Gbit/s on 4 lanes\n"},
      {"VRR", "tv-4k", "VRR                30 78  48 to 120 Hz\n"},
      {"speakers", "tv-4k", "Speakers  01 00 00  FL/FR\n"},
      {"HDR", "tv-4k", "Data Block (7/6)\n      Transfer         SDR gamma, PQ (ST 2084), HLG\n"},
      {"4:2:0 map", "tv-4k", "VICs, 4:2:0 too  0f 00 00  97, 118, 117, 96\n"},
  });
}

TEST(Describe, VendorDataBlocks) {
  const Cta freeSync = Cta().Block(3, {0x1A, 0, 0, 2, 0x0B, 48, 144, 0, 5, 0x80, 0x50, 0x60, 0x50});
  const Cta freeSync3 = Cta().Block(3, {0x1A, 0, 0, 3, 0x41, 48, 240, 0xE9, 0x80, 96, 1, 75, 2, 0x68, 1});
  const Cta dolby0 = Cta().Extended(1, {0x46, 0xD0, 0,    0x02, 0x34, 0xA4, 0x54, 0xA3, 0x4C, 0x9F, 0x7A, 0x27,
                                        0x0B, 0x14, 0x50, 0x54, 0x81, 0x05, 0xA7, 0x28, 0,    0,    0,    0});
  const Cta dolby1 = Cta().Extended(1, {0x46, 0xD0, 0, 0x2A, 0x18, 0x03, 0x51, 0x59, 0x99, 0xAA});
  const Cta dolby2 = Cta().Extended(1, {0x46, 0xD0, 0, 0x44, 0x57, 0x53, 0x68, 0x65, 0x87, 0x5F});
  const Cta microsoft = Cta().Block(
      3, {0x5C, 0x12, 0xCA, 3, 0x45, 0, 17, 34, 51, 68, 85, 102, 119, 136, 153, 170, 187, 204, 221, 238, 255});
  const ByteVector deviceBytes = {0x92, 0x11, 3,    0,  0,    0,    10, 64, 6,  60,  17,  10, 24, 24,  0xD0,
                                  0x80, 0x83, 0x8F, 60, 0x77, 0x41, 2,  37, 74, 126, 119, 0,  0,  140, 0x57};
  const Cta forum = Cta().HdmiForum({1, 120, 0xA0, 0x68, 0xC2, 0x28, 0x78, 0x90, 0x33, 5});
  ExpectLines({
      {"FreeSync", freeSync, "FreeSync range   48 to 144 Hz\n"},
      {"its luminance", freeSync, "Luminance        0.787 to 800 cd/m2\n      Without dimming  0.394 to 400 cd/m2\n"},
      {"rates above 255 Hz", freeSync3, "FreeSync range   48 to 360 Hz\n"},
      {"their bytes", freeSync3, "FreeSync range   30 f0 68 01  48 to 360 Hz\n"},
      {"panel", freeSync3, "Panel            OLED\n"},
      {"G-SYNC", Cta().Block(3, {0x4B, 4, 0, 1, 30}), "Variable rate  from 30 Hz\n"},
      {"HDR10+", Cta().Extended(1, {0x8B, 0x84, 0x90, 0x79}), "Full white frame  400 cd/m2, 40 % of the peak\n"},
      {"HDR10+ without a peak", Cta().Extended(1, {0x8B, 0x84, 0x90, 1}), "Full white frame  10 % of the peak\n"},
      {"Dolby Vision 0", dolby0, "Luminance   0.01 to 401 cd/m2 (PQ 88 to 2673)\n"},
      {"its primaries", dolby0, "blue 0.154 0.045, white 0.313 0.329\n"},
      {"Dolby Vision 1", dolby1, "Luminance    0.000062 to 700 cd/m2\n      Colorimetry  P3-D65\n"},
      {"low latency", dolby1, "Interfaces   standard and low latency\n"},
      {"Dolby Vision 2", dolby2, "Luminance        0.0569 to 431 cd/m2 (PQ 200 to 2705)\n"},
      {"RGB", dolby2, "RGB and YCbCr 4:4:4 with 10 bits\n"},
      {"Dolby audio", Cta().Extended(17, {0x46, 0xD0, 0, 0x50, 0x81}),
       "Speaker zones  centre, height\n      MAT            PCM at 48 kHz only\n      Unknown"},
      {"Atmos", Cta().Block(1, {0x57, 7, 1}), "Enhanced AC-3  8 channels; 32, 44.1, 48 kHz; Dolby Atmos (JOC)\n"},
      {"TrueHD", Cta().Block(1, {0x67, 4, 0}), "MAT (MLP)  8 channels; 48 kHz; Dolby TrueHD\n"},
      {"Atmos in MAT", Cta().Block(1, {0x67, 4, 3}), "TrueHD, Dolby Atmos and PCM in MAT, no hash needed\n"},
      {"DTS:X", Cta().Block(1, {0x5F, 0x7E, 3}), "176.4, 192 kHz; DTS:X; format's own 0x01\n"},
      {"MPEG-H", Cta().Block(1, {0x7B, 4, 0x5B}), "MPEG-H 3D Audio  level 3; 48 kHz; low complexity profile"},
      {"3D by VIC", Cta().Vdb({16, 5}).Hdmi(0x1000, {0, 0, 0x20, 0x80, 1, 0x10}), "3D of descriptor 2, VIC 5  frame"},
      {"QMS", forum, "Features           QMS, ALLM, FAPA end extended\n"},
      {"QMS rates", forum, "QMS target rates   TFRmin\n"},
      {"cable", forum, "Supports           SCDC, cable status\n"},
      {"UHD by VIC", forum, "UHD formats        of the HDMI VICs, also by CTA VIC\n"},
      {"sink capability", Cta().Extended(121, {0, 0, 1, 120, 0x80, 0, 2, 0x28, 60}), "VRR                40 to 60 Hz"},
      {"filmmaker mode", Cta().Block(3, {0xFB, 0xBB, 0x1A, 1, 2}), "content type 1, subtype 2\n"},
      {"specialised display", microsoft, "Primary use  desktop gaming\n      Used by      desktop\n"},
      {"its ContainerID", microsoft, "00112233-4455-6677-8899-aabbccddeeff\n"},
      {"product", Cta().Extended(33, {0, 0x10, 0xFA, 0, 'T', 'V'}),
       "Manufacturer  Apple\n      Version       0\n      Name          TV"},
      {"formats by resolution", Cta().Block(6, {0x81, 0x47, 0xC3, 0xCB, 0x40}), "3840x1080 32:9  24, 30, 60, 144 Hz\n"},
      {"one byte each", Cta().Block(6, {0, 7, 0x8B}),
       "3840x1080 32:9  30, 60 Hz\n      3840x2160       25, 30, 50, 60 Hz\n"},
      {"transfer curve", Cta().Block(5, {0x46, 20, 30, 40, 50, 60, 70}),
       "red\n      Samples  6, 26, 56, 96, 146, 206, 276, 1023 of 1023"},
      {"3D audio", Cta().Extended(18, {4, 1, 1, 11, 3, 1, 15, 0, 0, 16}),
       "L-PCM, 12 channels; 32, 44.1 kHz; 16 bits\n"},
      {"its speakers", Cta().Extended(18, {4, 1, 1, 11, 3, 1, 15, 0, 0, 16}),
       "10.2 channels: FL/FR, LFE1, FC, BL/BR\n"},
      {"tone mapping", Cta().Extended(122, {0xA1, 0xE2}), "HGiG peak    1000 cd/m2\n      Gamut        BT.2020\n"},
      {"device", Cta().Extended(2, deviceBytes),
       "Sound               over the video interface; 6 ms behind the picture\n"},
      {"override", Cta().Extended(120, {3}), "Extensions  3, whatever the base block says\n"},
      {"dynamic HDR", Cta().Extended(7, {3, 2, 0, 0x31, 3, 4, 0, 1}), "(SL-HDR), version 1, SL-HDR1, SL-HDR2\n"},
      {"native resolution", Cta().Extended(8, {0x91, 0x81, 0x10, 0x0E, 0xB0, 7}), "3600.0 x 1968.0 mm\n"},
      {"format preference", Cta().Extended(13, {97, 129}), "Preference 1  VIC 97 (3840x2160 60.000 Hz"},
      {"InfoFrames", Cta().Extended(32, {0, 1, 1, 0x46, 0xD0, 0, 2}), "InfoFrame 1      vendor-specific, Dolby\n"},
      {"room", Cta().Extended(19, {0xE2, 7, 0, 0, 16, 16, 8, 0, 64, 0}), "Speakers      3: FL/FR, LFE1, FC\n"},
      {"its place", Cta().Extended(19, {0xE2, 7, 0, 0, 16, 16, 8, 0, 64, 0}), "x 0.000, y 1.000, z 0.000\n"},
      {"speaker location", Cta().Extended(20, {0x20, 0, 0x61, 1, 0xC0, 0x40, 0}), "FR, x -1.000, y 1.000, z 0.000\n"},
  });
}

TEST(Describe, BaseBlock) {
  ByteVector map(128);
  map[0] = 0xF0;
  map[1] = 0x02;
  ExpectLines({
      {"analog input", Edid(3).Set(20, {0x20}), "analog, 0.714/0.286 V\n"},
      {"before 1.4, low bits are no interface", Edid(3).Set(20, {0x85}), "digital, DFP 1.x compatible\n"},
      {"reserved bit depth", Edid(4).Set(20, {0xF5}), "digital, DisplayPort, bit depth not stated\n"},
      {"aspect ratio for a size", Edid(4).Set(21, {79, 0}), "aspect ratio 1.78\n"},
      {"gamma kept elsewhere", Edid().Set(23, {0xFF}), "not stated\n"},
      {"model year", Edid().Set(16, {255, 36}), "model year 2026\n"},
      {"last established timing", Edid().Set(35, {0, 0, 0xC1}), "Apple  1152x870 75.062 Hz 100.000 MHz 4:3\n"},
      {"640x480 with its borders", Edid().Set(35, {0x28}), "DMT 0x05  640x480 72.809 Hz 31.500 MHz 4:3\n"},
      {"interlaced established timing", Edid().Set(36, {0x10}), "DMT 0x0f  1024x768i 86.958 Hz 44.900 MHz 4:3\n"},
      {"standard timing with normal blanking", Edid().Set(38, {0xB3, 0}), "1680x1050 59.954 Hz 146.250 MHz 16:10\n"},
      {"standard timing by GTF", Edid().Set(38, {0x71, 0x40}), "1152x864 60.000 Hz 81.624 MHz 4:3\n"},
      {"standard timing of a CVT display",
       Edid().Set(38, {0x71, 0x40}).Descriptor(0xFD, {0, 50, 75, 30, 80, 17, 4, 0x12, 0, 0xF0, 0xF8, 0x18, 0, 60}),
       "1152x864 59.959 Hz 81.750 MHz 4:3\n"},
      {"established timings III", Edid().Descriptor(0xF7, {0, 10, 0, 0x80}), "DMT 0x16  1280x768 59.995 Hz"},
      {"manufacturer's timings", Edid().Set(35, {0, 0, 0xC1}), "Manufacturer's    41\n"},
      {"text that is none", Edid().Descriptor(0xFE, {0, 'a', 0x1B, '\n', 'b'}), "Text (fe)\n      Text  a\\x1b\n"},
      {"rates above 255", Edid().Descriptor(0xFD, {0x0E, 48, 1, 30, 45, 0xFF, 4}), "48 to 256 Hz\n"},
      {"analog composite sync", Edid().Set(54, {1, 0}), "Sync        analog composite\n"},
      {"an unused descriptor", Edid().Descriptor(0x10, {0}), "Dummy (10)\n    Descriptor 2"},
      {"a descriptor of bytes", Edid().Descriptor(0xFB, {0, 1}), "Color point (fb)\n      Bytes  01 00"},
      {"block map", Edid().Extension(map).Extension(Cta()), "Block 2   02, CTA-861 extension\n  Block 2"},
      {"no timing at all", Edid().Set(54, {1, 0}), ": 0x0 0.000 Hz 0.010 MHz\n"},
      {"gamma", "tv-4k", "Gamma             78                       2.20\n"},
      {"chromaticity", "tv-4k", "Chromaticity      ee 91 a3 54 4c 99 26 0f  red 0.640 0.330"},
      {"detailed timing", "tv-4k", "detailed timing: 3840x2160 60.000 Hz 594.000 MHz  [08 e8]\n"},
      {"its sync", "dvi", "Sync        digital separate, horizontal +, vertical +\n"},
      {"product name", "tv-4k",
       "Product name (fc)  [00 00 00 fc 00]\n      Text  52 45 45 44 20 54 56 20  REED TV 4K\n"},
      {"standard timing's bytes", "dvi", "Timing 1  81 80                    1280x1024 60.020 Hz 108.000 MHz 5:4\n"},
  });
}

// Extensions of one record, without their checksum.
ByteVector Extension(const ByteVector& head) {
  ByteVector block = head;
  block.resize(128);
  return block;
}

TEST(Describe, OtherExtensions) {
  const Edid info = Edid().Extension(Extension(
      {0x40, 1, 3, 0, 0, 0, 0, 0xC8, 0x48, 1, 165, 0, 165, 0, 1, 2, 3, 25, 25, 0xA8, 0, 0, 0, 0, 0, 0, 0x40}));
  const DtdSlot dtd = test::SlotOf(test::k2160p60);
  const Edid timings = Edid().Extension(
      Extension(Concat({{0x10, 1, 1, 1, 1}, ByteVector(dtd.bytes, dtd.bytes + 18), {0x1F, 0x10, 0x10, 0xE1, 0xC0}})));
  ExpectLines({
      {"display information", info, "Block 1: display information extension\n"},
      {"its link", info, "Interface         DVI, dual link for high resolution\n"},
      {"its clock", info, "from 1 MHz, up to 165 MHz\n    Second link"},
      {"its panel", info, "RGB stripes rectangle\n"},
      {"video timings", timings, "1 detailed timings, 1 CVT codes, 1 standard timings\n"},
      {"detailed", timings, "Detailed timing 1: 3840x2160 60.000 Hz 594.000 MHz\n"},
      {"CVT", timings, "Code 1             768x576 49.811 Hz"},
      {"standard", timings, "Standard timing 1  2048x1152 60.000 Hz"},
  });
}

TEST(Describe, Sections) {
  const ByteVector every = EveryDisplayIdBlock();
  const ByteVector alone = Section(0x12, 6).Block(0x55, 0, {7}).Build();
  ExpectLines({
      {"type I", Section().Block(0x03, 1, kTypeI), "Timing 1: 3840x2160 60.091 Hz 594.900 MHz"},
      {"DMT codes", Section().Block(0x06, 0, {0x52}), "DMT 0x52  1920x1080 60.000 Hz 148.500 MHz 16:9\n"},
      {"VIC codes above 128", Section().Block(0x06, 0x40, {219}), "VIC 219  4096x2160 120.000 Hz"},
      {"HDMI VIC codes", Section().Block(0x06, 0x80, {3, 9}), "HDMI VIC 9  reserved\n"},
      {"DMT bitmap", Section().Block(0x07, 0, {0x08, 0, 0, 0, 0, 0, 0, 0, 0, 0}), "DMT 0x04  640x480 59.940 Hz"},
      {"VIC bitmap", Section().Block(0x08, 0, {0, 0x80, 0, 0, 0, 0, 0, 0}), "VIC 16  1920x1080 60.000 Hz"},
      {"type IX", Section(0x20).Block(0x24, 0, {0x02, 0x7F, 0x07, 0x37, 0x04, 59}),
       "CVT reduced v2  1920x1080 60.000 Hz"},
      {"text", Section().Block(0x0B, 0, {'a', 0x1B, 'b'}), "Text  a\\x1bb\n"},
      {"range", Section(0x20).Block(0x25, 1, {0x0F, 0x27, 0, 0x1F, 0x4E, 0, 48, 120, 0x80}), "48 to 120 Hz\n"},
      {"type VIII in CTA-861", Cta().Extended(0x23, {0x40, 16}), "VIC 16    1920x1080 60.000 Hz"},
      {"use case", Section(0x20, 5).Block(0x22, 0x09, {1, 2}), "Primary use case  5, desktop gaming\n"},
      {"flags", Section(0x20).Block(0x22, 0x09, {1, 2}), "revision 1\n      Flags  0x01\n      Bytes  01 02\n"},
      {"no EDID", alone, "x: DisplayID, 1 block, 9 bytes\n"},
      {"type of 1.x", alone, "6, direct drive monitor\n"},
      {"reserved tag", alone, "Reserved (55), revision 0\n"},
      {"luminance", every, "0.00173 cd/m2\n      10 % luminance   18 19 "},
      {"native format's bytes", every, "Native format    05 06 07 08  "},
      {"bytes of type II", every, "Vertical    84 04 05 06 07  "},
      {"what is left of type VI", every, "Other bytes  98 01 02"},
      {"a bit's byte", every, "DMT 0x49  01  "},
      {"a formula's bytes", every, "CVT reduced v2  02 7f 07 37 04 3b e4"},
  });
}

TEST(Describe, SectionBlocks) {
  const Section adaptive = Section(0x20).Block(0x2B, 0, {0x27, 0, 60, 0xA4, 0, 0, 0x10, 8, 48, 0x8F, 1, 0x10});
  const Section tile = Section().Block(
      0x12, 0, {0xC2, 0x10, 0x10, 0, 0x7F, 7, 0x6F, 8, 10, 5, 5, 6, 7, 'A', 'B', 'C', 1, 2, 0, 0, 0, 0});
  const Section features = Section(0x20).Block(0x26, 0, {7, 6, 3, 1, 8, 0xE0, 0x50, 0, 1, 0x48});
  const Section link = Section().Block(0x0F, 0, {0xA4, 0x14, 14, 14, 7, 1, 0x20, 0x45, 0, 0});
  const Section inside = Section(0x20).Block(
      0x81, 0, {0xE3, 5, 0x80, 0, 0x72, 0x1A, 0, 0, 3, 1, 60, 165, 0, 0, 0x53, 0x50, 0x53, 0x50, 165, 0});
  const Section color =
      Section().Block(2, 1, {0x31, 0xDD, 0x5A, 0x4F, 0x37, 0x14, 0xAA, 0x68, 0xB2, 10, 1, 0x45, 0x54});
  const Section device = Section().Block(0x0C, 0, {0x15, 0x50, 0x7F, 7, 0x37, 4, 78, 0, 1, 25, 25, 8, 5});
  ExpectLines({
      {"a variable rate", adaptive, "Range 1  60 to 165 Hz; the panel's own, adaptive V-total, longer frames"},
      {"its steps", adaptive, "changes into it are visible; longer by up to 2.00 ms; shorter by up to 4.00 ms\n"},
      {"a tile", tile, "Tile               column 2 of 2, row 1 of 1\n"},
      {"its bezel", tile, "top 5.0, bottom 5.0, right 6.0, left 7.0 pixels\n"},
      {"depths", features,
       "RGB           6, 8, 10 bits\n      YCbCr 4:4:4   8, 10 bits\n      YCbCr 4:2:2   8, 10 bits\n"},
      {"4:2:0", features, "YCbCr 4:2:0   8 bits\n      4:2:0 from    594.00 MHz\n"},
      {"colours", features, "DCI-P3, BT.2020 with PQ (ST 2084)\n      More colours  Adobe RGB with PQ (ST 2084)\n"},
      {"interface", link, "DisplayPort 1.4, 4 links or lanes\n"},
      {"its spectrum", link, "HDCP 2.0\n      Spread spectrum     down, 0.5 %\n"},
      {"CTA inside", inside, "(7/5)\n        Colorimetry  BT2020RGB\n"},
      {"CTA inside, cut off", inside, "FreeSync range   60 to 165 Hz\n"},
      {"primaries", color, "Primary 1    0.679 0.310\n"},
      {"white", color, "White 1      0.313 0.329\n"},
      {"brightness", Section(0x20).Block(0x2E, 0, {0, 0x42, 0xB0, 0x5C, 0xD0, 0x60}), "Boost       616 cd/m2\n"},
      {"ContainerID", Section(0x20).Block(0x29, 0, {0, 17, 34, 51, 68, 85, 102, 119, 136, 153, 170, 1, 2, 3, 4, 5}),
       "00112233-4455-6677-8899-aa0102030405\n"},
      {"VESA", Section(0x20).Block(0x7E, 0, {0x3A, 2, 0x92, 1, 0x48, 0x0C, 8}), "12.50 bits per pixel\n"},
      {"a vendor by letters", Section().Block(0x7F, 0, {'A', 'B', 'C', 9}), "Vendor  ABC\n      Bytes   09\n"},
      {"a vendor by OUI", Section(0x20).Block(0x7E, 0, {0, 1, 2, 9}), "Vendor  OUI 00-01-02\n"},
      {"stereo", Section().Block(0x10, 0x41, {2, 0, 1, 2, 4, 9}), "Timings     DMT 4, DMT 9\n"},
      {"transfer", Section().Block(0x0E, 0x11, {0x20, 5, 1, 2, 3, 4, 120}), "A0 1, A1 2, A2 3, A3 4, gamma 2.20\n"},
      {"device", device, "Technology     IPS LCD\n      Operation      transmissive with a source\n"},
      {"its response", device, "5 ms black to white\n"},
      {"power", Section().Block(0x0D, 0, {0x25, 25, 25, 50, 25, 25}), "T1  0.2 to 10 ms\n"},
      {"a layer", Section(0x20).Block(0x2D, 1, {0, 54, 116, 0, 1, 1, 0, 0, 0, 48, 0, 10, 255, 14, 135, 0, 0, 0, 0, 1}),
       "2x, 3x, 4x\n"},
  });
}

void CollectBytes(const Node& node, ByteVector& bytes) {
  bytes.insert(bytes.end(), node.bytes.begin(), node.bytes.end());
  for (const Field& field : node.fields) bytes.insert(bytes.end(), field.bytes.begin(), field.bytes.end());
  for (const Node& child : node.children) CollectBytes(child, bytes);
}

// No byte hides, and none is too much: whichever is changed, the bytes that stand beside the fields are others.
TEST(Describe, EveryByteIsShown) {
  std::vector<ByteVector> images = {EveryDisplayIdBlock()};
  for (const Sample& sample : Samples()) images.push_back(sample.build());
  const auto shown = [](const ByteVector& bytes) {
    ByteVector all;
    const Node account = DescribeImage(Image::FromBytes("x", bytes));
    EXPECT_GT(ToText(account).size(), 1000u);
    CollectBytes(account, all);
    return all;
  };
  test::Quietly([&] {
    for (ByteVector& image : images) {
      const ByteVector before = shown(image);
      for (size_t i = 8; i < image.size(); ++i) {
        for (const uint8_t flipped : ByteVector{static_cast<uint8_t>(1u << i % 8), 0x1F, 0xFF}) {
          image[i] ^= flipped;
          EXPECT_NE(shown(image), before) << "byte " << i;
          image[i] ^= flipped;
        }
      }
    }
  });
}

// A serial number in each place that can have one: byte for byte, or as text.
TEST(Describe, PrivateHidesOneUnit) {
  const ByteVector serial = {0xA1, 0xB2, 0xC3, 0xD4};
  const ByteVector text = {'S', 'N', '7', '3', '9', '1', '\n'};
  const ByteVector product = {'A', 'B', 'C', 1, 2, 0xA1, 0xB2, 0xC3, 0xD4, 7, 8, 2, 'n', 'm'};
  const std::vector<std::pair<const char*, Edid>> cases = {
      {"base block", Edid().Set(12, serial)},
      {"descriptor", Edid().Descriptor(0xFF, Concat({{0}, text}))},
      {"descriptor that is not decoded", Edid().Descriptor(0xFF, Concat({{1}, text}))},
      {"product 1.x", Edid().Extension(Section().Block(0, 0, product))},
      {"product 2.0", Edid().Extension(Section(0x20).Block(0x20, 0, product))},
      {"product that is not decoded",
       Edid().Extension(Section(0x20).Block(0x20, 0, Concat({{1, 2, 3, 4, 5}, serial})))},
      {"serial number block", Edid().Extension(Section().Block(0x0A, 0, text))},
      {"tile", Edid().Extension(Section().Block(0x12, 0, serial))},
      {"tile that is decoded",
       Edid().Extension(Section().Block(
           0x12, 0, Concat({{0xC2, 0x10, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 'A', 'B', 'C', 1, 2}, serial})))},
      {"Apple's block", Edid().Extension(Section().Block(0x7F, 0x81, Concat({{0xFA, 0x10, 0, 3}, text})))},
      {"tile 2.0", Edid().Extension(Section(0x20).Block(0x28, 0, serial))},
      {"ContainerID", Edid().Extension(Section(0x20).Block(0x29, 0, serial))},
      {"ContainerID in a vendor block that is decoded",
       Edid().Extension(Cta().Block(3, Concat({{0x5C, 0x12, 0xCA, 3, 0x45}, serial, ByteVector(12)})))},
      {"ContainerID in a vendor block", Edid().Extension(Cta().Block(3, Concat({{0x5C, 0x12, 0xCA, 3, 7}, serial})))},
      {"section that does not open", Edid().Extension(Section(0).Block(0x0A, 0, serial))},
      {"behind the data blocks", Edid().Extension(Cta().Vdb({16}).Block(0, serial))},
  };
  for (const auto& [name, edid] : cases) {
    SCOPED_TRACE(name);
    const auto tellsSerial = [](const std::string& output) {
      for (const char* words : {"a1 b2", "c3 d4", "a1b2", "3569595041", "d4c3b2a1", "SN7391", "53 4e", "39 31"}) {
        if (output.find(words) != output.npos) return true;
      }
      return false;
    };
    Node account;
    const ByteVector bytes = edid.Build();
    test::Quietly([&] { account = DescribeImage(Image::FromBytes("x", bytes)); });
    EXPECT_TRUE(tellsSerial(ToText(account, {100, false, true})) && tellsSerial(JsonText(ToJson(account))));
    HidePrivate(account);
    const Json json = ToJson(account, true);
    EXPECT_FALSE(tellsSerial(ToText(account)) || tellsSerial(ToText(account, {100, false, true})));
    EXPECT_FALSE(tellsSerial(JsonText(ToJson(account))) || tellsSerial(JsonText(json))) << JsonText(json);
    EXPECT_TRUE(json["parts"][0]["record"]["checksum"].is_null());
    EXPECT_EQ(json["parts"][0]["text"]["Checksum"], "right");
  }
}

// JSON tells what the text tells, by the records' field names, and survives any byte of a text.
TEST(Describe, Json) {
  const ByteVector bytes = Edid().Name("\xFF\"x").Extension(Cta().Vdb({0x90, 97}).Extended(14, {96})).Build();
  const Json json = Json::parse(JsonText(ToJson(DescribeImage(Image::FromBytes("x", bytes)))));
  const Json& video = json["parts"][1]["parts"][0];
  EXPECT_EQ(video["record"]["vics"], Json({16, 97}));
  EXPECT_EQ(video["record"]["nativeVic"], 16);
  EXPECT_EQ(video["timings"][1]["timing"]["pixelClock"], 594000);
  EXPECT_EQ(json["parts"][1]["parts"][1]["timings"][0]["kind"], "vic420");
  EXPECT_EQ(json["parts"][0]["record"]["revision"], 4);
  EXPECT_EQ(json["parts"][0]["parts"][0]["record"]["text"], "\\xff\"x");
}

TEST(Image, FaultsOfBlock0AreNamedAndMended) {
  const struct {
    uint8_t count;
    Cta cta;
    std::string faults;
  } cases[] = {
      {1, Cta().Vdb({16}), ""},
      {7, Cta().Vdb({16}), "count byte 7, but 1 follow"},
      {3, Cta().Extended(0x78, {1}), "count byte 3, but 1 follow"},
  };
  for (const auto& c : cases) {
    ByteVector bytes = Edid().Extension(c.cta).Build();
    bytes[126] = c.count;
    Image image = Image::FromBytes("x", bytes);
    EXPECT_NE(image.firstBlockFaults().find(c.faults), std::string::npos) << image.firstBlockFaults();
    EXPECT_EQ(image.firstBlockFaults().empty(), c.faults.empty());
    Notes notes;
    EXPECT_EQ(image.Generate(notes), Edid().Extension(c.cta).Build());
  }
}

// The HDMI Forum's override tells the number of extensions beside a count byte of 1; each block has its checksum.
TEST(Image, FaultsOfAllBlocks) {
  const auto image = [](uint8_t count, size_t spoiled) {
    ByteVector bytes = Edid().Extension(Cta().Extended(0x78, {2})).Extension(Cta()).Build();
    bytes[127] = static_cast<uint8_t>(bytes[127] + bytes[126] - count);
    bytes[126] = count;
    if (spoiled != 0) ++bytes[spoiled];
    return bytes;
  };
  const std::pair<ByteVector, Notes> cases[] = {
      {image(1, 0), {}},
      {image(2, 0), {"block 0: count byte 2, must be 1 beside the HDMI Forum's override block"}},
      {image(1, 300), {"block 2: checksum "}},
      {image(1, 134), {"block 0: override count 3, but 2 follow", "block 1: checksum"}},
  };
  for (const auto& [bytes, faults] : cases) {
    const Image opened = Image::FromBytes("x", bytes);
    ASSERT_EQ(opened.faults().size(), faults.size());
    for (size_t i = 0; i < faults.size(); ++i) EXPECT_EQ(opened.faults()[i].substr(0, faults[i].size()), faults[i]);
    Notes notes;
    EXPECT_EQ(Image::FromBytes("x", opened.Generate(notes)).faults(), Notes());
    EXPECT_EQ(notes.empty(), faults.empty());
  }
}

// An interlaced field has half a line more than its descriptor says.
TEST(Describe, InterlacedRate) {
  const DtdSlot slot = test::SlotOf({74250, 1920, 280, 88, 44, 540, 22, 2, 5, 1, 1, 1, 60, 8, 0, 0, 0, 0, 0});
  EXPECT_EQ(DescribeDtd("x", slot, ByteSource(slot.bytes)).title, "x: 1920x1080i 60.000 Hz 74.250 MHz");
}

}  // namespace
}  // namespace reedid::document
