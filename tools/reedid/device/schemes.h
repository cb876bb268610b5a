// Names with a colon: what is no file but is read and written like one.
#pragma once

#include <span>
#include <string>

#include "document/bytes.h"
#include "document/error.h"
#include "tools/reedid/device/place.h"

namespace reedid::tool::device {

// A function that is null: the scheme cannot do this.
struct Scheme {
  const char* name;  // before the colon
  // The bytes of an EDID. Throws Exit::kInput.
  document::ByteVector (*read)(const Place& place, document::Notes& notes);
  // Takes a whole EDID, or leaves what was there. Throws Exit::kOutput.
  void (*write)(const Place& place, std::span<const uint8_t> bytes, document::Notes& notes);
  // The file to write instead; the notes tell of it as written.
  std::string (*file)(const Place& place, document::Notes& notes);
  // Undoes what was written. Throws Exit::kOutput.
  void (*clear)(const Place& place, document::Notes& notes);
};

std::span<const Scheme> Schemes();

// The scheme of a name; null: it names a file. "./i2c:x" is a file whatever its name.
const Scheme* FindScheme(const std::string& name);

// What follows the colon of a name that has a scheme.
Place PlaceIn(const std::string& name);

// Gives the name of a video device this pad, unless it has one; false: it is no video device.
bool AddPad(std::string& name, unsigned pad);

// Throws Exit::kInput, also when the scheme cannot be read.
document::ByteVector ReadFrom(const std::string& name, document::Notes& notes);

// The scheme of a name that is to be written. Throws Exit::kOutput when it cannot be.
const Scheme& OutputScheme(const std::string& name);

}  // namespace reedid::tool::device
