// Names that a file of the system has: one line for each, the key in front.
#pragma once

#include <string>

namespace reedid::document {

/*
 * What stands behind `key` in the line that begins with it; empty when there is no such line or no such file. The
 * environment variable names another file than the system's; set and empty, there are no names. A file is read once, when
 * it is first asked.
 */
std::string FindName(const char* variable, const char* systemFile, const std::string& key);

}  // namespace reedid::document
