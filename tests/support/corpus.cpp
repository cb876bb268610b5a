#include "tests/support/corpus.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "tests/support/edid_builder.h"
#include "tests/support/sample_images.h"

namespace reedid::test {
namespace {

// Sanitizers and emulators look for other faults than the properties' and make all some ten times as slow: a part of the
// files will do.
#ifdef REEDID_SAMPLED
constexpr size_t kEach = 5;
#else
constexpr size_t kEach = 1;
#endif

std::map<std::string, ByteVector> Built() {
  std::map<std::string, ByteVector> images;
  for (const SampleImage& sample : SampleImages()) images[sample.name] = sample.bytes;
  ByteVector& wrongCount = images["wrong count"] = images["HDMI television"];
  wrongCount[126] = 5;
  FixChecksum(wrongCount);
  return images;
}

}  // namespace

const std::map<std::string, ByteVector>& Corpus() {
  static const std::map<std::string, ByteVector> corpus = [] {
    const char* folder = std::getenv("REEDID_CORPUS");
    if (folder == nullptr || *folder == '\0') return Built();
    std::set<std::filesystem::path> paths;
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
      if (file.path().extension() == ".bin") paths.insert(file.path());
    }
    std::map<std::string, ByteVector> files;
    for (size_t i = 0; const auto& path : paths) {
      if (i++ % kEach != 0) continue;
      std::ifstream stream(path, std::ios::binary);
      files[path.filename()] = ByteVector(std::istreambuf_iterator<char>(stream), {});
    }
    return files;
  }();
  return corpus;
}

}  // namespace reedid::test
