#include "streams.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <new>

#include "document/printable.h"
#include "memory.h"

namespace reedid::tool {
namespace {

// A file opened later must not get the number of a closed standard stream: diagnostics would be written into it.
void FillStandardDescriptors() {
  int descriptor = open("/dev/null", O_RDWR);
  while (descriptor >= 0 && descriptor <= STDERR_FILENO) descriptor = dup(descriptor);
  if (descriptor > STDERR_FILENO) close(descriptor);
}

}  // namespace

Streams::Streams() {
  const bool hasOutput = fcntl(STDOUT_FILENO, F_GETFD) >= 0;
  FillStandardDescriptors();
  if (hasOutput) result_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  std::fflush(stdout);
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(nowhere >= 0 ? nowhere : STDERR_FILENO, STDOUT_FILENO);
  if (nowhere >= 0) close(nowhere);
  std::signal(SIGPIPE, SIG_IGN);  // Result decides what a reader that has gone means
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
}

Streams::~Streams() {
  if (result_ >= 0) close(result_);
}

void Streams::Result(std::string_view text) {
  Result(std::span(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
}

void Streams::Result(std::span<const uint8_t> bytes) {
  if (WriteResult(bytes)) return;
  std::signal(SIGPIPE, SIG_DFL);
  std::raise(SIGPIPE);
}

void Streams::Offer(std::string_view text) {
  WriteResult(std::span(reinterpret_cast<const uint8_t*>(text.data()), text.size()));
}

// False when the reader of a pipe has gone.
bool Streams::WriteResult(std::span<const uint8_t> bytes) {
  RequireMemory();
  const int error = result_ < 0 ? EBADF : WriteAll(result_, bytes);
  if (error == 0 || error == EPIPE) return error == 0;
  throw ToolError(Exit::kOutput, fmt::format("standard output: {}", std::strerror(error)));
}

bool Streams::ResultIsTerminal() const {
  return result_ >= 0 && isatty(result_) == 1;
}

unsigned Streams::TerminalColumns() const {
  winsize size = {};
  return result_ >= 0 && ioctl(result_, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

void Tell(std::string_view text) {
  WriteAll(STDERR_FILENO, {reinterpret_cast<const uint8_t*>(text.data()), text.size()});
}

// Called from destructors and handlers, where nothing may be thrown.
void Note(std::string_view message) {
  try {
    Tell(fmt::format("reedid: {}\n", document::WithoutControls(message)));
  } catch (const std::bad_alloc&) {
    Tell("reedid: no memory for a message\n");
  }
}

ToldNotes::~ToldNotes() {
  for (const std::string& note : notes_) Note(note);
}

int WriteAll(int descriptor, std::span<const uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return written < 0 ? errno : EIO;
    bytes = bytes.subspan(static_cast<size_t>(written));
  }
  return 0;
}

}  // namespace reedid::tool
