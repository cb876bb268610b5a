// Diagnostics: one line on standard output, "[ERR:function:line]: message". The macros take the message without its
// line end and can stand as the failing value: `return REEDID_ERR("invalid parameters");` is -1 or null, as the
// function needs.
#pragma once

#include <concepts>
#include <cstdint>

namespace reedid {

// What a failed call returns: -1 or null. As a bool or an unsigned number -1 would look like success, so that there a
// message and the result are two statements.
struct Failure {
  template <std::same_as<int32_t> Result>
  constexpr operator Result() const {
    return -1;
  }
  template <class T>
  constexpr operator T*() const {
    return nullptr;
  }
};
static_assert(!std::convertible_to<Failure, bool> && !std::convertible_to<Failure, uint32_t>);

// The function whose name a message shows. A step that reports for the function that calls it takes this as its last
// parameter, `Caller caller = {}`; the compiler fills in the name at each call. (std::source_location would tell the
// whole signature.)
class Caller {
 public:
  constexpr Caller(const char* name = __builtin_FUNCTION()) : name_(name) {}
  constexpr const char* name() const { return name_; }

 private:
  const char* name_;
};

// Cold: what complains is no hot path, and is made small rather than fast.
[[gnu::cold, gnu::format(printf, 1, 2)]] Failure Print(const char* format, ...);

}  // namespace reedid

#define REEDID_LOG(level, function, format, ...)                                        \
  ::reedid::Print("[" level ":%s:%d]: " format "\n", ::reedid::Caller(function).name(), \
                  __LINE__ __VA_OPT__(, ) __VA_ARGS__)

// The beginning of a line that Print continues and ends.
#define REEDID_LOG_OPEN(level, function, format, ...) \
  ::reedid::Print("[" level ":%s:%d]: " format, ::reedid::Caller(function).name(), __LINE__ __VA_OPT__(, ) __VA_ARGS__)

// Under the name of the function that they stand in.
#define REEDID_ERR(...) REEDID_ERR_AS(__func__, __VA_ARGS__)
#define REEDID_WARN(...) REEDID_WARN_AS(__func__, __VA_ARGS__)

// Under a Caller's, or another given name.
#define REEDID_ERR_AS(function, ...) REEDID_LOG("ERR", function, __VA_ARGS__)
#define REEDID_WARN_AS(function, ...) REEDID_LOG("WARN", function, __VA_ARGS__)
#define REEDID_INFO_AS(function, ...) REEDID_LOG("INFO", function, __VA_ARGS__)
