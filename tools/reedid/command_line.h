// The command line: which commands there are and what they take.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

#include "streams.h"

namespace reedid::tool {

using Command = std::function<Exit(Streams&)>;

// Sets up a parser that leaves the command of the line in `chosen`, with its options; both must live until it has run.
void SetUpCommandLine(CLI::App& app, Command& chosen);

}  // namespace reedid::tool
