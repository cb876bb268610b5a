// sample: the built-in EDIDs.

#include <fmt/format.h>

#include "commands.h"
#include "document/read/samples.h"
#include "output.h"

namespace reedid::tool {

Exit RunSample(const SampleOptions& options, Streams& streams) {
  if (options.name.empty()) {
    if (!options.output.empty())
      throw ToolError(Exit::kUsage, "sample with -o: name the sample, 'reedid sample' lists them");
    for (const document::Sample& sample : document::Samples())
      streams.Result(fmt::format("{:<10}  {}\n", sample.name, sample.text));
    return Exit::kDone;
  }
  RequireOutput(options.output, "sample");
  WriteOutput(options.output, document::SampleBytes(options.name), streams);
  return Exit::kDone;
}

}  // namespace reedid::tool
