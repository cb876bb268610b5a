// Records as people write them: a flag is true or false, an aspect ratio "16:9", a physical address "1.2.0.0", an array
// as long as it is in use. Where that is only another way to write a number, the number is taken as well.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "document/account/records.h"
#include "document/account/tree.h"
#include "document/text/problems.h"

namespace reedid::document::text {

// Some fields of a record that are not written: those that follow from others. Names, with blanks between them.
using Left = std::string_view;

// Memory for a record of any type, all zero.
class Box {
 public:
  explicit Box(size_t size) : words_(size / sizeof(uint64_t) + 1) {}
  void* get() { return words_.data(); }
  const void* get() const { return words_.data(); }

 private:
  std::vector<uint64_t> words_;
};

// Every field of the form; with `all` false, without those that are false, 0 or empty and have no default in `keep`.
Json FieldsToJson(const RecordInfo& info, const void* record, Left left, bool all, const Json& keep = Json::object());

// Fills the fields that are named; the others stay. Tells every value that its field cannot hold, and every name that is
// none, but for those in `known`.
void FieldsFromJson(const Json& json, const RecordInfo& info, void* record, Left left,
                    const std::vector<std::string>& known, const Place& place);

// Tells each field that is named and reads back with another value.
void CompareFields(const Json& json, const RecordInfo& info, const void* wanted, const void* got, Left left,
                   const Place& place);

// What the keys of a record are, as a JSON Schema's "properties".
Json FieldsSchema(const RecordInfo& info, Left left);

// The names of a record's keys.
std::vector<std::string> KeysOf(const RecordInfo& info, Left left);

// A list among the keys, empty when it is not there; tells what is none.
Json ListOf(const Json& json, const char* key, const Place& place);

// Tells every key of an object that is none.
void CheckKeys(const Json& json, const std::vector<std::string>& keys, const Place& place);

// Whether a word stands among words with blanks between them.
bool Has(std::string_view words, std::string_view word);

// A whole number, also as a text such as "0x1234".
std::optional<int64_t> NumberOf(const Json& json);

// What a value is, in an error: the value itself when it is short.
std::string Shown(const Json& json);

// "00 ff 10" and the like; tells what is none.
ByteVector BytesFromJson(const Json& json, const Place& place);

}  // namespace reedid::document::text
