// An account of something as a tree, which writers turn into text or JSON.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "document/account/byte_source.h"
#include "document/account/timing_text.h"
#include "document/json.h"

namespace reedid::document {

inline constexpr char kHidden[] = "hidden";

// Something wrong with the bytes of a field or a title, as a rule tells it.
struct Remark {
  std::string severity;  // "error", "warning", "note"
  std::string rule;
  std::string text;
};

struct Field {
  std::string name;
  std::string value;                            // without one, the field only names what its bytes are
  SourceBytes bytes = {};                       // what the value was made from
  bool isFault = false;                         // tells of something wrong with the data, which should stand out
  bool isTiming = false;                        // tells one of the node's timings, or a part of its only one
  std::optional<std::string> publicValue = {};  // of a field that gives away one unit: what to say instead
  std::vector<Remark> remarks = {};
};

struct Node {
  std::string title;
  std::string label = {};  // the title without values and numbers that change; empty: the title itself
  std::string kind = {};   // what may be the same part of another image; empty: that of the same label
  std::vector<Field> fields;
  std::vector<Node> children;
  Json record;                      // what the fields were made from, by the field names of the library's record
  std::vector<TimingItem> timings;  // the timings that this node itself stands for
  SourceBytes bytes;                // what the title was made from: header bytes
  bool isTiming = false;            // one timing, which the title tells
  ByteVector block;                 // of a block of the image: all its bytes
  bool isPrivate = false;           // all that it holds gives away one unit
  std::vector<std::string> privateKeys = {};  // those of the record that do
  std::string summary = {};                   // what the fields come to, in a few words; empty: the fields themselves
  std::optional<Extent> extent = {};          // of a data block or a descriptor: where it stands in the image's block
  std::vector<Remark> remarks = {};           // about the title's bytes, or those that no field was made from

  Field& Add(std::string name, std::string value, SourceBytes from = {}) {
    fields.push_back({std::move(name), std::move(value), std::move(from)});
    return fields.back();
  }
  // A field that gives away one unit, as does the record's value of this name.
  void AddPrivate(std::string name, std::string value, SourceBytes from, const std::string& key) {
    Add(std::move(name), std::move(value), std::move(from)).publicValue = kHidden;
    privateKeys.push_back(key);
  }
  Node& Child(Node node) {
    children.push_back(std::move(node));
    return children.back();
  }
  // A field of its own for the timing, which is an item too.
  void AddTiming(const std::string& name, const TimingItem& item, const std::string& more = "", SourceBytes from = {});
  // A field whose value are the bytes themselves.
  Field& AddBytes(const std::string& name, SourceBytes from);
  // What no field was made from: a value unless it is mere filling.
  void AddRest(const ByteSource& at, const std::string& name = "Other bytes");
};

// Every timing of the tree, in its order.
std::vector<TimingItem> ItemsOf(const Node& root);

// Takes all that gives away one unit out of a tree, so that no writer can tell it.
void HidePrivate(Node& root);

}  // namespace reedid::document
