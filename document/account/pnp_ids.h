// Names of display makers by their three letters.
#pragma once

#include <string>

namespace reedid::document {

/*
 * "GSM (LG Electronics)", the letters alone when no name is known. Names are those of the file pnp.ids of the system
 * (Debian's package hwdata): lines of letters, a tabulator and the name. REEDID_PNP_IDS names another file; set and
 * empty, there are no names.
 */
std::string MakerText(const std::string& letters);

}  // namespace reedid::document
