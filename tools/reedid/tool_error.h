// How the tool ends, and the error that ends it.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "document/error.h"

namespace reedid::tool {

// The exit codes, in one place; --help shows kExitCodesHelp.
enum class Exit : uint8_t {
  kDone = 0,
  kNo = 1,
  kUsage = 2,
  kInput = 3,
  kOutput = 4,
  kRefused = 5,
  kNoMemory = 6,
};

inline constexpr char kExitCodesHelp[] =
    "Exit codes; of several inputs, the highest:\n"
    "  0  done\n"
    "  1  the answer is no: the EDID is not valid, it has no physical address, no such timing is known, two EDIDs\n"
    "     differ, or after a limit a timing still needs more (the output is written, and a note names the timing)\n"
    "  2  wrong usage: unknown command or option, bad value, no -o\n"
    "  3  the input cannot be read or is no EDID\n"
    "  4  the output cannot be written; an existing file is as it was\n"
    "  5  the edit was refused; nothing was written\n"
    "  6  out of memory, or an error that should not happen\n";

// The message names the file and says what to do.
class ToolError : public std::runtime_error {
 public:
  ToolError(Exit code, const std::string& message) : std::runtime_error(message), code_(code) {}
  Exit code() const { return code_; }

 private:
  Exit code_;
};

// What the document library throws, as the end of a command: with an exit code, and what the user can do.
ToolError FromDocument(const document::Error& error);

}  // namespace reedid::tool
