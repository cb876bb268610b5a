// Runs a fuzzer over files and folders (not into subfolders): replay_NAME PATH..., and over the folder of the
// environment variable REEDID_CORPUS when that is set.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "fuzz/fuzz.h"

namespace {

namespace fs = std::filesystem;

void ReplayFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  const reedid::fuzz::ByteVector content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  const reedid::fuzz::ExactBytes exact(content);
  LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

unsigned Replay(const fs::path& path) {
  if (!fs::is_directory(path)) {
    ReplayFile(path);
    return 1;
  }
  unsigned files = 0;
  for (const auto& entry : fs::directory_iterator(path)) {
    if (!entry.is_regular_file()) continue;
    ReplayFile(entry.path());
    ++files;
  }
  return files;
}

}  // namespace

int main(int argc, char** argv) {
  LLVMFuzzerInitialize(&argc, &argv);
  unsigned files = 0;
  for (int i = 1; i < argc; ++i) files += Replay(argv[i]);
  if (const char* corpus = std::getenv("REEDID_CORPUS")) files += Replay(corpus);
  std::fprintf(stderr, "%u inputs\n", files);
  return files > 0 ? 0 : 1;
}
