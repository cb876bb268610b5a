// What the user names as an EDID, as bytes.
#pragma once

#include <string>

#include "tool_error.h"

namespace reedid::tool {

/*
 * Reads a file, standard input ("-") or a built-in EDID ("sample:NAME"), raw or as hexadecimal text. Files are read to
 * their end whatever size they claim: those of /sys/class/drm claim 0. Throws Exit::kInput.
 */
ByteVector ReadInput(const std::string& name);

}  // namespace reedid::tool
