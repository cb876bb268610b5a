#include "tools/reedid/device/v4l2.h"

#include <fmt/format.h>
#include <linux/videodev2.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <optional>
#include <utility>

#include "document/account/values.h"
#include "document/edit/address.h"

namespace reedid::tool::device {
namespace {

using document::ByteVector;

constexpr size_t kBlockSize = REEDID_BLOCK_SIZE;
constexpr uint32_t kMostBlocks = 256;  // what the kernel takes

struct DevicePad {
  std::string path;
  uint32_t pad = 0;
};

DevicePad SplitPad(const Place& place, Exit exit) {
  const size_t mark = place.where.rfind(kPadMark);
  if (mark == place.where.npos) return {place.where};
  DevicePad split = {place.where.substr(0, mark)};
  const std::string digits = place.where.substr(mark + kPadMark.size());
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), split.pad);
  if (error != std::errc() || end != digits.data() + digits.size()) {
    Fail(place, exit, "the pad is a number, as in v4l2:/dev/video0,pad=1");
  }
  return split;
}

// Subdevices have the same requests by other names (linux/v4l2-subdev.h).
class Receiver {
 public:
  Receiver(const Place& place, DeviceFile& device, Exit exit)
      : place_(place), device_(device), exit_(exit), pad_(SplitPad(place, exit).pad) {}

  // Empty when the device holds none.
  ByteVector Get() {
    ByteVector bytes(kMostBlocks * kBlockSize);
    v4l2_edid request = {};
    request.pad = pad_;
    request.blocks = kMostBlocks;
    request.edid = bytes.data();
    const int error = -device_.Control(VIDIOC_G_EDID, &request);
    if (error == ENODATA) return {};
    if (error > 0) FailRequest(error);
    bytes.resize(std::min(request.blocks, kMostBlocks) * kBlockSize);
    return bytes;
  }
  void Set(std::span<const uint8_t> bytes) {
    ByteVector sent(bytes.begin(), bytes.end());
    v4l2_edid request = {};
    request.pad = pad_;
    request.blocks = static_cast<uint32_t>(sent.size() / kBlockSize);
    request.edid = sent.data();
    const int error = -device_.Control(VIDIOC_S_EDID, &request);
    if (error == E2BIG) {
      Fail(place_, exit_,
           fmt::format("{} blocks, but the device holds {} at most; 'reedid high-refresh' or 'reedid limit' make less",
                       sent.size() / kBlockSize, request.blocks));
    }
    if (error > 0) FailRequest(error);
  }

 private:
  [[noreturn]] void FailRequest(int error) {
    if (error == ENOTTY) Fail(place_, exit_, "the device has no EDID; name an HDMI or DisplayPort receiver");
    if (error == EINVAL) {
      Fail(place_, exit_,
           fmt::format("the device has no EDID at pad {}; name the pad of an HDMI or DisplayPort connector with --pad",
                       pad_));
    }
    FailErrno(place_, exit_, error, "plug the device in again");
  }

  const Place& place_;
  DeviceFile& device_;
  Exit exit_;
  uint32_t pad_;
};

// The image with this address and all counts and checksums right, for comparing; none when it is broken.
std::optional<ByteVector> WithAddress(const std::string& name, std::span<const uint8_t> bytes, uint16_t address) {
  try {
    document::Notes ignored;
    return document::SetAddress(document::Image::FromBytes(name, bytes), address, ignored).Generate(ignored);
  } catch (const document::Error&) {
    return std::nullopt;
  }
}

std::optional<uint16_t> AddressOf(const std::string& name, std::span<const uint8_t> bytes) {
  try {
    return document::AddressOf(document::Image::FromBytes(name, bytes));
  } catch (const document::Error&) {
    return std::nullopt;
  }
}

// Drivers write the address of the connector over that of the EDID. False when they differ in more than this.
bool DiffersInAddress(const Place& place, std::span<const uint8_t> sent, std::span<const uint8_t> held,
                      document::Notes& notes) {
  const auto before = AddressOf(place.name, sent);
  const auto after = AddressOf(place.name, held);
  if (!before || !after || *before == *after) return false;
  const auto expected = WithAddress(place.name, sent, *after);
  if (!expected || expected != WithAddress(place.name, held, *after)) return false;
  notes.push_back(fmt::format("{}: the driver wrote the physical address of its connector, {} instead of {}",
                              place.name, document::PhysAddrText(*after), document::PhysAddrText(*before)));
  return true;
}

// What is wrong with what was read back.
std::string Difference(std::span<const uint8_t> sent, std::span<const uint8_t> held) {
  if (sent.size() != held.size()) {
    return fmt::format("{} blocks were sent, {} read back", sent.size() / kBlockSize, held.size() / kBlockSize);
  }
  const auto at = static_cast<size_t>(std::mismatch(sent.begin(), sent.end(), held.begin()).first - sent.begin());
  return fmt::format("byte {} of block {} was read back as {:02x} instead of {:02x}", at % kBlockSize, at / kBlockSize,
                     held[at], sent[at]);
}

[[noreturn]] void FailDifferent(const Place& place, Receiver& receiver, const ByteVector& before,
                                const std::string& difference) {
  const char* state = "it has what it had before";
  try {
    receiver.Set(before);
  } catch (const ToolError&) {
    state = "what it had before could not be put back";
  }
  Fail(place, Exit::kOutput, fmt::format("{}; {}, look for what else sets its EDID", difference, state));
}

std::unique_ptr<DeviceFile> Open(const Place& place, Exit exit) {
  return OpenDeviceFile(place, SplitPad(place, exit).path, exit,
                        "the video devices are /dev/video* and /dev/v4l-subdev*");
}

}  // namespace

ByteVector ReadV4l2(const Place& place, DeviceFile& device) {
  ByteVector bytes = Receiver(place, device, Exit::kInput).Get();
  if (bytes.empty()) {
    Fail(place, Exit::kInput, fmt::format("the device holds no EDID; give it one: reedid send FILE -o {}", place.name));
  }
  return bytes;
}

void WriteV4l2(const Place& place, DeviceFile& device, std::span<const uint8_t> bytes, document::Notes& notes) {
  Receiver receiver(place, device, Exit::kOutput);
  const ByteVector before = receiver.Get();
  receiver.Set(bytes);
  const ByteVector held = receiver.Get();
  if (!std::ranges::equal(bytes, held) && !DiffersInAddress(place, bytes, held, notes)) {
    FailDifferent(place, receiver, before, Difference(bytes, held));
  }
  notes.push_back(fmt::format("{}: holds {} block{}; its source saw the display go and come back (hot-plug)",
                              place.name, held.size() / kBlockSize, held.size() == kBlockSize ? "" : "s"));
}

ByteVector ReadV4l2(const Place& place, document::Notes&) {
  return ReadV4l2(place, *Open(place, Exit::kInput));
}

void WriteV4l2(const Place& place, std::span<const uint8_t> bytes, document::Notes& notes) {
  WriteV4l2(place, *Open(place, Exit::kOutput), bytes, notes);
}

void ClearV4l2(const Place& place, document::Notes& notes) {
  const auto device = Open(place, Exit::kOutput);
  Receiver receiver(place, *device, Exit::kOutput);
  receiver.Set({});
  if (!receiver.Get().empty()) Fail(place, Exit::kOutput, "the device keeps its EDID; restart its driver");
  notes.push_back(fmt::format("{}: holds no EDID; its source sees no display", place.name));
}

}  // namespace reedid::tool::device
