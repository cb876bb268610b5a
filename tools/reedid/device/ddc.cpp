// E-DDC (VESA Enhanced Display Data Channel 1.3): the EDID is a memory at I2C address 0x50 of which one byte of offset
// reaches 256 bytes, two blocks. The segment pointer at address 0x30 chooses which two; the display forgets it at every
// stop condition, so it is written in the same combined transaction as the offset and the read.

#include "tools/reedid/device/ddc.h"

#include <fmt/format.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <optional>
#include <thread>

#include "document/read/override_count.h"
#include "reedid/reedid.hpp"
#include "tools/reedid/device/connectors.h"

namespace reedid::tool::device {
namespace {

constexpr size_t kBlockSize = REEDID_BLOCK_SIZE;
constexpr size_t kCountByte = 126;
constexpr uint16_t kEdidAddress = 0x50;
constexpr uint16_t kSegmentAddress = 0x30;
constexpr unsigned kBlocksOfSegment = 2;
constexpr unsigned kTries = 4;
constexpr auto kPause = std::chrono::milliseconds(10);  // for a display that is waking up, or a burst of noise
constexpr int kShortRead = -1;                          // beside the errno values

int ReadCombined(DeviceFile& adapter, unsigned block, uint8_t* bytes) {
  auto segment = static_cast<uint8_t>(block / kBlocksOfSegment);
  auto offset = static_cast<uint8_t>(block % kBlocksOfSegment * kBlockSize);
  i2c_msg messages[] = {
      {kSegmentAddress, 0, 1, &segment}, {kEdidAddress, 0, 1, &offset}, {kEdidAddress, I2C_M_RD, kBlockSize, bytes}};
  // The pointer starts at 0, and older displays do not answer where it is.
  const unsigned skipped = segment == 0 ? 1 : 0;
  i2c_rdwr_ioctl_data transfer = {messages + skipped, static_cast<uint32_t>(std::size(messages)) - skipped};
  const int done = adapter.Control(I2C_RDWR, &transfer);
  if (done < 0) return -done;
  return static_cast<uint32_t>(done) == transfer.nmsgs ? 0 : kShortRead;
}

int ReadByteByByte(DeviceFile& adapter, unsigned block, uint8_t* bytes) {
  for (size_t i = 0; i < kBlockSize; ++i) {
    i2c_smbus_data data = {};
    i2c_smbus_ioctl_data transfer = {I2C_SMBUS_READ, static_cast<uint8_t>(block * kBlockSize + i), I2C_SMBUS_BYTE_DATA,
                                     &data};
    const int done = adapter.Control(I2C_SMBUS, &transfer);
    if (done < 0) return -done;
    bytes[i] = data.byte;
  }
  return 0;
}

std::string Explain(int error) {
  switch (error) {
    case kShortRead:
      return "the transfer ended early; check the cable";
    case ENXIO:
    case EREMOTEIO:
      return "no answer at address 0x50; check that a display is plugged in and switched on";
    case ETIMEDOUT:
      return "the bus hangs; unplug the display and plug it in again";
    case EAGAIN:
      return "another master holds the bus; try again";
    default:
      return fmt::format("{}; check the cable and the kernel's log (dmesg)", std::strerror(error));
  }
}

class DdcReader {
 public:
  DdcReader(const Place& place, DeviceFile& adapter, document::Notes& notes)
      : place_(place), adapter_(adapter), notes_(notes) {
    unsigned long functions = 0;
    if (adapter.Control(I2C_FUNCS, &functions) < 0) {
      Fail(place, Exit::kInput, "no I2C bus; 'reedid displays' lists those of the displays");
    }
    plain_ = (functions & I2C_FUNC_I2C) != 0;
    if (plain_) return;
    if ((functions & I2C_FUNC_SMBUS_READ_BYTE_DATA) == 0) {
      Fail(place, Exit::kInput, "the adapter can neither do plain I2C nor SMBus byte reads; use another bus");
    }
    // NOLINTNEXTLINE(performance-no-int-to-ptr): this request takes a number
    const int error = -adapter.Control(I2C_SLAVE, reinterpret_cast<void*>(uintptr_t{kEdidAddress}));
    if (error == EBUSY)
      Fail(place, Exit::kInput, "a driver holds address 0x50; unbind it from the device and try again");
    if (error > 0) FailErrno(place, Exit::kInput, error, "'reedid displays' lists the buses");
  }

  document::ByteVector ReadAll() {
    AppendBlock();
    unsigned blocks = 1u + bytes_[kCountByte];
    for (unsigned block = 1; block < blocks; ++block) {
      if (!plain_ && block == kBlocksOfSegment) {
        notes_.push_back(fmt::format("{}: the adapter has SMBus byte reads only: two of {} blocks could be read",
                                     place_.name, blocks));
        break;
      }
      AppendBlock();
      if (block == 1) blocks = OverriddenCount().value_or(blocks - 1) + 1;
    }
    return std::move(bytes_);
  }

 private:
  // By the HDMI Forum's override block, which stands in the first extension (HDMI 2.1, 10.3.6).
  std::optional<unsigned> OverriddenCount() {
    if (bytes_[kBlockSize] != EDID_EXTENSION_CTA) return std::nullopt;
    const EdidBlock block = {EDID_BLOCK_CEA, kBlockSize, kBlockSize, &bytes_[kBlockSize]};
    const auto count = document::OverrideCount({&block, 1});
    return count && *count > 1 ? count : std::nullopt;
  }
  void AppendBlock() {
    const auto block = static_cast<unsigned>(bytes_.size() / kBlockSize);
    uint8_t read[kBlockSize] = {};
    int error = 0;
    for (unsigned attempt = 1; attempt <= kTries; ++attempt) {
      if (attempt > 1) std::this_thread::sleep_for(kPause);
      error = plain_ ? ReadCombined(adapter_, block, read) : ReadByteByByte(adapter_, block, read);
      if (error != 0 || !IsSound(block, read)) continue;
      if (attempt > 1) Note(block, fmt::format("right at try {} only; the cable or its plugs may be bad", attempt));
      bytes_.insert(bytes_.end(), read, read + kBlockSize);
      return;
    }
    if (error != 0) FailBlock(block, Explain(error));
    if (block == 0 && isEdidHeader(read) == 0) {
      FailBlock(block, "what answers at address 0x50 is no display; 'reedid displays' tells their buses");
    }
    Note(block, fmt::format("wrong checksum in {} tries; taken as it is", kTries));
    bytes_.insert(bytes_.end(), read, read + kBlockSize);
  }
  static bool IsSound(unsigned block, const uint8_t* read) {
    return GetChecksum(read, kBlockSize) == read[kBlockSize - 1] && (block != 0 || isEdidHeader(read) != 0);
  }
  void Note(unsigned block, const std::string& what) {
    notes_.push_back(fmt::format("{}: block {}: {}", place_.name, block, what));
  }
  [[noreturn]] void FailBlock(unsigned block, const std::string& what) {
    Fail(place_, Exit::kInput, fmt::format("block {}, tried {} times: {}", block, kTries, what));
  }

  const Place& place_;
  DeviceFile& adapter_;
  document::Notes& notes_;
  bool plain_ = false;
  document::ByteVector bytes_;
};

// The bus that a name stands for.
std::string BusOf(const Place& place) {
  if (place.where.find('/') != place.where.npos) return place.where;
  const Connector connector = FindConnector(place, Exit::kInput);
  if (!connector.bus.empty()) return connector.bus;
  Fail(place, Exit::kInput,
       fmt::format("the kernel names no bus of this connector; connector:{} has what the kernel read there",
                   connector.name));
}

}  // namespace

document::ByteVector ReadDdc(const Place& place, DeviceFile& adapter, document::Notes& notes) {
  return DdcReader(place, adapter, notes).ReadAll();
}

document::ByteVector ReadI2c(const Place& place, document::Notes& notes) {
  const auto adapter = OpenDeviceFile(place, BusOf(place), Exit::kInput,
                                      "load the module i2c-dev (modprobe i2c-dev); 'reedid displays' lists the buses");
  return ReadDdc(place, *adapter, notes);
}

}  // namespace reedid::tool::device
