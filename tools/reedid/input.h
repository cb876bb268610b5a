// What the user names as an EDID.
#pragma once

#include <string>

#include "document/read/image.h"

namespace reedid::tool {

/*
 * Opens a file, standard input ("-") or a built-in EDID ("sample:NAME"), raw or as hexadecimal text. Files are read to
 * their end whatever size they claim: those of /sys/class/drm claim 0. Throws Exit::kInput.
 */
document::Image ReadImage(const std::string& name);

// What the user names in messages: the file, or "standard input".
std::string ShownName(const std::string& name);

}  // namespace reedid::tool
