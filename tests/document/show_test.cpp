// Findings beside the lines of an account, and the list of its data blocks.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "document/account/block_list.h"
#include "document/account/image_account.h"
#include "document/account/tree_json.h"
#include "document/account/tree_text.h"
#include "document/check/marks.h"
#include "document/read/samples.h"
#include "tests/support/edid_builder.h"
#include "tests/support/log_capture.h"

namespace reedid::document {
namespace {

using test::Cta;
using test::Edid;
using test::Section;

Node Account(const ByteVector& bytes) {
  Node account;
  test::Quietly([&] { account = DescribeImage(Image::FromBytes("x", bytes)); });
  return account;
}

Node Marked(const ByteVector& bytes) {
  Node account = Account(bytes);
  MarkFindings(Check(bytes, 2026), account);
  return account;
}

// A finding follows the line whose bytes it is about, whatever block that stands in.
TEST(Marks, StandBesideTheirLine) {
  ByteVector checksum = Edid().Build(), extension = Edid().Extension(Cta().Vdb({16})).Build();
  checksum[127] ^= 1;
  extension[255] ^= 1;
  const struct {
    ByteVector bytes;
    std::string line, finding;
  } cases[] = {
      {Edid().Set(12, {1, 0, 0, 0}).Build(), "1 (0x00000001)", "! note serial-placeholder: "},
      {checksum, "wrong (must be", "! error block-checksum: "},
      {extension, "wrong (must be", "! error block-checksum: "},
      {Edid().Extension(Cta().Vdb({16, 4, 16})).Build(), "VIC 4   1280x720 60.000 Hz 74.250 MHz 16:9\n      VIC 16",
       "! warning vic-duplicate: "},
  };
  for (const auto& c : cases) {
    const std::string text = ToText(Marked(c.bytes));
    const size_t next = text.find('\n', text.find(c.line) + c.line.size());
    ASSERT_NE(next, std::string::npos) << text;
    EXPECT_EQ(text.substr(text.find_first_not_of(" \n", next), c.finding.size()), c.finding) << text;
  }
}

TEST(Marks, AreInJsonAndHidden) {
  Node account = Marked(Edid().Set(12, {1, 0, 0, 0}).Build());
  const auto serial = [&] {
    const Json json = ToJson(account);
    for (const Json& finding : json["parts"][0]["findings"]) {
      if (finding["field"] == "Serial number") return finding;
    }
    return Json();
  };
  EXPECT_EQ(serial()["rule"], "serial-placeholder");
  EXPECT_EQ(serial()["severity"], "note");
  EXPECT_NE(serial()["values"], kHidden);
  HidePrivate(account);
  EXPECT_EQ(serial()["values"], kHidden);
}

// Every finding has its place in the account: none is lost.
TEST(Marks, NoneIsLost) {
  for (const Sample& sample : Samples()) {
    for (size_t at = 8; at < 256; at += 5) {
      ByteVector bytes = sample.build();
      bytes[8 + at % (bytes.size() - 8)] ^= 0x55;
      const std::vector<Finding> findings = Check(bytes, 2026);
      Node account = Account(bytes);
      MarkFindings(findings, account);
      const std::string text = ToText(account, {2000, false, false});
      for (const Finding& finding : findings) {
        const std::string mark = std::string("! ") + ToText(finding.severity) + " " + finding.rule->id + ": ";
        EXPECT_NE(text.find(mark), std::string::npos) << sample.name << " " << at << ": " << mark;
      }
    }
  }
}

// Rows tell the bytes where a block stands: its header has its size, and the next one follows it.
TEST(BlockList, HasTheBlocksInTheirPlaces) {
  for (const Sample& sample : Samples()) {
    SCOPED_TRACE(sample.name);
    const ByteVector bytes = sample.build();
    const std::vector<BlockRow> rows = BlockRows(Account(bytes));
    ASSERT_GT(rows.size(), 3u);
    for (const BlockRow& row : rows) {
      EXPECT_FALSE(row.meaning.empty() && row.kind != "Dummy (10)") << row.kind;
      const uint8_t* at = &bytes[128 * row.block + row.extent.offset];
      if (row.extent.size == 18) continue;
      EXPECT_EQ(row.extent.size, bytes[128 * row.block] == 2 ? 1u + (at[0] & 0x1F) : 3u + at[2]) << row.kind;
    }
  }
}

TEST(BlockList, TellsWhatPeopleLookFor) {
  const Edid edid = Edid()
                        .Name("TV")
                        .Descriptor(0xFF, {0, 'S', '7'})
                        .Extension(Cta().Vdb({16, 97}).Block(3, {0x1A, 0, 0, 1, 1, 48, 75, 0}))
                        .Extension(Section().Block(0x0A, 0, {'S', '7'}));
  Node account = Account(edid.Build());
  const std::string table = BlockTable(BlockRows(account), 200);
  for (const char* row :
       {"Product name (fc)  ", "  TV\n", "Video Data Block (2)  ", "  VIC 16, 97\n",
        "    1     7     9  Vendor-Specific Data Block (3), AMD FreeSync  FreeSync 48 to 75 Hz\n", "S7"}) {
    EXPECT_NE(table.find(row), std::string::npos) << row << table;
  }
  HidePrivate(account);
  const std::vector<BlockRow> rows = BlockRows(account);
  EXPECT_EQ(BlockTable(rows, 200).find("S7"), std::string::npos);
  EXPECT_EQ(JsonText(BlockListJson(rows)).find("S7"), std::string::npos);
  EXPECT_EQ(BlockListJson(rows)[0]["byte"], 54);
}

// Who has no block of his own here is named as the IEEE's list has him.
TEST(Vendors, HaveTheirRegisteredNames) {
  const std::string path = ::testing::TempDir() + "reedid-oui.txt";
  std::ofstream(path) << "OUI\r\n00-0C-6E   (hex)\t\tSome Maker Inc.\r\n000C6E     (base 16)\t\tSome Maker Inc.\r\n";
  setenv("REEDID_OUI_TXT", path.c_str(), 1);
  const Node account = Account(Edid().Extension(Cta().Block(3, {0x6E, 0x0C, 0, 9}).Block(3, {1, 2, 3})).Build());
  const std::vector<Node>& blocks = account.children[1].children;
  EXPECT_EQ(blocks[0].title, "Vendor-Specific Data Block (3), OUI 00-0c-6e (Some Maker Inc.)");
  EXPECT_EQ(blocks[0].label, "Vendor-Specific Data Block (3), 00-0c-6e");  // the same on every machine
  EXPECT_EQ(blocks[1].title, "Vendor-Specific Data Block (3), OUI 03-02-01");
  unsetenv("REEDID_OUI_TXT");
  std::remove(path.c_str());
}

}  // namespace
}  // namespace reedid::document
