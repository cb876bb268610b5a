// What the help teaches beside the list of commands and options.
#pragma once

#include <string>
#include <string_view>

namespace reedid::tool {

// The heading under which a command stands, and how it is used.
struct CommandHelp {
  const char* name;
  const char* group;
  const char* footer;
};

// The help that every command has; null: no command of this name.
const CommandHelp* FindHelp(std::string_view command);

// Below the list of commands: inputs, results, examples, exit codes.
std::string MainFooter();

// What to say of a first word that is no command: the command that was probably meant.
std::string UnknownCommandText(const std::string& word);

// For somebody who gave no command at all.
std::string ShortHelp();

}  // namespace reedid::tool
