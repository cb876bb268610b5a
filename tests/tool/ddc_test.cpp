// DDC with an adapter and a display in the kernel's place: a memory behind lines that lose bits.

#include "tools/reedid/device/ddc.h"

#include <linux/i2c-dev.h>
#include <linux/i2c.h>

#include <cerrno>
#include <random>

#include "tests/tool/device_support.h"

namespace reedid::tool::device {
namespace {

enum class Fault { kNone, kNoAnswer, kShort, kHangs, kNoise };

// An adapter with a display behind it. The segment pointer is gone after each transaction.
class Adapter : public DeviceFile {
 public:
  explicit Adapter(ByteVector image) : memory(std::move(image)) {}
  int Control(unsigned long request, void* argument) override {
    if (request == I2C_FUNCS) return *static_cast<unsigned long*>(argument) = functions, 0;
    if (request == I2C_SLAVE) return reinterpret_cast<uintptr_t>(argument) == 0x50 ? -claimed : -EINVAL;
    if (request == I2C_SMBUS) return ReadByte(*static_cast<i2c_smbus_ioctl_data*>(argument));
    return request == I2C_RDWR ? Transfer(*static_cast<i2c_rdwr_ioctl_data*>(argument)) : -ENOTTY;
  }

  ByteVector memory;
  std::function<Fault(unsigned transfer)> fault = [](unsigned) { return Fault::kNone; };
  unsigned long functions = I2C_FUNC_I2C | I2C_FUNC_SMBUS_READ_BYTE_DATA;
  int claimed = 0;
  bool segments = true;
  unsigned transfers = 0;

 private:
  int ReadByte(const i2c_smbus_ioctl_data& transfer) {
    if ((functions & I2C_FUNC_SMBUS_READ_BYTE_DATA) == 0 || transfer.read_write != I2C_SMBUS_READ) return -EOPNOTSUPP;
    transfer.data->byte = At(transfer.command);
    return 0;
  }
  int Transfer(const i2c_rdwr_ioctl_data& transfer) {
    const Fault now = fault(transfers++);
    if (now == Fault::kNoAnswer) return -EREMOTEIO;
    if (now == Fault::kHangs) return -ETIMEDOUT;
    size_t segment = 0, offset = 0;
    for (unsigned i = 0; i < transfer.nmsgs; ++i) {
      const i2c_msg& message = transfer.msgs[i];
      if (now == Fault::kShort && i + 1 == transfer.nmsgs) return static_cast<int>(i);
      if (message.addr == 0x30 && !segments) return -ENXIO;
      if (message.addr == 0x30) segment = message.buf[0];
      if (message.addr != 0x50) continue;
      if ((message.flags & I2C_M_RD) == 0) offset = message.buf[0];
      for (size_t k = 0; (message.flags & I2C_M_RD) != 0 && k < message.len; ++k) {
        message.buf[k] = At(segment * 256 + (offset + k) % 256);
      }
      if (now == Fault::kNoise && (message.flags & I2C_M_RD) != 0) message.buf[transfers % message.len] ^= 0x10;
    }
    return static_cast<int>(transfer.nmsgs);
  }
  uint8_t At(size_t at) const { return at < memory.size() ? memory[at] : uint8_t{0xFF}; }
};

const Place kBus = {"i2c:/dev/i2c-4", "/dev/i2c-4"};

TEST(Ddc, ReadsTheBlocksThatAreStated) {
  const auto overriding = [](uint8_t count) { return Cta().Extended(120, {count}).Build(); };
  struct Case {
    const char* name;
    ByteVector image;
    size_t blocks;
  };
  for (const auto& [name, image, blocks] : std::initializer_list<Case>{
           {"alone", ImageOf(1, 0), 1},
           {"two", ImageOf(2, 1), 2},
           {"a segment begun", ImageOf(3, 2), 3},
           {"two segments", ImageOf(4, 3), 4},
           {"all", ImageOf(256, 255), 256},
           {"override", ImageOf(5, 1, overriding(4)), 5},
           {"override of one", ImageOf(4, 3, overriding(1)), 4},
           {"no CTA block", ImageOf(2, 1, ByteVector(128, 0xE3)), 2},
       }) {
    SCOPED_TRACE(name);
    Adapter adapter(image);
    Notes notes;
    const ByteVector read = ReadDdc(kBus, adapter, notes);
    EXPECT_EQ(read.size(), blocks * 128);
    EXPECT_TRUE(read == ByteVector(image.begin(), image.begin() + static_cast<std::ptrdiff_t>(blocks * 128)));
    EXPECT_EQ(adapter.transfers, blocks);
    EXPECT_EQ(Joined(notes), "");
  }
  Adapter old(ImageOf(2, 1));
  old.segments = false;
  Notes notes;
  EXPECT_TRUE(ReadDdc(kBus, old, notes) == old.memory) << "the segment pointer of an old display was asked";
}

// Whatever goes wrong and however often: the right bytes, or a word about it.
TEST(Ddc, NeverTakesWrongBytesInSilence) {
  const ByteVector image = ImageOf(5, 4);
  unsigned whole = 0, failed = 0;
  for (unsigned seed = 0; seed < 60; ++seed) {
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    Adapter adapter(image);
    adapter.fault = [&random](unsigned) { return random() % 2 == 0 ? Fault(random() % 5) : Fault::kNone; };
    Notes notes;
    ByteVector read;
    const std::string error = ErrorOf([&] { read = ReadDdc(kBus, adapter, notes); });
    if (!error.empty()) {
      ++failed;
      EXPECT_HAS(error, "tried 4 times");
    } else if (read != image) {
      EXPECT_HAS(Joined(notes), "wrong checksum");
    } else {
      ++whole;
      EXPECT_EQ(adapter.transfers > 5, Joined(notes).find("only; the cable") != std::string::npos) << Joined(notes);
    }
  }
  EXPECT_GT(whole, 20u);
  EXPECT_GT(failed, 0u);
}

TEST(Ddc, TellsWhatStaysWrong) {
  struct Case {
    Fault fault;
    unsigned from;        // the first transfer that fails
    const char* message;  // empty: read, with a note
  };
  for (const auto& [fault, from, message] : std::initializer_list<Case>{
           {Fault::kNoAnswer, 0, "i2c:/dev/i2c-4: block 0, tried 4 times: no answer at address 0x50"},
           {Fault::kNoAnswer, 2, "block 2, tried 4 times: no answer"},
           {Fault::kShort, 1, "block 1, tried 4 times: the transfer ended early"},
           {Fault::kHangs, 0, "the bus hangs"},
           {Fault::kNoise, 1, ""},
       }) {
    SCOPED_TRACE(message);
    Adapter adapter(ImageOf(3, 2));
    adapter.fault = [fault = fault, from = from](unsigned transfer) { return transfer < from ? Fault::kNone : fault; };
    Notes notes;
    const std::string error = ErrorOf([&] { EXPECT_EQ(ReadDdc(kBus, adapter, notes).size(), 3 * 128u); });
    EXPECT_HAS(error, message);
    EXPECT_EQ(error.empty(), *message == 0);
    EXPECT_EQ(adapter.transfers, *message == 0 ? from + 8 : from + 4);
    EXPECT_EQ(Joined(notes).find("block 1: wrong checksum in 4 tries") != std::string::npos, *message == 0);
  }
  Adapter memoryModule(ByteVector(256, 0x23));
  Notes notes;
  EXPECT_HAS(ErrorOf([&] { ReadDdc(kBus, memoryModule, notes); }), "no display");
}

TEST(Ddc, ReadsByteByByteWhereAnAdapterCannotDoMore) {
  Adapter adapter(ImageOf(4, 3));
  adapter.functions = I2C_FUNC_SMBUS_READ_BYTE_DATA;
  Notes notes;
  const ByteVector read = ReadDdc(kBus, adapter, notes);
  EXPECT_TRUE(read == ByteVector(adapter.memory.begin(), adapter.memory.begin() + 256));
  EXPECT_HAS(Joined(notes), "two of 4 blocks");
  adapter.claimed = EBUSY;
  EXPECT_HAS(ErrorOf([&] { ReadDdc(kBus, adapter, notes); }), "a driver holds address 0x50");
  adapter.functions = 0;
  EXPECT_HAS(ErrorOf([&] { ReadDdc(kBus, adapter, notes); }), "use another bus");
}

}  // namespace
}  // namespace reedid::tool::device
