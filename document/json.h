// JSON values. Where the library that makes them has none of the memory that a value turns into a list with, it keeps a
// list without elements or end and reads through it when the value goes: that ends the program here rather than there.
#pragma once

#include <exception>

#define JSON_ASSERT(condition) static_cast<void>((condition) || (std::terminate(), false))
#include <nlohmann/json.hpp>

namespace reedid::document {

using Json = nlohmann::ordered_json;

}  // namespace reedid::document
