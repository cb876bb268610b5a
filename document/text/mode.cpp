#include "document/text/mode.h"

#include <fmt/format.h>

#include <charconv>

namespace reedid::document::text {
namespace {

constexpr unsigned kAnyAspect = ASPECT_UNKNOWN;
constexpr char kLeft[] = "frameRate aspectRatio preferred";

struct Mode {
  unsigned width = 0, height = 0, rate = 0;
  bool interlaced = false;
};

bool TakeNumber(std::string_view& text, unsigned& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return false;
  text.remove_prefix(static_cast<size_t>(end - text.data()));
  return true;
}

bool Take(std::string_view& text, char c) {
  if (!text.starts_with(c)) return false;
  text.remove_prefix(1);
  return true;
}

std::optional<Mode> ParseMode(std::string_view text) {
  Mode mode;
  if (!TakeNumber(text, mode.width) || !Take(text, 'x') || !TakeNumber(text, mode.height)) return std::nullopt;
  mode.interlaced = Take(text, 'i');
  if (!Take(text, '@') || !TakeNumber(text, mode.rate) || !text.empty()) return std::nullopt;
  return mode;
}

}  // namespace

std::optional<DtdTiming> ModeTiming(std::string_view text) {
  const auto mode = ParseMode(text);
  if (!mode || mode->width > 0xFFFF || mode->height > 0xFFFF || mode->rate == 0 || mode->rate > 1000)
    return std::nullopt;
  const auto width = static_cast<int32_t>(mode->width);
  const uint8_t interlaced = mode->interlaced ? 1 : 0;
  const unsigned lines = mode->interlaced ? mode->height / 2 : mode->height;
  OfferedTiming offered = {};
  const auto matches = [&] { return offered.timing.hactive == mode->width && offered.timing.vactive == lines; };
  for (const uint8_t aspect : {ASPECT_16_9, ASPECT_UNKNOWN}) {
    const uint32_t index = FindVic(width, lines, mode->rate, aspect, interlaced);
    if (index != 0 && VicToMode(index > 128 ? index + 64 : index, &offered) == 0 && matches()) return offered.timing;
  }
  const uint32_t id = FindDmt(width, lines, mode->rate, kAnyAspect, interlaced);
  if (id != 0 && DmtToMode(id, &offered) == 0 && matches()) return offered.timing;
  CvtTiming request = {};
  request.formula = mode->rate % 60 == 0 ? 1 : 2;
  request.hactive = static_cast<uint16_t>(mode->width);
  request.vactive = static_cast<uint16_t>(mode->height);
  request.frameRate = static_cast<uint16_t>(mode->rate);
  request.interlaced = interlaced;
  request.aspectRatio = ASPECT_16_9;
  DtdTiming timing;
  if (Cvt2ToDtd(&request, &timing) != 0) return std::nullopt;
  return timing;
}

Json WithMode(const Json& json, const Place& place) {
  if (!json.is_object() || !json.contains("mode")) return json;
  const Json mode = json.at("mode");
  auto timing = mode.is_string() ? ModeTiming(mode.get_ref<const std::string&>()) : std::nullopt;
  if (!timing) place.Key("mode").Fail(fmt::format("{} is no mode such as \"1920x1080@60\"", Shown(mode)));
  if (timing) timing->hImageSize = timing->vImageSize = 0;
  Json keys = timing ? FieldsToJson(kRecordInfo<DtdTiming>, &*timing, kLeft, true) : Json::object();
  Json others = json;
  others.erase("mode");
  keys.update(others);
  return keys;
}

}  // namespace reedid::document::text
