// Findings beside the lines that they are about.
#pragma once

#include <span>

#include "document/account/tree.h"
#include "document/check/check.h"

namespace reedid::document {

// Adds each finding to an image's account (DescribeImage): to the field that is made from the byte where it stands, else to
// the part that has this byte.
void MarkFindings(std::span<const Finding> findings, Node& account);

}  // namespace reedid::document
