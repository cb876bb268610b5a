#include "bench/corpus.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "tests/support/edid_builder.h"

namespace reedid::bench {
namespace {

using namespace reedid::test;

std::vector<ByteVector> ReadFolder(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  std::error_code missing;
  for (const auto& file : std::filesystem::directory_iterator(folder, missing)) {
    if (file.path().extension() == ".bin") files.push_back(file.path());
  }
  if (missing) std::fprintf(stderr, "%s: %s\n", folder.c_str(), missing.message().c_str());
  std::sort(files.begin(), files.end());
  std::vector<ByteVector> images;
  for (const auto& file : files) {
    std::ifstream in(file, std::ios::binary);
    images.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  return images;
}

Cta Television(uint8_t vics) {
  ByteVector svds = {0x90, 31, 97, 96, 117, 118};
  for (uint8_t vic = 1; vic <= vics; ++vic) svds.push_back(vic);
  return Cta()
      .Flags(0xF1)
      .Vdb(svds)
      .Block(1, {0x0F, 0x7F, 0x07, 0x15, 0x07, 0x50})
      .Block(4, {0x4F, 0, 0})
      .Hdmi(0x1000, {0xB8, 60, 0x20})
      .HdmiForum({1, 120, 0x80, 0x66})
      .Extended(0, {0xCB})
      .Extended(5, {0xE3, 0})
      .Extended(6, {0x0F, 1, 0x60, 0x50, 0x20})
      .Extended(15, {0x3C})
      .Dtd(k1080p60);
}

// As real collections are made up: a few monitors of one block, most of two, some of three.
std::vector<ByteVector> BuildAll() {
  std::vector<ByteVector> images;
  const Section section = Section(0x20, 0).Block(0x25, 0, {0x10, 0x27, 0, 0x80, 0x84, 0x1E, 48, 144, 0});
  for (uint8_t i = 0; i < 20; ++i) {
    const Edid base = Edid(i % 2 == 0 ? 4 : 3).Dtd(i % 3 == 0 ? k1080p60 : AtClock(k2160p60, 533250)).Name("BENCH");
    images.push_back(i < 2    ? Edid(base).Build()
                     : i < 15 ? Edid(base).Extension(Television(i)).Build()
                              : Edid(base).Extension(Television(i)).Extension(section).Build());
  }
  return images;
}

}  // namespace

std::vector<ByteVector> Corpus() {
  std::vector<ByteVector> images;
  const char* folder = std::getenv("REEDID_CORPUS");
  if (folder != nullptr && *folder != '\0') images = ReadFolder(folder);
  return images.empty() ? BuildAll() : images;
}

}  // namespace reedid::bench
