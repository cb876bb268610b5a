// The model of one block: opened from bytes, edited step by step, generated back.
#pragma once

#include <gtest/gtest.h>

#include "inventory/walk.h"
#include "tests/support/bytes.h"
#include "tests/support/log_capture.h"

namespace reedid::test {

// Opens a block of exactly these bytes, which prints `log`.
template <class Model>
Opened<Model> OpenModel(const ByteVector& bytes, uint8_t type, const std::string& log = "") {
  const ExactBytes exact(bytes);
  const EdidBlock block = {type, 256, static_cast<uint16_t>(exact.size()), exact.data()};
  Opened<Model> model;
  EXPECT_EQ(LogOf([&] { model = Open<Model>(block); }), log);
  return model;
}

// The block that a model generates, which prints `log`; empty when it is refused.
template <class Model>
ByteVector Generated(const Model& model, const std::string& log = "") {
  ByteVector out(128, 0xEE);
  EdidBlock block = {0, 128, 0, out.data()};
  int32_t result = 0;
  EXPECT_EQ(LogOf([&] { result = Family<Model>::kGenerate(&model, &block); }), log);
  EXPECT_TRUE(result != 0 || (block.size == 128 && Family<Model>::Owns(block.type)));
  return result == 0 ? out : ByteVector();
}

// An edit, and the state it leads to, or what it prints when it is refused and nothing changes.
struct Step {
  std::function<int32_t()> edit;
  std::string outcome;
};

inline void ExpectSteps(const std::function<std::string()>& state, std::initializer_list<Step> steps) {
  for (const auto& [edit, outcome] : steps) {
    const std::string before = state();
    int32_t result = 0;
    const std::string log = LogOf([&edit = edit, &result] { result = edit(); });
    EXPECT_EQ(result == 0 ? log + state() : log, outcome);
    EXPECT_TRUE(result == 0 || state() == before) << outcome;
  }
}

}  // namespace reedid::test
