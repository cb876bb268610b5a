#include "document/account/vendors.h"

#include <fmt/format.h>

#include "document/account/name_file.h"
#include "reedid/tags.h"

namespace reedid::document {
namespace {

struct Vendor {
  uint32_t oui;
  const char* name;
};

constexpr Vendor kVendors[] = {
    {REEDID_OUI_HDMI, "HDMI 1.4b"},
    {REEDID_OUI_HDMI_FORUM, "HDMI Forum"},
    {REEDID_OUI_DOLBY, "Dolby"},
    {REEDID_OUI_HDR10_PLUS, "HDR10+"},
    {REEDID_OUI_AMD, "AMD"},
    {REEDID_OUI_NVIDIA, "NVIDIA"},
    {REEDID_OUI_APPLE, "Apple"},
    {REEDID_OUI_VESA, "VESA"},
    {REEDID_OUI_UHD_ALLIANCE, "UHD Alliance"},
    {REEDID_OUI_MICROSOFT, "Microsoft"},
};

const char* KnownName(uint32_t oui) {
  for (const Vendor& vendor : kVendors) {
    if (vendor.oui == oui) return vendor.name;
  }
  return nullptr;
}

// The file begins its lines with "00-0C-6E   (hex)\t\t".
std::string RegisteredName(uint32_t oui) {
  const std::string key = fmt::format("{:02X}-{:02X}-{:02X}", oui >> 16 & 0xFF, oui >> 8 & 0xFF, oui & 0xFF);
  const std::string rest = FindName("REEDID_OUI_TXT", "/usr/share/ieee-data/oui.txt", key);
  const size_t tab = rest.find_last_of('\t');
  return tab == rest.npos ? "" : rest.substr(tab + 1);
}

}  // namespace

std::string OuiText(uint32_t oui) {
  return fmt::format("{:02x}-{:02x}-{:02x}", oui >> 16 & 0xFF, oui >> 8 & 0xFF, oui & 0xFF);
}

std::string VendorName(uint32_t oui) {
  const char* known = KnownName(oui);
  return known != nullptr ? known : RegisteredName(oui);
}

std::string VendorText(uint32_t oui) {
  if (const char* known = KnownName(oui)) return known;
  const std::string name = RegisteredName(oui);
  return name.empty() ? fmt::format("OUI {}", OuiText(oui)) : fmt::format("OUI {} ({})", OuiText(oui), name);
}

}  // namespace reedid::document
