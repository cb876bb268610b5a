#include "tests/support/corpus.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/support/edid_builder.h"

namespace reedid::test {
namespace {

std::map<std::string, ByteVector> Built() {
  const Cta television = Cta()
                             .Flags(0xF1)
                             .Vdb({0x90, 31, 97, 218})
                             .Block(1, {0x0F, 0x07, 0x07, 0x15, 0x07, 0x50})
                             .Block(4, {1, 0, 0})
                             .Hdmi(0x1000, {0xB8, 60, 0xA0, 0x10, 0x20, 3, 4})
                             .HdmiForum({1, 120, 0x80, 0x63, 0x02, 0x30, 0x78, 0xC0, 0x61, 0x08})
                             .Extended(5, {0xC3, 0x01})
                             .Extended(15, {0x05})
                             .Dtd(k1080p60)
                             .Dtd(k720p60);
  const Section section = Section(0x20, 3).Block(0x21, 0x81, ByteVector(29, 5)).Block(0x22, 0, ByteVector(20, 9));
  return {{"monitor", Edid(3).Dtd(k1080p60).Name("monitor").Build()},
          {"television", Edid().Dtd(k2160p60).Dtd(k720p60).Name("tv").Extension(television).Build()},
          {"wrong count", Edid().Set(126, {5}).Extension(television).Build()},
          {"section inside", Edid().Extension(section).Extension(Cta().Vdb({16}).DtdOffset(0)).Build()},
          {"sections", Concat({Section().ExtensionCount(1).Block(1, 3, {1, 2, 3}).Build(5), section.Build()})}};
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
