// Where the tool's words go. The library prints its diagnostics, which are for those who program with it, on standard
// output: descriptor 1 leads nowhere while the tool runs, and the real standard output is kept aside for results. What
// users should know the tool says itself.
#pragma once

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
// `bytes = image.Generate(ToldNotes())` tells them before anything else is done.
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

// Writes all bytes to an open descriptor; an errno value, 0 when done.
int WriteAll(int descriptor, std::span<const uint8_t> bytes);

}  // namespace reedid::tool
