// Diagnostics: one line on standard output, "[ERR:function:line]: message". The macros take the message without its
// line end and can stand as the failing value: `return REEDID_ERR("invalid parameters");` is -1 or null, as the
// function needs.
#pragma once

#include <cstdint>

namespace reedid {

// What a failed call returns.
struct Failure {
  constexpr operator int32_t() const { return -1; }
  template <class T>
  constexpr operator T*() const {
    return nullptr;
  }
};

[[gnu::format(printf, 1, 2)]] Failure Print(const char* format, ...);

}  // namespace reedid

#define REEDID_LOG(level, name, format, ...) \
  ::reedid::Print("[" level ":%s:%d]: " format "\n", name, __LINE__ __VA_OPT__(, ) __VA_ARGS__)

// The beginning of a line that Print continues and ends.
#define REEDID_LOG_OPEN(level, name, format, ...) \
  ::reedid::Print("[" level ":%s:%d]: " format, name, __LINE__ __VA_OPT__(, ) __VA_ARGS__)

// Under the name of the function that they stand in.
#define REEDID_ERR(...) REEDID_ERR_AS(__func__, __VA_ARGS__)
#define REEDID_WARN(...) REEDID_WARN_AS(__func__, __VA_ARGS__)

// Under a given name: of an internal step that the log shows, or of the exported function that a shared body serves.
#define REEDID_ERR_AS(name, ...) REEDID_LOG("ERR", name, __VA_ARGS__)
#define REEDID_WARN_AS(name, ...) REEDID_LOG("WARN", name, __VA_ARGS__)
#define REEDID_INFO_AS(name, ...) REEDID_LOG("INFO", name, __VA_ARGS__)
