#include "document/account/pnp_ids.h"

#include <fmt/format.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace reedid::document {
namespace {

constexpr char kSystemFile[] = "/usr/share/hwdata/pnp.ids";

// Empty when there is no such line, or no such file. Whatever else has that path could be without end.
std::string FindName(const std::string& path, const std::string& letters) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return "";
  std::ifstream file(path);
  const std::string start = letters + '\t';
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(start)) return line.substr(start.size());
  }
  return "";
}

}  // namespace

std::string MakerText(const std::string& letters) {
  const char* path = std::getenv("REEDID_PNP_IDS");
  const std::string name = FindName(path != nullptr ? path : kSystemFile, letters);
  return name.empty() ? letters : fmt::format("{} ({})", letters, name);
}

}  // namespace reedid::document
