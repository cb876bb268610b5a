// Every byte that differs is told, and nothing is told of equal bytes.

#include <gtest/gtest.h>

#include <algorithm>

#include "document/account/image_account.h"
#include "document/compare/changes.h"
#include "document/read/samples.h"
#include "tests/support/corpus.h"
#include "tests/support/edid_builder.h"
#include "tests/support/log_capture.h"
#include "tests/support/sample_images.h"

namespace reedid::document {
namespace {

Node Account(const ByteVector& bytes) {
  return DescribeImage(Image::FromBytes("x", bytes));
}

// Flips every `step`-th bit behind the header; those that leave no EDID are none to compare.
void ExpectEachBitIsTold(const std::string& name, ByteVector image, size_t step) {
  const Node before = Account(image);
  EXPECT_TRUE(AreSame(FindChanges(before, Account(image)))) << name;
  for (size_t bit = 8 * 8; bit < image.size() * 8; bit += step) {
    image[bit / 8] ^= static_cast<uint8_t>(1u << bit % 8);
    try {
      const std::vector<Change> changes = FindChanges(before, Account(image));
      EXPECT_FALSE(AreSame(changes)) << name << ": byte " << bit / 8 << " bit " << bit % 8;
    } catch (const Error&) {
    }
    image[bit / 8] ^= static_cast<uint8_t>(1u << bit % 8);
  }
}

TEST(ChangesProperty, EachBitIsTold) {
  test::Quietly([] {
    for (const Sample& sample : Samples()) ExpectEachBitIsTold(sample.name, sample.build(), 1);
    for (const test::SampleImage& image : test::SampleImages()) ExpectEachBitIsTold(image.name, image.bytes, 3);
  });
}

// A prime step through all bits of all files, so that each place is met in some of them.
TEST(ChangesProperty, BitsOfTheCorpusAreTold) {
  test::Quietly([] {
    for (const auto& [name, bytes] : test::Corpus()) ExpectEachBitIsTold(name, bytes, 211);
  });
}

// Neighbours have nothing to do with each other, so parts come, go and move between them.
TEST(ChangesProperty, DifferentImagesAreNotSame) {
  test::Quietly([] {
    const ByteVector* last = nullptr;
    for (const auto& [name, bytes] : test::Corpus()) {
      if (last != nullptr) {
        const std::vector<Change> changes = FindChanges(Account(*last), Account(bytes));
        EXPECT_EQ(AreSame(changes), *last == bytes) << name;
      }
      last = &bytes;
    }
  });
}

}  // namespace
}  // namespace reedid::document
