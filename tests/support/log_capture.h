// What the library prints while something runs. Log lines are part of a call's result.
#pragma once

#include <functional>
#include <string>

namespace reedid::test {

// Runs `work` and returns what it printed, with the line numbers taken out: "[ERR:EDID_Open]: invalid parameters\n".
std::string LogOf(const std::function<void()>& work);

// Runs `work` without showing what it prints, unless a check fails.
void Quietly(const std::function<void()>& work);

// One expected line.
std::string Err(const std::string& function, const std::string& message);
std::string Warn(const std::string& function, const std::string& message);

}  // namespace reedid::test
