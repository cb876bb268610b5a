// Commands that take several inputs, and folders with all that is in them.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "document/account/tree.h"
#include "document/read/image.h"
#include "streams.h"

namespace reedid::tool {

// A line on standard error that tells how far a run has come: only on a terminal, and not before the run is long.
class Progress {
 public:
  Progress();
  ~Progress() { Erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // One more input is begun.
  void Step();
  // Before anything else is printed.
  void Erase();

 private:
  using Clock = std::chrono::steady_clock;
  bool terminal_;
  bool shown_ = false;
  size_t inputs_ = 0;
  Clock::time_point next_;
};

// One name of one EDID: what is wrong with it ends the command, and its answer stands alone.
bool IsSingle(const std::vector<std::string>& names);

/*
 * Runs `work` for each input. A text with several EDIDs stands for each of them (NamesIn). A folder stands for the
 * regular files in it and below it, by name; those that are no EDIDs are skipped and counted on one line; links to files
 * count, links to folders are not followed, so there is an end. An error (a ToolError, no memory) is told and the next input
 * follows, but output that cannot be written ends all. Returns the highest exit code. Keeps no more than the names in
 * the folders on the way.
 */
Exit ForEachInput(const std::vector<std::string>& names, Progress& progress,
                  const std::function<Exit(const std::string& input)>& work);

// What a command says of an image; only the one that was asked for has to be filled.
struct Answer {
  std::string text;
  document::Json json;
};

/*
 * Prints the answers on all inputs. Of several, texts follow each other and JSON is an array with the name of each
 * input in "input"; one that has no answer stands there with its "error". Diagnostics then begin with the name.
 */
Exit AnswerEach(const std::vector<std::string>& names, bool json, Streams& streams,
                const std::function<Answer(const document::Image& image, bool single)>& ask);

}  // namespace reedid::tool
