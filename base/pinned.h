// The layout of the public structures is part of the interface, the same for every compiler. The file that fills a
// structure pins it: a PIN_FIELDS has a run of fields of one size, each behind the one before, and where the run begins;
// a PIN_SIZE ends the structure. The exports test finds fields of the headers that are not pinned.
#pragma once

#include <cstddef>
#include <initializer_list>

namespace reedid {

struct PinnedField {
  size_t offset, size;
};

constexpr bool IsRun(size_t offset, size_t size, std::initializer_list<PinnedField> fields) {
  for (const PinnedField& field : fields) {
    if (field.offset != offset || field.size != size) return false;
    offset += size;
  }
  return true;
}

inline constexpr size_t kPointer = sizeof(void*);

}  // namespace reedid

// NOLINTBEGIN(bugprone-sizeof-expression): some fields are pointers
// The preprocessor's loop over a list of up to 64 names.
#define PINNED_FIELD(type, field) PinnedField{offsetof(type, field), sizeof(type::field)},
#define PINNED_AGAIN(...) PINNED_AGAIN3(PINNED_AGAIN3(PINNED_AGAIN3(PINNED_AGAIN3(__VA_ARGS__))))
#define PINNED_AGAIN3(...) PINNED_AGAIN2(PINNED_AGAIN2(PINNED_AGAIN2(PINNED_AGAIN2(__VA_ARGS__))))
#define PINNED_AGAIN2(...) PINNED_AGAIN1(PINNED_AGAIN1(PINNED_AGAIN1(PINNED_AGAIN1(__VA_ARGS__))))
#define PINNED_AGAIN1(...) __VA_ARGS__
#define PINNED_PARENTHESES ()
#define PINNED_FIELDS(type, field, ...) \
  PINNED_FIELD(type, field) __VA_OPT__(PINNED_FIELDS_LATER PINNED_PARENTHESES(type, __VA_ARGS__))
#define PINNED_FIELDS_LATER() PINNED_FIELDS
#define PIN_FIELDS(type, offset, size, ...) \
  static_assert(IsRun(offset, size, {PINNED_AGAIN(PINNED_FIELDS(type, __VA_ARGS__))}), #type ": " #__VA_ARGS__)
#define PIN_SIZE(type, size) static_assert(sizeof(type) == (size), #type)
// NOLINTEND(bugprone-sizeof-expression)
