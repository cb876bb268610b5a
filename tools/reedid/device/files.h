// Small files of the kernel, which are read and written in one piece.
#pragma once

#include <span>
#include <string>

#include "document/bytes.h"

namespace reedid::tool::device {

// All bytes of a file, whatever size it claims. An errno value, 0 when done.
int ReadKernelFile(const std::string& path, document::ByteVector& bytes);

// The words of a file without the newline behind them; empty when it cannot be read.
std::string ReadKernelText(const std::string& path);

// One write() of all bytes: what the kernel takes in two pieces means something else. An errno value, 0 when done.
int WriteKernelFile(const std::string& path, std::span<const uint8_t> bytes);
int WriteKernelFile(const std::string& path, std::string_view text);

}  // namespace reedid::tool::device
