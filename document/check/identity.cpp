// Who the display says that it is: maker, product, serial number, date, version, and the texts of its descriptors.
#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "document/check/draft.h"
#include "document/check/image_view.h"
#include "document/check/report.h"
#include "document/check/text_descriptor.h"

namespace reedid::document::check {
namespace {

void EdidVersion(const ImageView& view, Report& report) {
  if (view.image[0x12] == 1 && view.minor <= 4) return;
  report.Add(view.PlaceAt(0x12), fmt::format("version {}.{}", view.image[0x12], view.minor));
}

void VendorProductId(const ImageView& view, Report& report) {
  const unsigned letters = view.image[0x08] << 8 | view.image[0x09];
  bool areLetters = true;
  for (const unsigned shift : {0u, 5u, 10u}) {
    const unsigned letter = letters >> shift & 0x1F;
    areLetters = areLetters && letter >= 1 && letter <= 26;
  }
  if ((letters & 0x8000) != 0 || !areLetters) {
    report.Add(view.PlaceAt(0x08), fmt::format("the maker's code {:04x} is not made of three letters", letters));
  }
  if (view.image.Little(0x0A, 2) == 0) report.Add(view.PlaceAt(0x0A), "product code 0");
}

void SerialPlaceholder(const ImageView& view, Report& report) {
  constexpr unsigned kPlaceholders[] = {1, 6666, 8888, 1010101, 20000080, 0x5445, 0x01010101, 0x80000000};
  if (std::ranges::find(kPlaceholders, view.image.Little(0x0C, 4)) == std::end(kPlaceholders)) return;
  Draft draft(view);
  draft.Fill(0x0C, 4, 0);
  report.Add(view.PlaceAt(0x0C), "the serial number is one that many displays share")
      .Mend(Repair::kAsk, draft.Changes());
}

void DateImplausible(const ImageView& view, Report& report) {
  const unsigned week = view.image[0x10];
  const bool isModelYear = week == 0xFF;
  const bool tooNew = view.minor < 4 && (week == 54 || isModelYear);  // both came with EDID 1.4
  if ((week > 54 && !isModelYear) || tooNew) {
    Draft draft(view);
    draft[0x10] = 0;
    report.Add(view.PlaceAt(0x10), fmt::format("week {} in an EDID 1.{}", week, view.minor))
        .Mend(Repair::kSafe, draft.Changes());
  }
  const int year = 1990 + static_cast<int>(view.image[0x11]);
  if (year > view.thisYear + 1) {
    report.Add(view.PlaceAt(0x11), fmt::format("year {}, which is still to come", year));
  } else if (view.minor >= 4 && year < 2006) {
    report.Add(view.PlaceAt(0x11), fmt::format("year {}, but EDID 1.4 is of 2006", year));
  }
}

void NameMissing(const ImageView& view, Report& report) {
  if (view.minor != 3 ||
      std::ranges::find(view.slots, unsigned{EDID_DESCRIPTOR_PRODUCT_NAME}, &Slot::tag) != view.slots.end())
    return;
  report.Add(view.PlaceAt(0x36), "an EDID 1.3 without a display product name");
}

void ReportText(const ImageView& view, Report& report, const Slot& slot, const TextDescriptor& text,
                std::string values) {
  Draft draft(view);
  for (size_t i = 0; i < kTextSize; ++i) draft[slot.at + 5 + i] = text.Rewritten()[i];
  report.Add(PlaceOf(view, slot), std::move(values)).Mend(Repair::kSafe, draft.Changes());
}

void TextTrailingSpace(const ImageView& view, Report& report) {
  for (const Slot& slot : view.slots) {
    const TextDescriptor text(slot.bytes);
    if (!slot.isText || text.isBlank() || text.terminator() != 0x0A || text.Byte(text.length() - 1) != 0x20) continue;
    ReportText(view, report, slot, text, "spaces before the line feed");
  }
}

void TextFormat(const ImageView& view, Report& report) {
  for (const Slot& slot : view.slots) {
    const TextDescriptor text(slot.bytes);
    if (!slot.isText) continue;
    const unsigned end = text.terminator();
    if (!text.isBlank() && (end == 0x00 || end == 0xFF)) {
      ReportText(view, report, slot, text, fmt::format("the text ends with {:02x} and not with a line feed", end));
    } else if (!text.isBlank() && end == text.kNone && text.Byte(kTextSize - 1) == 0x20) {
      ReportText(view, report, slot, text, "the text is filled up with spaces, without a line feed");
    } else if (end == 0x0A && !text.IsPadded()) {
      ReportText(view, report, slot, text, "something other than spaces behind the line feed");
    }
  }
}

void TextEmpty(const ImageView& view, Report& report) {
  for (const Slot& slot : view.slots) {
    if (!slot.isText || !TextDescriptor(slot.bytes).isBlank()) continue;
    Draft draft(view);
    if (slot.tag != EDID_DESCRIPTOR_PRODUCT_NAME) {
      draft.Fill(slot.at, kSlotSize, 0);
      draft[slot.at + 3] = 0x10;
    }
    report.Add(PlaceOf(view, slot), fmt::format("descriptor {:02x} without text", slot.tag))
        .Mend(Repair::kAsk, draft.Changes());
  }
}

void SerialStringPlaceholder(const ImageView& view, Report& report) {
  constexpr std::string_view kPlaceholders[] = {
      "na",           "n/a",           "NA",           "Serial Number", "SerialNumber", "Serial_Number", "20000080",
      "121212121212", "1234567890123", "SN-000000001", "demoset-1",     "H1AK500000"};
  for (const Slot& slot : view.slots) {
    if (!slot.isText || slot.tag != EDID_DESCRIPTOR_SERIAL_NUMBER) continue;
    const TextDescriptor text(slot.bytes);
    const std::string content = text.Content();
    const bool isFill = content.find_first_not_of(" 01") == content.npos;
    if (text.isBlank() || (!isFill && std::ranges::find(kPlaceholders, content) == std::end(kPlaceholders))) continue;
    report.Add(PlaceOf(view, slot), "the serial number text is one that many displays share");
  }
}

constexpr Severity kNote = Severity::kNote, kWarning = Severity::kWarning;
constexpr RuleGroup kGroup = RuleGroup::kIdentity;
constexpr RuleScope kEdid = RuleScope::kEdid;

constexpr Rule kRules[] = {
    {"edid-version", kWarning, kGroup, kEdid, "EDID 1.4, 3.5",
     "Readers that know versions 1.0 to 1.4 only may refuse the whole EDID.",
     "The version byte is not 1 or the revision is above 4. No such EDID was ever defined: 1.4 is the last of its "
     "family, "
     "and everything newer stands in extensions.",
     "Write the version by whose rules the base block was made, 1.3 or 1.4.", EdidVersion},
    {"vendor-product-id", kNote, kGroup, kEdid, "EDID 1.4, 3.4",
     "Systems tell displays apart, and find settings and drivers, by maker and product.",
     "The maker is three letters of five bits each, 1 to 26, below a bit that is 0; the product code tells the maker's "
     "models apart. The rule is broken by another value in a letter, by the high bit, and by a product code of 0.",
     "Use the maker's registered three letters and a product code of its own for each model.", VendorProductId},
    {"serial-placeholder", kNote, kGroup, kEdid, "EDID 1.4, 3.4",
     "Systems that remember settings by serial number mix up two displays with the same one.",
     "The serial number is a number that factories write when they write none, and that thousands of displays share. "
     "A display without a number of its own states 0, which says that the field is not used.",
     "Give each display its own number, or 0.", SerialPlaceholder},
    {"date-implausible", kWarning, kGroup, kEdid, "EDID 1.4, 3.4; E-EDID A.1 (EDID 1.3)",
     "A wrong date shows that the field was never set, and confuses inventories.",
     "Weeks go to 54, and 255 marks a model year; both 54 and 255 are new in EDID 1.4. The year is counted from 1990: "
     "it "
     "is broken when it lies beyond next year, or before 2006 in an EDID 1.4, which did not exist then.",
     "Write week 0 (not stated) when the week is not known, and the true year.", DateImplausible},
    {"name-missing", kWarning, kGroup, kEdid, "E-EDID A.1 (EDID 1.3)",
     "Without a name people see a three-letter code in their settings.",
     "EDID 1.3 asks for a display product name descriptor (tag FC). From EDID 1.4 on it may be left out, as most "
     "panels "
     "of laptops do.",
     "Add a name descriptor in a free slot.", NameMissing},
    {"text-format", kWarning, kGroup, kEdid, "EDID 1.4, 3.10.3",
     "A reader that takes the standard at its word shows the rest as part of the name.",
     "A text of fewer than 13 characters ends with a line feed (0A) and is filled up with spaces. The rule is broken "
     "when "
     "it ends with 00 or FF, when spaces alone fill it up, and when something else follows the line feed. Texts of 13 "
     "characters have no line feed.",
     "End the text with 0A and fill up with 20.", TextFormat},
    {"text-trailing-space", kNote, kGroup, kEdid, "EDID 1.4, 3.10.3",
     "The space becomes part of the name, and names that differ by it are not found.",
     "A space stands before the line feed that ends a text. It counts as a character.",
     "Move the line feed up to the last letter.", TextTrailingSpace},
    {"text-empty", kNote, kGroup, kEdid, "EDID 1.4, 3.10.3",
     "A slot is spent on nothing, and a name of no letters is shown.",
     "A name, serial number or text descriptor holds only spaces or nothing at all. For a slot that is not used there "
     "is "
     "the dummy descriptor, tag 10.",
     "Write the text, or make the slot a dummy descriptor.", TextEmpty},
    {"serial-string-placeholder", kNote, kGroup, kEdid, "EDID 1.4, 3.10.3.1",
     "Systems that tell displays apart by this text mix them up.",
     "The text of the serial number descriptor (tag FF) is zeros and ones, or one of the words that factories leave "
     "there.",
     "Write the display's own number, or leave the descriptor out.", SerialStringPlaceholder},
};

}  // namespace

std::span<const Rule> IdentityRules() {
  return kRules;
}

}  // namespace reedid::document::check
