// What check, fix and explain share: the rules that the user names, and the findings of an image that was read.
#pragma once

#include <string>
#include <vector>

#include "document/bytes.h"
#include "document/check/check.h"
#include "document/read/image.h"

namespace reedid::tool {

// The rule of a name; Exit::kUsage when there is none.
const document::Rule& NamedRule(const std::string& id);

// As read, right or wrong.
document::ByteVector BytesOf(const document::Image& image);

// The year on the machine's clock.
int ThisYear();

}  // namespace reedid::tool
