// What is wrong with a text, all of it at once, each with its place: "blocks[1].dataBlocks[3].vics[2]: 300 is no VIC".
#pragma once

#include <string>
#include <string_view>

#include "document/error.h"

namespace reedid::document::text {

class Problems {
 public:
  void Add(const std::string& path, const std::string& what) { errors_.push_back(path + ": " + what); }
  void Warn(const std::string& path, const std::string& what) { warnings_.push_back(path + ": " + what); }
  bool HasErrors() const { return !errors_.empty(); }
  const Notes& errors() const { return errors_; }
  const Notes& warnings() const { return warnings_; }

 private:
  Notes errors_, warnings_;
};

// A value of the text: where it stands, and who hears of what is wrong with it.
class Place {
 public:
  Place(std::string path, Problems& problems) : path_(std::move(path)), problems_(problems) {}

  Place Key(std::string_view key) const;
  Place At(size_t index) const;
  // The same place, with nobody to hear of it but `other`.
  Place Quiet(Problems& other) const { return {path_, other}; }

  void Fail(const std::string& what) const { problems_.Add(path_, what); }
  void Warn(const std::string& what) const { problems_.Warn(path_, what); }
  const std::string& path() const { return path_; }
  Problems& problems() const { return problems_; }

 private:
  std::string path_;
  Problems& problems_;
};

// The nearest of some words within two slips of the finger; empty when none is near.
std::string Nearest(std::string_view word, const std::vector<std::string>& words);

// "unknown; did you mean ...", or which there are.
std::string UnknownText(std::string_view word, const std::vector<std::string>& words);

}  // namespace reedid::document::text
