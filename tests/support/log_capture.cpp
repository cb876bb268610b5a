#include "tests/support/log_capture.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <regex>
#include <stdexcept>

namespace reedid::test {

namespace {

// What `work` prints. The report of a check that fails in it is part of that, so it is shown as well.
std::string TextOf(const std::function<void()>& work) {
  std::fflush(stdout);
  std::FILE* file = std::tmpfile();
  const int standardOutput = dup(STDOUT_FILENO);
  if (file == nullptr || standardOutput < 0 || dup2(fileno(file), STDOUT_FILENO) < 0) {
    throw std::runtime_error("cannot redirect standard output");
  }
  work();
  std::fflush(stdout);
  dup2(standardOutput, STDOUT_FILENO);
  close(standardOutput);

  std::string text;
  std::rewind(file);
  for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) text.push_back(static_cast<char>(c));
  std::fclose(file);
  if (testing::Test::HasFailure()) std::fputs(text.c_str(), stderr);
  return text;
}

}  // namespace

void Quietly(const std::function<void()>& work) {
  TextOf(work);
}

std::string LogOf(const std::function<void()>& work) {
  static const std::regex kLineNumber(R"(\[(ERR|WARN|INFO):(\w+):\d+\])");
  return std::regex_replace(TextOf(work), kLineNumber, "[$1:$2]");
}

std::string Err(const std::string& function, const std::string& message) {
  return "[ERR:" + function + "]: " + message + "\n";
}

std::string Warn(const std::string& function, const std::string& message) {
  return "[WARN:" + function + "]: " + message + "\n";
}

void ExpectRefused(std::initializer_list<std::pair<const char*, std::function<int32_t()>>> calls) {
  for (const auto& [name, call] : calls) {
    EXPECT_EQ(LogOf([&call = call] { EXPECT_EQ(call(), -1); }), Err(name, "invalid parameters"));
  }
}

}  // namespace reedid::test
