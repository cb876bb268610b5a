// What a display says of the clocks and rates that it takes.
#pragma once

#include <string>
#include <vector>

#include "document/read/image.h"

namespace reedid::document {

// Rates that a display takes any of; Hz.
struct VariableRates {
  std::string name;  // "VRR", "FreeSync", ...
  double least, most;
};

struct DisplayLimits {
  bool hasHdmi = false;
  double tmdsClock = 0;  // MHz, 0: not stated
  double frlRate = 0;    // Gbit/s of all lanes, 0: no FRL
  // Its range limits, all 0 without any; a clock of 0 is not stated.
  double leastRate = 0, mostRate = 0;  // Hz
  double mostClock = 0;                // MHz
  std::vector<VariableRates> variable = {};
};

DisplayLimits LimitsOf(const Image& image);

// The pixel clock in MHz that so many Gbit/s carry with 24 bits a pixel: on the line 16 bits are 18.
double FrlClock(double gigabits);

}  // namespace reedid::document
