// Those who define vendor-specific blocks, by their IEEE identifiers.
#pragma once

#include <cstdint>
#include <string>

namespace reedid::document {

// "00-0c-6e"; the first byte stands highest.
std::string OuiText(uint32_t oui);

/*
 * The name that a vendor goes by, or is registered with: in the file oui.txt of the system (Debian's package ieee-data),
 * which has lines of the identifier, "(hex)", tabulators and the name. Empty when there is none. REEDID_OUI_TXT names
 * another file; set and empty, only those are named whose blocks are read here.
 */
std::string VendorName(uint32_t oui);

// "AMD", "OUI 00-0c-6e (ASUSTek COMPUTER INC.)", "OUI 03-02-01"
std::string VendorText(uint32_t oui);

}  // namespace reedid::document
