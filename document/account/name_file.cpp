#include "document/account/name_file.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <mutex>
#include <new>

namespace reedid::document {
namespace {

// Begins with a line feed, so that each line does. Whatever else than a file has that path could be without end.
std::string ReadLines(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return "";
  std::ifstream file(path, std::ios::binary);
  if (!file && errno == ENOMEM) throw std::bad_alloc();
  std::string lines(1, '\n');
  lines.append(std::istreambuf_iterator<char>(file), {});
  return lines;
}

const std::string& LinesOf(const std::string& path) {
  static std::mutex mutex;
  static std::map<std::string, std::string> files;
  const std::lock_guard lock(mutex);
  auto file = files.find(path);
  if (file == files.end()) file = files.emplace(path, ReadLines(path)).first;  // none that could not be read
  return file->second;
}

}  // namespace

std::string FindName(const char* variable, const char* systemFile, const std::string& key) {
  const char* named = std::getenv(variable);
  const std::string& lines = LinesOf(named != nullptr ? named : systemFile);
  const size_t at = lines.find("\n" + key);
  if (at == lines.npos) return "";
  const size_t begin = at + 1 + key.size();
  return lines.substr(begin, lines.find_first_of("\r\n", begin) - begin);
}

}  // namespace reedid::document
