// Writes seeds for the fuzzers into FOLDER/image, FOLDER/codec and FOLDER/edits: fuzz_seeds FOLDER
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/bytes.h"
#include "tests/support/codecs.h"
#include "tests/support/sample_images.h"

namespace {

namespace fs = std::filesystem;
using reedid::test::ByteVector;

void Write(const fs::path& path, const ByteVector& bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  for (const uint8_t byte : bytes) file.put(static_cast<char>(byte));
  if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

// Each edit once with small arguments, then in another order.
ByteVector Edits(unsigned step) {
  ByteVector bytes;
  for (unsigned i = 0; i < 90; ++i) bytes.push_back(static_cast<uint8_t>(i * step));
  return bytes;
}

ByteVector Payload(unsigned pick, unsigned length) {
  ByteVector bytes = {static_cast<uint8_t>(pick)};
  for (unsigned i = 1; i <= length; ++i) bytes.push_back(static_cast<uint8_t>(i * 7));
  return bytes;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
    return 2;
  }
  const fs::path folder(argv[1]);
  for (const reedid::test::SampleImage& sample : reedid::test::SampleImages()) {
    Write(folder / "image" / sample.name, sample.bytes);
    for (const unsigned step : {1u, 7u, 37u, 101u}) {
      Write(folder / "edits" / (sample.name + " " + std::to_string(step)),
            reedid::test::Concat({sample.bytes, Edits(step)}));
    }
  }
  const size_t codecs = std::apply([](const auto&... list) { return (list.size() + ...); }, reedid::test::AllCodecs());
  for (unsigned pick = 0; pick < codecs; ++pick) {
    for (const unsigned length : {1u, 5u, 12u, 24u, 60u}) {
      Write(folder / "codec" / (std::to_string(pick) + " " + std::to_string(length)), Payload(pick, length));
    }
  }
  return 0;
}
