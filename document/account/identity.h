// What tells one display from another at a glance.
#pragma once

#include <optional>
#include <string>

#include "document/account/tree.h"
#include "document/read/image.h"

namespace reedid::document {

// Empty, or 0, where the EDID does not say.
struct Identity {
  std::string maker;  // "GSM (LG Electronics)"
  std::string name;   // of the first product name descriptor, fit to be shown
  unsigned widthCm = 0;
  unsigned heightCm = 0;
  std::optional<TimingItem> preferred;
};

// By the base block. A standalone DisplayID structure has a preferred timing only.
Identity IdentityOf(const Image& image);

}  // namespace reedid::document
