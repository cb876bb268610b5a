#include "document/read/hex_text.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <string>

#include "document/error.h"
#include "document/read/samples.h"

namespace reedid::document {
namespace {

const char kShort[] = "00 ff 10 2a";
const std::string kEdid = "00ffffffffffff0048a4";
const std::string kEdidSpaced = "00 ff ff ff ff ff ff 00 48 a4";

// The bytes that a text stands for, or why it is refused.
std::string Parsed(const std::string& text) {
  try {
    return Hex(ParseHexText(text));
  } catch (const Error& error) {
    EXPECT_EQ(error.kind(), ErrorKind::kInput);
    return error.what();
  }
}

TEST(HexText, Forms) {
  const struct {
    const char* name;
    std::string text;
    std::string bytes;
  } cases[] = {
      {"plain", "00ff102a", kShort},
      {"upper case, CRLF, byte order mark", "\xEF\xBB\xBF\r\n00 FF\r\n10 2A\r\n", kShort},
      {"prefixes", "0x00, 0xff, 0x10, 0x2A", kShort},
      {"prefixes without a leading zero", "0x0 0xff 0x10 0x2a", kShort},
      {"escapes", R"("\x00\xff\x10" "\x2a")", kShort},
      {"colons are no offsets here", "00:ff:10:2a", kShort},
      {"comments", "00 ff # header\n10 /* ff */ 2a // ff\n", kShort},
      {"C array", "static const uint8_t beef[4] = {0x00, 0xFF, 0x10, 0x2a};\nunsigned int beef_len = 4;\n", kShort},
      {"C array with a comment of digits", "char e[] = { /* 00 { */ 0x00, 0xff, // 0xaa\n 0x10, 0x2a, };", kShort},
      {"C array, decimal", "{0, 255, 16, 42}", kShort},
      {"in a log", "HDMI-1 connected\n\tEDID:\n\t\t00ffffffffffff00\n\t\t48a4\n\tBroadcast RGB: on\n", kEdidSpaced},
      {"xxd of less than a row", "00000000: 00ff 102a                                ...*\n", kShort},
      {"xxd whose text looks like digits", "00000000: 6162 6364  abcd\n00000004: 6162       ab\n", "61 62 63 64 61 62"},
      {"decimal offsets", "0000: 00 01 02 03 04 05 06 07 08 09\n0010: 0a\n", "00 01 02 03 04 05 06 07 08 09 0a"},
      {"a heading and a gap in the row", "     0  1   2  3\n00: 00 ff  10 2a   ..\n04: 00 ff  10       .\n",
       "00 ff 10 2a 00 ff 10"},
      {"words of a little-endian machine", "0000000 ff00 ffff ffff 00ff a448\n000000a\n", kEdidSpaced},
      {"nothing", " \n", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(Parsed(c.text), c.bytes) << c.name;
}

TEST(HexText, ErrorsNameTheLineAndNoByteIsGuessed) {
  const struct {
    const char* name;
    std::string text;
    const char* message;
  } cases[] = {
      {"odd digits", "00 ff\n123\n", "line 2: '123' is not hexadecimal"},
      {"damaged line behind an EDID", kEdid + "\n00112233 4g\n", "line 2: '4g' is not hexadecimal"},
      {"two EDIDs", "a:\n" + kEdid + "\nz:\n" + kEdid, "digits of 2 EDIDs"},
      {"an EDID with text in its midst", kEdid + "\nzz\n0011\n", "text in its midst"},
      {"prose", "this is no EDID", "'this' is not hexadecimal"},
      {"array too wide", "{0x00, 0x1ff}", "'0x1ff' in the array is no byte"},
      {"array, octal or hexadecimal", "x\n{0, 010}", "line 2: '010' in the array"},
      {"array without end", "{0x00", "no '}'"},
      {"two arrays that are no EDIDs", "{0x00} {0x01}", "2 arrays, not all of which"},
      {"an array in an array", "\n{{0x00}}", "line 2: an array inside"},
      {"dump with a row missing", "00: 00 01\n02: 02 03\n06: 06 07\n", "do not fit their offsets"},
      {"dump with a bad last row", "00: 00 01\n02: 0g\n", "do not fit their offsets"},
      {"dump going back", "10: 00 01\n02: 02 03\n", "do not fit their offsets"},
      {"dump with an endless repeat", "00000000  00 00\n*\nffffffff0\n", "do not fit their offsets"},
      {"dump with text between", "00: 00 01\nend of block\n02: 02 03\n", "line 2: 'end of block'"},
      {"dump with a damaged row", "00: 00 01 02 03\n0g: 04 05 0607\n00: 00 01 02 03\n", "line 2: '0g: 04 05 0607'"},
      {"dump with text behind it", "0000 00 01\n0002\n$ ", "line 3: '$' is no row"},
  };
  for (const auto& c : cases) EXPECT_NE(Parsed(c.text).find(c.message), std::string::npos) << c.name;
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

// Pasted together they are as many images as they were before.
TEST(HexText, SeveralEdids) {
  const ByteVector first = SampleBytes("dvi"), second = SampleBytes("tv-4k");
  const std::vector<ByteVector> both = {first, second};
  ByteVector joined = first;
  joined.insert(joined.end(), second.begin(), second.end());
  const std::pair<const char*, std::string> texts[] = {
      {"digits", HexRows(first) + HexRows(second)},
      {"a gap", HexRows(first) + "\n\n" + HexRows(second)},
      {"words between", "HDMI-1:\n" + HexRows(first) + "DP-2:\n" + HexRows(second)},
      {"a dump of both", Dump(joined, "{:08x}:", " {:02x}", "", false)},
      {"two arrays", "uint8_t a[] =" + CArray(first) + "unsigned size = 128;\nuint8_t b[] =\n" + CArray(second)},
      {"two dumps behind words", "$ xxd a\n" + Dump(first, "{:08x}:", " {:02x}", "  {}", false) + "$ xxd b\n" +
                                     Dump(second, "{:08x}:", " {:02x}", "  {}", false)},
      {"two bare dumps behind words", "$ hexdump -C a\n" + Dump(first, "{:08x} ", " {:02x}", "  |{}|", true) +
                                          "$ hexdump -C b\n" + Dump(second, "{:08x} ", " {:02x}", "  |{}|", true)},
      {"two dumps", Dump(first, "{:08x} ", " {:02x}", "  |{}|", true) + Dump(second, "{:08x} ", " {:02x}", "", true)},
  };
  for (const auto& [name, text] : texts) EXPECT_EQ(ParseHexTexts(text), both) << name;
  EXPECT_EQ(ParseHexTexts(" \n"), std::vector<ByteVector>());
}

TEST(HexText, WholeImagesComeBack) {
  for (const Sample& sample : Samples()) {
    const ByteVector bytes = sample.build();
    for (const std::string& text : {
             HexRows(bytes),
             CArray(bytes),
             Dump(bytes, "{:08x} ", " {:02x}", "  |{}|", true),  // hexdump -C
             Dump(bytes, "{:07o}", " {:02x}", "", true),         // od -t x1
             Dump(bytes, "{:07}", " {:02x}", "  >{}<", true),    // od -A d -t x1z
             Dump(bytes, "{:08x}:", " {:02x}", "  {}", false),   // xxd -g1
             Dump(bytes, "0x{:04x}:", " {:02X}", "", false),
         }) {
      EXPECT_EQ(ParseHexText(text), bytes) << sample.name << '\n' << text;
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
        refused += Parsed(damaged).find_first_not_of("0123456789abcdef ") != std::string::npos;
      }
    }
  }
  EXPECT_GT(refused, whole.size());
}

TEST(HexText, TextIsToldFromBytes) {
  for (const Sample& sample : Samples()) EXPECT_FALSE(LooksLikeText(sample.build())) << sample.name;
  EXPECT_FALSE(LooksLikeText(ByteVector{0x20, 0x79, 0x03, 0x00}));  // a DisplayID 2.0 section begins with a blank
  const std::string text = "\t00 ff\r\n\xC3\xA9";
  EXPECT_TRUE(LooksLikeText(ByteVector(text.begin(), text.end())));
}

}  // namespace
}  // namespace reedid::document
