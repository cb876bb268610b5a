// What an image states wrongly, told by rules: each a condition on the bytes, with the standard that it follows from and
// the reason why somebody should care. Nothing here reads files, prints, or asks the clock.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace reedid::document {

namespace check {
struct ImageView;
class Report;
}  // namespace check

enum class Severity {
  kNote,     // worth knowing
  kWarning,  // contradicts the standard
  kError,    // a source may misbehave
};

// The order in which rules are listed.
enum class RuleGroup { kIdentity, kTimings, kLimits, kHdmi, kAudio, kHdrAndColor, kDisplayId, kStructure };

// Which images a rule looks at: most of them ask the base block and its extensions.
enum class RuleScope { kEdid, kAny };

struct Rule {
  const char* id;  // of lower-case words and hyphens; stays the same for ever
  Severity severity;
  RuleGroup group;
  RuleScope scope;
  const char* standard;     // where the standards say so
  const char* why;          // what it costs, in one sentence
  const char* explanation;  // when it is broken, in a paragraph
  const char* advice;       // what to do about it
  void (*run)(const check::ImageView& view, check::Report& report);
};

// Where a finding stands.
struct Place {
  size_t at = 0;                      // byte of the image
  unsigned block = 0;                 // EDID block, or section of a standalone DisplayID
  unsigned byte = 0;                  // byte of that block
  std::optional<unsigned> slot;       // descriptor of the base block, 0..3
  std::optional<unsigned> dataBlock;  // data block of the extension or section, from 0
  std::optional<unsigned> timing;     // detailed timing of the image, from 1
};

// "block 1, data block 2, byte 9"
std::string ToText(const Place& place);

enum class Repair {
  kNone,  // only a person can know what is right
  kSafe,  // changes nothing that the display says
  kAsk,   // changes what the display says, so it must be asked for by name
};

// Bytes to write in order to mend a finding. Checksums follow by themselves.
struct Patch {
  size_t at;
  std::vector<uint8_t> bytes;
};

struct Finding {
  const Rule* rule;
  Severity severity;  // of the rule, or a milder one of this case
  Place place;
  std::string values;  // what led to it; never a serial number or its text
  Repair repair = Repair::kNone;
  std::vector<Patch> changes = {};  // what the repair writes

  // Gives the finding its repair; no changes, no repair.
  Finding& Mend(Repair kind, std::vector<Patch> bytes);
};

// All rules, by group.
std::span<const Rule* const> Rules();

// Null when there is no rule of that name.
const Rule* FindRule(std::string_view id);

const char* ToText(Severity severity);
const char* ToText(RuleGroup group);
const char* ToText(Repair repair);

// All findings of an image, in the order of the rules. An image that begins with the EDID header is looked at in whole
// blocks, what does not fill a block is ignored; any other is a chain of DisplayID sections. `thisYear` is what dates
// are held to. Each repair was tried: one that would not mend its finding, or would break a rule, is none.
std::vector<Finding> Check(std::span<const uint8_t> image, int thisYear);

}  // namespace reedid::document
