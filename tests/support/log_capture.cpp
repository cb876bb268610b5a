#include "tests/support/log_capture.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <regex>
#include <stdexcept>

namespace reedid::test {

namespace {

// Standard output leads into a file while this lives, also when something is thrown.
class Redirected {
 public:
  explicit Redirected(std::FILE* file) : before_(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    if (file == nullptr || before_ < 0 || dup2(fileno(file), STDOUT_FILENO) < 0) {
      throw std::runtime_error("cannot redirect standard output");
    }
  }
  ~Redirected() {
    std::fflush(stdout);
    dup2(before_, STDOUT_FILENO);
    close(before_);
  }
  Redirected(const Redirected&) = delete;
  Redirected& operator=(const Redirected&) = delete;

 private:
  const int before_;
};

// What `work` prints. The report of a check that fails in it is part of that, so it is shown as well.
std::string TextOf(const std::function<void()>& work) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), std::fclose);
  {
    const Redirected redirected(file.get());
    work();
  }
  std::string text;
  std::rewind(file.get());
  for (int c = std::fgetc(file.get()); c != EOF; c = std::fgetc(file.get())) text.push_back(static_cast<char>(c));
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
