// What was probably meant by a word that is none.
#pragma once

#include <cstddef>
#include <string_view>

namespace reedid::document {

// Letters to insert, remove, replace or swap with the next one to make one word the other (optimal string alignment),
// whatever their case.
size_t Slips(std::string_view a, std::string_view b);

}  // namespace reedid::document
