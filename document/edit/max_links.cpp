// Limits that hardware has of its own, as people write them.
#include <fmt/format.h>

#include <charconv>
#include <iterator>

#include "document/edit/limits.h"

namespace reedid::document {
namespace {

constexpr EdidLink kAnyLink = {0, 0, 6, 1, 1, 0, 0, 0, 0, 0, nullptr, 0};  // HDMI 2.1 and nothing limited

[[noreturn]] void Refuse(const std::string& text, const char* what, const char* example) {
  throw Error(ErrorKind::kArgument, fmt::format("'{}' is no {}; write it like {}", text, what, example));
}

// A number of 1 to `most` with an optional fraction, in thousandths.
bool ReadThousandths(std::string_view text, uint32_t most, uint32_t& value) {
  double number = 0;
  const char* const end = text.data() + text.size();
  const auto [next, error] = std::from_chars(text.data(), end, number, std::chars_format::fixed);
  if (error != std::errc() || next != end || !(number >= 1 && number <= most)) return false;
  value = static_cast<uint32_t>(number * 1000 + 0.5);
  return true;
}

bool ReadSize(std::string_view text, uint16_t& value) {
  const char* const end = text.data() + text.size();
  const auto [next, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && next == end && value != 0;
}

constexpr uint32_t kMostMegahertz = 100000, kMostHertz = 2000;

}  // namespace

EdidLink ParseMaxClock(const std::string& text) {
  EdidLink link = kAnyLink;
  if (!ReadThousandths(text, kMostMegahertz, link.maxPixelClock)) Refuse(text, "pixel clock in MHz", "300 or 297.5");
  return link;
}

EdidLink ParseMaxRate(const std::string& text) {
  EdidLink link = kAnyLink;
  if (!ReadThousandths(text, kMostHertz, link.maxRate)) Refuse(text, "rate in Hz", "60");
  return link;
}

EdidLink ParseMaxPicture(const std::string& text) {
  EdidLink link = kAnyLink;
  const std::string_view all = text;
  const size_t cross = all.find('x'), at = all.find('@');
  const bool sizes = cross != all.npos && ReadSize(all.substr(0, cross), link.maxWidth) &&
                     ReadSize(all.substr(cross + 1, at == all.npos ? at : at - cross - 1), link.maxHeight);
  const bool rate = at == all.npos || ReadThousandths(all.substr(at + 1), kMostHertz, link.maxRate);
  if (!sizes || !rate) Refuse(text, "picture", "3840x2160@60 or 1920x1080");
  return link;
}

EdidLink ParseMaxFrl(const std::string& text) {
  constexpr const char* kGigabits[] = {"9", "18", "24", "32", "40", "48"};
  EdidLink link = kAnyLink;
  for (uint8_t i = 0; i < std::size(kGigabits); ++i) {
    if (text != kGigabits[i]) continue;
    link.maxFrlRate = static_cast<uint8_t>(i + 1);
    link.maxTmdsClock = EDID_LINK_FRL6.maxTmdsClock;
    return link;
  }
  Refuse(text, "FRL rate in Gbit/s: 9, 18, 24, 32, 40 or 48", "40");
}

}  // namespace reedid::document
