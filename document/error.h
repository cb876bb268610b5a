// What ends a call of the document library, and what is worth saying of one that succeeds.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace reedid::document {

enum class ErrorKind : uint8_t {
  kArgument,  // the caller asked for what there is not, or wrote a value that is none
  kInput,     // the bytes or the text that were given are no EDID
  kRefused,   // the image cannot be edited in this way
  kInternal,  // should not happen
};

// The message names the image and says what to do.
class Error : public std::runtime_error {
 public:
  Error(ErrorKind kind, const std::string& message) : std::runtime_error(message), kind_(kind) {}
  ErrorKind kind() const { return kind_; }

 private:
  ErrorKind kind_;
};

// What somebody should know of a call that did its work, a sentence each. Calls add to it, also those that fail later.
using Notes = std::vector<std::string>;

}  // namespace reedid::document
