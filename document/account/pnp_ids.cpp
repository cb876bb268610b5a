#include "document/account/pnp_ids.h"

#include <fmt/format.h>

#include "document/account/name_file.h"

namespace reedid::document {

std::string MakerText(const std::string& letters) {
  const std::string name = FindName("REEDID_PNP_IDS", "/usr/share/hwdata/pnp.ids", letters + '\t');
  return name.empty() ? letters : fmt::format("{} ({})", letters, name);
}

}  // namespace reedid::document
