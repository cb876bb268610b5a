#include "tests/support/corpus.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/support/edid_builder.h"
#include "tests/support/sample_images.h"

namespace reedid::test {
namespace {

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
    std::map<std::string, ByteVector> files;
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
      if (file.path().extension() != ".bin") continue;
      std::ifstream stream(file.path(), std::ios::binary);
      files[file.path().filename()] = ByteVector(std::istreambuf_iterator<char>(stream), {});
    }
    return files;
  }();
  return corpus;
}

}  // namespace reedid::test
