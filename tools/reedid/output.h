// Writing a result so that nothing is lost: the whole new file, or the old one untouched.
#pragma once

#include <span>
#include <string>

#include "streams.h"

namespace reedid::tool {

// Where a command writes to, and how.
struct Output {
  std::string name;    // a file, "-", or a device by its scheme
  bool force = false;  // what is wrong goes to a device, too
  bool empty() const { return name.empty(); }
};

/*
 * Writes bytes to `output`, "-" (or a name of descriptor 1) for standard output. A file is written under another name in
 * its folder, brought to disk and renamed; it keeps the permissions (but set-user-id), the owner and the symbolic links
 * of the file that it replaces; other names of that file keep the old content, which is said. No signal but KILL leaves
 * the other name behind. A file without write permission is not replaced. Devices, pipes and files of the kernel (/proc,
 * /sys, debugfs) are written directly. What has a scheme is sent (send.h). Throws Exit::kOutput.
 */
void WriteOutput(const Output& output, std::span<const uint8_t> bytes, Streams& streams);

// Stops a command that writes when it was given no -o: Exit::kUsage; or one that cannot be written to: Exit::kOutput.
void RequireOutput(const Output& output, const std::string& command);

// A table beside an output: it goes where it cannot be mixed with the image.
void OfferTable(const std::string& text, const Output& output, Streams& streams);

}  // namespace reedid::tool
