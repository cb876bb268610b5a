// What the library prints while something runs. Log lines are part of a call's result.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <utility>

namespace reedid::test {

// Runs `work` and returns what it printed, with the line numbers taken out: "[ERR:EDID_Open]: invalid parameters\n".
std::string LogOf(const std::function<void()>& work);

// Runs `work` without showing what it prints, unless a check fails.
void Quietly(const std::function<void()>& work);

// One expected line.
std::string Err(const std::string& function, const std::string& message);
std::string Warn(const std::string& function, const std::string& message);

// Calls that are refused for their arguments: each gives -1 and prints the one line about it.
void ExpectRefused(std::initializer_list<std::pair<const char*, std::function<int32_t()>>> calls);

}  // namespace reedid::test
