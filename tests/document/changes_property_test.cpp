// Every byte that differs is told, and nothing is told of equal bytes.

#include <gtest/gtest.h>

#include <numeric>

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

// Flips every `step`-th bit behind the header, from another one in each image; those that leave no EDID are none to
// compare.
void ExpectEachBitIsTold(const std::string& name, ByteVector image, size_t step) {
  const Node before = Account(image);
  EXPECT_TRUE(AreSame(FindChanges(before, Account(image)))) << name;
  const size_t first = 8 * 8 + std::accumulate(image.begin(), image.end(), size_t{0}) % step;
  for (size_t bit = first; bit < image.size() * 8; bit += step) {
    image[bit / 8] ^= static_cast<uint8_t>(1u << bit % 8);
    try {
      const std::vector<Change> changes = FindChanges(before, Account(image));
      EXPECT_FALSE(AreSame(changes)) << name << ": byte " << bit / 8 << " bit " << bit % 8;
    } catch (const Error&) {
    }
    image[bit / 8] ^= static_cast<uint8_t>(1u << bit % 8);
  }
}

// Sanitizers make a comparison some thirty times as slow; they look for other faults, so that a part of the bits will do.
#ifdef REEDID_SAMPLED
constexpr size_t kSparser = 7;
#else
constexpr size_t kSparser = 1;
#endif

TEST(ChangesProperty, EachBitIsTold) {
  test::Quietly([] {
    for (const Sample& sample : Samples()) ExpectEachBitIsTold(sample.name, sample.build(), kSparser);
    for (const test::SampleImage& image : test::SampleImages()) ExpectEachBitIsTold(image.name, image.bytes, kSparser);
  });
}

// A prime step through all bits of all files, so that each place is met in some of them.
TEST(ChangesProperty, BitsOfTheCorpusAreTold) {
  test::Quietly([] {
    for (const auto& [name, bytes] : test::Corpus()) ExpectEachBitIsTold(name, bytes, 211 * kSparser);
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
