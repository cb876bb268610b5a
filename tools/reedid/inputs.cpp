#include "inputs.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <new>
#include <system_error>
#include <utility>

#include "document/account/tree_json.h"
#include "document/printable.h"
#include "input.h"
#include "memory.h"

namespace reedid::tool {
namespace {

namespace fs = std::filesystem;
using document::Image;
using document::Json;
using document::JsonText;
using document::WithoutControls;

bool IsFolder(const std::string& name) {
  std::error_code ignored;
  return name != "-" && fs::is_directory(name, ignored);
}

struct Entry {
  std::string path;
  bool folder;
  bool operator<(const Entry& other) const { return path < other.path; }
};

[[noreturn]] void Fail(const std::string& folder, const std::string& what) {
  throw ToolError(Exit::kInput, fmt::format("{}: {}", folder, what));
}

std::vector<Entry> ListFolder(const std::string& folder) {
  std::vector<Entry> entries;
  std::error_code error, ignored;
  for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
    const bool isFolder = at->is_directory(ignored) && !at->is_symlink(ignored);
    if (isFolder || at->is_regular_file(ignored)) entries.push_back({at->path().string(), isFolder});
  }
  if (error == std::errc::not_enough_memory) throw std::bad_alloc();
  if (error) Fail(folder, fmt::format("{}; check its permissions", error.message()));
  std::sort(entries.begin(), entries.end());
  return entries;
}

class Run {
 public:
  Run(Progress& progress, const std::function<Exit(const std::string&)>& work) : progress_(progress), work_(work) {}

  void Visit(const std::string& name, bool folder) {
    try {
      if (folder) return VisitFolder(name);
      ++visited_;
      progress_.Step();
      const std::vector<std::string> inputs = NamesIn(name);
      if (inputs.size() > 1) return VisitAll(inputs);
      worst_ = std::max(worst_, work_(name));
    } catch (const ToolError& error) {
      if (error.code() == Exit::kOutput) throw;
      Report(error.what(), error.code());
    } catch (const std::exception& error) {
      MemoryRanOut();  // the next input may need less
      Report(fmt::format("{}: {}", name, error.what()), Exit::kNoMemory);
    }
  }
  // What the user named; a folder must have something in it.
  void VisitNamed(const std::string& name) {
    const size_t before = visited_;
    const Exit worstBefore = std::exchange(worst_, Exit::kDone);
    Visit(name, IsFolder(name));
    if (visited_ == before && worst_ == Exit::kDone) {
      Report(fmt::format("{}: no {} in this folder", name, skipped_ == 0 ? "file" : "EDID"), Exit::kInput);
    } else if (skipped_ != 0) {
      const char* what = skipped_ == 1 ? "file that is no EDID" : "files that are no EDIDs";
      Report(fmt::format("{}: {} {} skipped", name, skipped_, what), Exit::kDone);
    }
    skipped_ = 0;
    worst_ = std::max(worst_, worstBefore);
  }
  Exit worst() const { return worst_; }

 private:
  void VisitFolder(const std::string& folder) {
    const std::vector<Entry> entries = ListFolder(folder);
    for (const Entry& entry : entries) {
      if (!entry.folder && !MayBeEdid(entry.path)) {
        ++skipped_;
      } else {
        Visit(entry.path, entry.folder);
      }
    }
  }
  void VisitAll(const std::vector<std::string>& inputs) {
    for (const std::string& input : inputs) {
      try {
        worst_ = std::max(worst_, work_(input));
      } catch (const ToolError& error) {
        if (error.code() == Exit::kOutput) throw;
        Report(error.what(), error.code());
      }
    }
  }
  void Report(const std::string& message, Exit code) {
    progress_.Erase();
    Note(message);
    worst_ = std::max(worst_, code);
  }

  Progress& progress_;
  const std::function<Exit(const std::string&)>& work_;
  Exit worst_ = Exit::kDone;
  size_t visited_ = 0;
  size_t skipped_ = 0;
};

// An array that is printed as it grows, and looks like one that was printed at once.
class JsonArray {
 public:
  explicit JsonArray(Streams& streams) : streams_(streams) {}
  void Add(const Json& element) {
    std::string text = JsonText(element);
    text.pop_back();
    for (size_t at = 0; (at = text.find('\n', at)) != text.npos; at += 3) text.replace(at, 1, "\n  ");
    streams_.Result((empty_ ? "[\n  " : ",\n  ") + text);
    empty_ = false;
  }
  void Finish() { streams_.Result(empty_ ? "[]\n" : "\n]\n"); }

 private:
  Streams& streams_;
  bool empty_ = true;
};

void NoteFaults(const Image& image) {
  if (image.faults().empty()) return;
  Note(fmt::format("{}: has wrong checksums or counts; 'reedid check' tells which", image.name()));
}

// The answer on one of several inputs.
Answer AskOne(const std::string& input, Progress& progress,
              const std::function<Answer(const Image& image, bool single)>& ask) {
  const Image image = ReadImage(input);
  Answer answer = ask(image, false);
  progress.Erase();
  NoteFaults(image);
  return answer;
}

Exit AnswerTexts(const std::vector<std::string>& names, Streams& streams,
                 const std::function<Answer(const Image& image, bool single)>& ask) {
  Progress progress;
  const char* gap = "";
  return ForEachInput(names, progress, [&](const std::string& input) {
    const std::string text = AskOne(input, progress, ask).text;
    const bool lines = text.find('\n') + 1 < text.size();
    streams.Result((lines ? gap : "") + text);
    gap = "\n";
    return Exit::kDone;
  });
}

Exit AnswerArray(const std::vector<std::string>& names, Streams& streams,
                 const std::function<Answer(const Image& image, bool single)>& ask) {
  Progress progress;
  JsonArray array(streams);
  const Exit worst = ForEachInput(names, progress, [&](const std::string& input) {
    Json element = {{"input", input}};
    try {
      element.update(AskOne(input, progress, ask).json);
    } catch (const ToolError& error) {
      element["error"] = error.what();
      array.Add(element);
      throw;
    }
    array.Add(element);
    return Exit::kDone;
  });
  array.Finish();
  return worst;
}

}  // namespace

Progress::Progress() : terminal_(isatty(STDERR_FILENO) == 1), next_(Clock::now() + std::chrono::milliseconds(500)) {}

void Progress::Step() {
  ++inputs_;
  if (!terminal_ || Clock::now() < next_) return;
  Tell(fmt::format("\rreedid: {} inputs read", inputs_ - 1));
  next_ = Clock::now() + std::chrono::milliseconds(100);
  shown_ = true;
}

void Progress::Erase() {
  if (shown_) Tell("\r\033[K");
  shown_ = false;
}

bool IsSingle(const std::vector<std::string>& names) {
  return names.size() == 1 && !IsFolder(names[0]) && NamesIn(names[0]).size() == 1;
}

Exit ForEachInput(const std::vector<std::string>& names, Progress& progress,
                  const std::function<Exit(const std::string& input)>& work) {
  Run run(progress, work);
  for (const std::string& name : names) run.VisitNamed(name);
  return run.worst();
}

Exit AnswerEach(const std::vector<std::string>& names, bool json, Streams& streams,
                const std::function<Answer(const Image& image, bool single)>& ask) {
  if (!IsSingle(names)) return json ? AnswerArray(names, streams, ask) : AnswerTexts(names, streams, ask);
  const Image image = ReadImage(names[0]);
  const Answer answer = ask(image, true);
  NoteFaults(image);
  streams.Result(json ? JsonText(answer.json) : answer.text);
  return Exit::kDone;
}

}  // namespace reedid::tool
