// The kinds of part that an EDID consists of: what tells them apart, and how their bytes become keys of the text and back.
// One row for each kind; everything else here is the same for all.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "document/bytes.h"
#include "document/text/fields.h"
#include "reedid/reedid.h"

namespace reedid::document::text {

using Bytes = std::span<const uint8_t>;

// What a part has to know of the image around it.
struct Context {
  VesaBlock base = {};    // EDID version and continuous frequencies, by which range limits are read
  ByteVector svds = {};   // the short video descriptors of the extension, which a capability map counts
  size_t extensions = 0;  // blocks or sections behind the first
  bool all = false;       // write the fields that are 0, too
};

struct Kind;

// How a kind is written.
struct Form {
  // The keys that bytes of the kind stand for; false for bytes that cannot be read.
  bool (*read)(const Kind& kind, Bytes bytes, const Context& context, Json& json);
  // The bytes that keys stand for; tells `place` of what cannot be written.
  void (*write)(const Kind& kind, const Json& json, const Context& context, const Place& place, ByteVector& bytes);
  // JSON Schema's "properties"
  Json (*schema)(const Kind& kind);
};

// What follows a record in its box.
enum class Tail : uint8_t { kNone, kText, kCodes };
inline constexpr size_t kTailRoom = 256;

struct Kind {
  const char* name;
  ByteVector head = {};                // bytes that tell the kind: the tag, behind it an extended tag and an OUI
  const Form* form = nullptr;          // null: bytes only
  const RecordInfo* record = nullptr;  // null: what is behind it alone
  const char* left = "";               // fields of the record that follow from others
  // Through the library's codec; false when it refuses. Of a list, `count` is the number of records in the box.
  bool (*get)(Bytes bytes, const Context& context, void* box, size_t& count) = nullptr;
  bool (*set)(const void* box, size_t count, const Context& context, ByteVector& bytes) = nullptr;
  const char* list = "";  // the key that holds the records of a list, or what follows a record
  Tail tail = Tail::kNone;
  Json defaults = Json::object();  // of fields that are left out
  uint8_t flags = 0;               // of a DisplayID data block's header: the bits that are fields of the record
};

// How the bytes of a family are told apart.
struct Family {
  const char* what;  // for messages: "data block"
  const std::vector<Kind>& (*kinds)();
  bool (*matches)(const Kind& kind, Bytes bytes);
  bool hasRevision = false;  // DisplayID: byte 1 holds a revision and flags
};

extern const Family kSlots;            // descriptors of the base block
extern const Family kDetailedTimings;  // those of a CTA extension
extern const Family kCtaDataBlocks;
extern const Family kDisplayIdDataBlocks;

extern const Form kRecordForm;  // the fields of one record
extern const Form kListForm;    // an array of records, or of numbers

// One part as an object: "kind", its keys and, where these do not give its bytes, "bytes".
Json PartToJson(const Family& family, Bytes bytes, const Context& context);

// Its bytes. Keys beside "bytes" are changes to what these say.
ByteVector PartFromJson(const Family& family, const Json& json, const Context& context, const Place& place);

// Every part of a list.
std::vector<ByteVector> PartsFromJson(const Family& family, const Json& json, const Context& context,
                                      const Place& place);

Json FamilySchema(const Family& family);

}  // namespace reedid::document::text
