#include "tools/reedid/device/schemes.h"

#include <fmt/format.h>

#include <algorithm>

#include "document/read/samples.h"
#include "tools/reedid/device/connectors.h"
#include "tools/reedid/device/firmware.h"
#include "tools/reedid/device/override.h"
#ifdef __linux__
#include "tools/reedid/device/ddc.h"
#include "tools/reedid/device/v4l2.h"
#endif

namespace reedid::tool::device {
namespace {

document::ByteVector ReadSample(const Place& place, document::Notes&) {
  return document::SampleBytes(place.where);
}

#ifndef __linux__
// Other systems keep their devices elsewhere.
[[noreturn]] void FailSystem(const Place& place, Exit exit) {
  Fail(place, exit, "only Linux has this; read the EDID there, and name the file here");
}
document::ByteVector ReadElsewhere(const Place& place, document::Notes&) {
  FailSystem(place, Exit::kInput);
}
void WriteElsewhere(const Place& place, std::span<const uint8_t>, document::Notes&) {
  FailSystem(place, Exit::kOutput);
}
void ClearElsewhere(const Place& place, document::Notes&) {
  FailSystem(place, Exit::kOutput);
}
#endif

constexpr Scheme kSchemes[] = {
    // name      read           write          file          clear
    {"sample", ReadSample, nullptr, nullptr, nullptr},
#ifdef __linux__
    {"connector", ReadConnector, nullptr, nullptr, nullptr},
    {"i2c", ReadI2c, nullptr, nullptr, nullptr},
    {"v4l2", ReadV4l2, WriteV4l2, nullptr, ClearV4l2},
    {"override", nullptr, WriteOverride, nullptr, ClearOverride},
    {"firmware", nullptr, nullptr, FirmwareFile, ClearFirmware},
#else
    {"connector", ReadElsewhere, nullptr, nullptr, nullptr},
    {"i2c", ReadElsewhere, nullptr, nullptr, nullptr},
    {"v4l2", ReadElsewhere, WriteElsewhere, nullptr, ClearElsewhere},
    {"override", nullptr, WriteElsewhere, nullptr, ClearElsewhere},
    {"firmware", nullptr, WriteElsewhere, nullptr, ClearElsewhere},
#endif
};

}  // namespace

std::span<const Scheme> Schemes() {
  return kSchemes;
}

const Scheme* FindScheme(const std::string& name) {
  const size_t colon = name.find(':');
  if (colon == name.npos) return nullptr;
  const auto* const scheme =
      std::ranges::find_if(kSchemes, [&](const Scheme& row) { return name.compare(0, colon, row.name) == 0; });
  return scheme == std::end(kSchemes) ? nullptr : scheme;
}

Place PlaceIn(const std::string& name) {
  return {name, name.substr(name.find(':') + 1)};
}

bool AddPad(std::string& name, unsigned pad) {
  if (!name.starts_with("v4l2:")) return false;
  if (name.find(kPadMark) == name.npos) name += fmt::format("{}{}", kPadMark, pad);
  return true;
}

document::ByteVector ReadFrom(const std::string& name, document::Notes& notes) {
  const Scheme* scheme = FindScheme(name);
  const Place place = PlaceIn(name);
  if (scheme != nullptr && scheme->read != nullptr) return scheme->read(place, notes);
  Fail(place, Exit::kInput, "can be written only; read connector:, i2c:, v4l2: or sample:");
}

const Scheme& OutputScheme(const std::string& name) {
  const Scheme* scheme = FindScheme(name);
  if (scheme != nullptr && scheme->clear != nullptr) return *scheme;
  Fail(PlaceIn(name), Exit::kOutput, "can be read only; write to v4l2:, override: or firmware:");
}

}  // namespace reedid::tool::device
