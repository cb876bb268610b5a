// Where the tool's words go. The library prints its diagnostics on standard output; the tool's own result must not be
// mixed with them, so descriptor 1 becomes standard error and the real standard output is kept aside for results.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "tool_error.h"

namespace reedid::tool {

// One per process, made before anything is opened or printed.
class Streams {
 public:
  Streams();
  ~Streams();
  Streams(const Streams&) = delete;
  Streams& operator=(const Streams&) = delete;

  // A part of the result, on the real standard output. Throws Exit::kOutput; when the reader of a pipe has gone, the
  // tool ends as programs do then, by SIGPIPE.
  void Result(std::string_view text);
  void Result(std::span<const uint8_t> bytes);
  // What is told beside the real result of a command: that goes on without its reader.
  void Offer(std::string_view text);
  bool ResultIsTerminal() const;
  unsigned TerminalColumns() const;  // 0: not known, or no terminal

 private:
  bool WriteResult(std::span<const uint8_t> bytes);
  int result_ = -1;
};

// Standard error. What cannot be written there is lost, but not the work that it tells of.
void Tell(std::string_view text);

// One line on standard error, "reedid: ...".
void Note(std::string_view message);

// Notes of the document library, told when the object goes, also when an error is on its way:
// `image.Generate(ToldNotes())` tells them before anything else is done.
class ToldNotes {
 public:
  ToldNotes() = default;
  ~ToldNotes();
  ToldNotes(const ToldNotes&) = delete;
  ToldNotes& operator=(const ToldNotes&) = delete;
  operator document::Notes&() { return notes_; }

 private:
  document::Notes notes_;
};

// Runs `work` and returns the diagnostics that the library printed meanwhile.
std::string CaptureDiagnostics(const std::function<void()>& work);

// Writes all bytes to an open descriptor; an errno value, 0 when done.
int WriteAll(int descriptor, std::span<const uint8_t> bytes);

}  // namespace reedid::tool
