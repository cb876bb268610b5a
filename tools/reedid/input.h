// What the user names as an EDID.
#pragma once

#include <string>
#include <vector>

#include "document/read/image.h"

namespace reedid::tool {

/*
 * Opens a file, standard input ("-"), raw or as hexadecimal text, or what has a scheme (device/schemes.h), such as a
 * built-in EDID ("sample:NAME") or a display ("i2c:/dev/i2c-4"). Of a text with several EDIDs, "NAME#2" is the second. Files are read to their end whatever size they claim: those of /sys/class/drm
 * claim 0. Throws Exit::kInput.
 */
document::Image ReadImage(const std::string& name);

// A text as it stands in a file or on standard input. Throws Exit::kInput.
std::string ReadText(const std::string& name);

// The names of the EDIDs in an input: its own, or those with # and a number when it is a text that holds several. One
// that cannot be read has its own name only; ReadImage tells why.
std::vector<std::string> NamesIn(const std::string& name);

// Whether there is something like an EDID in a file, broken or not, or it cannot be told.
bool MayBeEdid(const std::string& name);

// What the user names in messages: the file, or "standard input".
std::string ShownName(const std::string& name);

}  // namespace reedid::tool
