// The steps that 'reedid edit' knows, one option each. They are done in the order in which they are named.
#pragma once

#include <span>
#include <string>

#include "document/edit/edits.h"

namespace reedid::tool {

// What holds for all steps of a command line, wherever it stands there.
struct StepSettings {
  document::Rates rates;  // to lower timings to; none: those of the display
  bool force = false;     // also an address that no port can have
};

struct EditStep {
  const char* option;  // "--limit"
  const char* word;    // what follows it, in capitals: "NAME"
  const char* help;
  // Reads the word, and files that it names, before the image is read. Throws what the command ends with.
  document::Edit (*make)(const std::string& word, const StepSettings& settings);
};

std::span<const EditStep> EditSteps();

// Of EditSteps; the program ends without one.
const EditStep& FindStep(const char* option);

}  // namespace reedid::tool
