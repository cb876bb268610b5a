// From the command line to the exit code.

#include <algorithm>
#include <new>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "command_line.h"
#include "help.h"
#include "memory.h"

namespace reedid::tool {
namespace {

Exit Run(int argc, char** argv, Streams& streams) {
  CLI::App app("reedid reads, checks and changes what displays say of themselves: EDID, CTA-861 and DisplayID.",
               "reedid");
  Command chosen;
  SetUpCommandLine(app, chosen);
  if (argc < 2) {
    Tell(ShortHelp());
    return Exit::kUsage;
  }
  // "help COMMAND" is "COMMAND --help", "help" alone is "--help".
  std::vector<std::string> words(argv + 1, argv + argc);
  const bool isHelp = words[0] == "help";
  if (isHelp) words.erase(words.begin());
  if (!words.empty() && !words[0].starts_with('-') && FindHelp(words[0]) == nullptr) {
    throw ToolError(Exit::kUsage, UnknownCommandText(words[0]));
  }
  if (isHelp) words.emplace_back("--help");
  std::reverse(words.begin(), words.end());  // as the parser takes them
  try {
    app.parse(std::move(words));
  } catch (const CLI::ParseError& error) {
    std::ostringstream help, message;
    const bool wrong = app.exit(error, help, message) != 0;  // help and version are "errors" of code 0
    streams.Result(help.str());
    Tell(message.str());
    return wrong ? Exit::kUsage : Exit::kDone;
  }
  return chosen(streams);
}

Exit Main(int argc, char** argv) {
  try {
    Streams streams;
    return Run(argc, argv, streams);
  } catch (const ToolError& error) {
    Note(error.what());
    return error.code();
  } catch (const document::Error& error) {
    const ToolError end = FromDocument(error);
    Note(end.what());
    return end.code();
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    Note(error.what());
    return Exit::kNoMemory;
  }
}

}  // namespace
}  // namespace reedid::tool

int main(int argc, char** argv) {
  using namespace reedid::tool;
  try {
    const Exit exit = Main(argc, argv);
    if (!MemoryRanOut()) return static_cast<int>(exit);
  } catch (...) {
  }
  Tell("reedid: out of memory\n");  // whatever else seemed wrong
  return static_cast<int>(Exit::kNoMemory);
}
