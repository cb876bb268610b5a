#include "tools/reedid/hex_text.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "tools/reedid/samples.h"

namespace reedid::tool {
namespace {

const char kShort[] = "00 ff 10 2a";
const ByteVector kShortBytes = {0x00, 0xFF, 0x10, 0x2A};
const std::string kEdid = "00ffffffffffff0048a4";
const ByteVector kEdidBytes = {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x48, 0xA4};

TEST(HexText, Forms) {
  const struct {
    const char* name;
    std::string text;
    ByteVector bytes;
  } cases[] = {
      {"plain", "00ff102a", kShortBytes},
      {"spaces", kShort, kShortBytes},
      {"upper case, CRLF, byte order mark",
       "\xEF\xBB\xBF"
       "00 FF\r\n10 2A\r\n",
       kShortBytes},
      {"prefixes", "0x00, 0xff, 0x10, 0x2A", kShortBytes},
      {"prefixes without a leading zero", "0x0 0xff 0x10 0x2a", kShortBytes},
      {"escapes", R"("\x00\xff\x10" "\x2a")", kShortBytes},
      {"colons are no offsets here", "00:ff:10:2a", kShortBytes},
      {"comments", "00 ff # header\n10 /* ff */ 2a // ff\n", kShortBytes},
      {"C array", "static const uint8_t beef[4] = {0x00, 0xFF, 0x10, 0x2a};\nunsigned int beef_len = 4;\n",
       kShortBytes},
      {"C array with a comment of digits", "char e[] = { /* 00 { */ 0x00, 0xff, // 0xaa\n 0x10, 0x2a, };", kShortBytes},
      {"C array, decimal", "{0, 255, 16, 42}", kShortBytes},
      {"in a log", "HDMI-1 connected\n\tEDID:\n\t\t00ffffffffffff00\n\t\t48a4\n\tBroadcast RGB: on\n", kEdidBytes},
      {"in a log, an empty line between blocks", "edid (hex):\n\n00ffffffffffff00\n\n48a4\n", kEdidBytes},
      {"xxd of less than a row", "00000000: 00ff 102a                                ...*\n", kShortBytes},
      {"xxd whose text looks like digits",
       "00000000: 6162 6364  abcd\n00000004: 6162       ab\n",
       {0x61, 0x62, 0x63, 0x64, 0x61, 0x62}},
      {"decimal offsets",
       "0000: 00 01 02 03 04 05 06 07 08 09\n0010: 0a 0b 0c\n",
       {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}},
      {"a heading and a gap in the row",
       "     0  1   2  3\n00: 00 ff  10 2a   ..\n04: 00 ff  10       .\n",
       {0x00, 0xFF, 0x10, 0x2A, 0x00, 0xFF, 0x10}},
      {"words of a little-endian machine", "0000000 ff00 ffff ffff 00ff a448\n000000a\n", kEdidBytes},
      {"nothing", " \n", {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(ParseHexText(c.text), c.bytes);
  }
}

TEST(HexText, ErrorsNameTheLineAndNoByteIsGuessed) {
  const struct {
    const char* name;
    std::string text;
    const char* message;
  } cases[] = {
      {"odd digits", "00 ff\n123\n", "line 2: '123' is not hexadecimal"},
      {"one digit", "00 f", "line 1: 'f' is not hexadecimal"},
      {"damaged line behind an EDID", kEdid + "\n00112233 4g\n", "line 2: '4g' is not hexadecimal"},
      {"two EDIDs", "a:\n" + kEdid + "\nz:\n" + kEdid, "several EDIDs"},
      {"an EDID with text in its midst", kEdid + "\nzz\n0011\n", "text in its midst"},
      {"prose", "this is no EDID", "'this' is not hexadecimal"},
      {"array too wide", "{0x00, 0x1ff}", "'0x1ff' in the array is no byte"},
      {"array, octal or hexadecimal", "x\n{0, 010}", "line 2: '010' in the array"},
      {"array, negative", "{-1}", "'-1'"},
      {"array without end", "{0x00", "no '}'"},
      {"two arrays", "{0x00} {0x01}", "more than one '{'"},
      {"dump with a row missing", "00: 00 01\n02: 02 03\n06: 06 07\n", "do not fit their offsets"},
      {"dump with a byte missing", "00: 00 01\n02: 02\n04: 04 05\n", "do not fit their offsets"},
      {"dump with a byte too many", "00: 00 01\n02: 02 03 04\n04: 04 05\n", "do not fit their offsets"},
      {"dump with a bad last row", "00: 00 01\n02: 0g\n", "do not fit their offsets"},
      {"dump going back", "10: 00 01\n02: 02 03\n", "do not fit their offsets"},
      {"dump with an endless repeat", "00000000  00 00\n*\nffffffff0\n", "do not fit their offsets"},
      {"dump with text between", "00: 00 01\nend of block\n02: 02 03\n", "line 2: 'end of block'"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    try {
      ParseHexText(c.text);
      ADD_FAILURE() << "accepted";
    } catch (const ToolError& error) {
      EXPECT_EQ(error.code(), Exit::kInput);
      EXPECT_NE(std::string(error.what()).find(c.message), std::string::npos) << error.what();
    }
  }
}

// A dump as a program prints it: offsets, the bytes of a row, the row as text, and an offset at the end.
std::string Dump(const ByteVector& bytes, const char* offset, const char* byte, const char* text, bool squeeze) {
  std::string out, last;
  for (size_t i = 0; i < bytes.size(); i += 16) {
    std::string row, column;
    for (size_t j = i; j < i + 16; ++j) {
      row += fmt::format(fmt::runtime(byte), bytes[j]);
      column += bytes[j] >= 0x20 && bytes[j] < 0x7F ? static_cast<char>(bytes[j]) : '.';
    }
    row += fmt::format(fmt::runtime(text), column);
    if (!squeeze || row != last) {
      out += fmt::format(fmt::runtime(offset), i) + row + "\n";
    } else if (!out.ends_with("*\n")) {
      out += "*\n";
    }
    last = row;
  }
  return out + fmt::format(fmt::runtime(offset), bytes.size()) + "\n";
}

TEST(HexText, WholeImagesComeBack) {
  const struct {
    const char* name;
    std::function<std::string(const ByteVector&)> write;
  } forms[] = {
      {"rows", [](const ByteVector& b) { return HexRows(b); }},
      {"C array", [](const ByteVector& b) { return CArray(b); }},
      {"hexdump -C", [](const ByteVector& b) { return Dump(b, "{:08x} ", " {:02x}", "  |{}|", true); }},
      {"od -t x1", [](const ByteVector& b) { return Dump(b, "{:07o}", " {:02x}", "", true); }},
      {"od -A d -t x1z", [](const ByteVector& b) { return Dump(b, "{:07}", " {:02x}", "  >{}<", true); }},
      {"xxd -g1", [](const ByteVector& b) { return Dump(b, "{:08x}:", " {:02x}", "  {}", false); }},
      {"0x offsets", [](const ByteVector& b) { return Dump(b, "0x{:04x}:", " {:02X}", "", false); }},
  };
  for (const Sample& sample : Samples()) {
    const ByteVector bytes = sample.build();
    for (const auto& form : forms) {
      SCOPED_TRACE(fmt::format("{}, {}", sample.name, form.name));
      EXPECT_EQ(ParseHexText(form.write(bytes)), bytes);
    }
  }
}

// Damage to any character of a text must end in an error or in bytes, never in a crash.
TEST(HexText, AnyDamageIsHandled) {
  const std::string whole = Dump(SampleBytes("dvi"), "{:08x} ", " {:02x}", "  |{}|", true);
  size_t refused = 0;
  for (size_t i = 0; i < whole.size(); ++i) {
    for (const char c : {'{', '*', '\n', 'f', ':'}) {
      std::string text = whole;
      text[i] = c;
      for (const std::string& damaged : {text, text.substr(0, i)}) {
        try {
          ParseHexText(damaged);
        } catch (const ToolError&) {
          ++refused;
        }
      }
    }
  }
  EXPECT_GT(refused, whole.size());
}

TEST(HexText, TextIsToldFromBytes) {
  for (const Sample& sample : Samples()) EXPECT_FALSE(LooksLikeText(sample.build())) << sample.name;
  const std::string section20("\x20\x79\x03\x00", 4);  // a DisplayID 2.0 section begins with a blank
  EXPECT_FALSE(LooksLikeText({reinterpret_cast<const uint8_t*>(section20.data()), section20.size()}));
  const std::string text = "\t00 ff\r\n\xC3\xA9";
  EXPECT_TRUE(LooksLikeText({reinterpret_cast<const uint8_t*>(text.data()), text.size()}));
}

}  // namespace
}  // namespace reedid::tool
