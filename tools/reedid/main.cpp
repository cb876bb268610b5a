// The command line: which commands there are and what they take.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <sstream>

#include "commands.h"
#include "reedid/version.h"

namespace reedid::tool {
namespace {

constexpr char kInputHelp[] =
    "file (raw or hexadecimal text: plain, xxd, hexdump -C, C array), '-' for standard input, "
    "/sys/class/drm/*/edid, or sample:NAME";
constexpr char kInputsHelp[] =
    "files, folders with all files in and below them, '-' for standard input, or sample:NAME";
constexpr char kOutputHelp[] = "file to write, '-' for standard output; replaced as a whole or not at all";
constexpr char kJsonHelp[] = "print JSON (docs/json.md)";
constexpr char kAllowLossHelp[] = "write the result even if something of the input has no place in it; it is said what";

constexpr char kFooter[] =
    "Examples:\n"
    "  reedid show /sys/class/drm/card0-HDMI-A-1/edid    what does this display say of itself?\n"
    "  reedid limit hdmi20 display.bin -o hdmi20.bin     an EDID whose timings all fit HDMI 2.0\n"
    "  reedid diff display.bin hdmi20.bin                what did that change?\n"
    "  reedid check display.bin                          is its EDID valid?\n"
    "  reedid phys display.bin                           print the physical address\n"
    "  reedid phys display.bin 1.2.0.0 -o port2.bin      the EDID for port 2 of a repeater\n"
    "  reedid to-hdmi dvi.bin --phys 1.0.0.0 -o hdmi.bin an HDMI EDID from a DVI one\n"
    "  xxd display.bin | reedid convert - --to c -o edid.h\n"
    "  reedid show sample:tv-4k                          try it without a display\n"
    "\n"
    "Results go to standard output, diagnostics and notes to standard error. What is written has the right\n"
    "extension count and checksum in block 0, and a note tells when they were wrong before.\n";

using Command = std::function<Exit(Streams&)>;

// Adds a command whose options live as long as the parser; returns it for its options to be set up.
template <class Options>
CLI::App* AddCommand(CLI::App& app, const char* name, const char* help, Command& chosen,
                     Exit (*run)(const Options&, Streams&), Options*& options) {
  CLI::App* command = app.add_subcommand(name, help);
  auto owned = std::make_shared<Options>();
  options = owned.get();
  command->callback(
      [owned, run, &chosen] { chosen = [owned, run](Streams& streams) { return run(*owned, streams); }; });
  return command;
}

void AddShow(CLI::App& app, Command& chosen) {
  ShowOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "show", "A readable account of every block", chosen, RunShow, options);
  command->add_option("input", options->inputs, kInputsHelp)->required();
  command->add_flag("--json", options->json, kJsonHelp);
}

void AddCheck(CLI::App& app, Command& chosen) {
  CheckOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "check", "Valid or not, with every diagnostic", chosen, RunCheck, options);
  command->add_option("input", options->inputs, kInputsHelp)->required();
  command->add_flag("-q,--quiet", options->quiet, "nothing of what is valid");
  command->footer(
      "Valid is an image whose blocks are all of a known kind, can be opened and have right checksums,\n"
      "and whose count byte tells how many follow. Exit code 0 valid, 1 not valid, 3 no EDID at all;\n"
      "of several inputs the highest, and a last line counts them.");
}

void AddPhys(CLI::App& app, Command& chosen) {
  PhysOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "phys", "Read or set the HDMI physical address", chosen, RunPhys, options);
  command->add_option("input", options->input, kInputHelp)->required();
  command->add_option("address", options->address,
                      "new address, as 1.2.0.0 or 0x1200; without it, print the present one");
  command->add_option("-o,--output", options->output, kOutputHelp);
  command->add_flag("--allow-loss", options->allowLoss, kAllowLossHelp);
}

void AddToHdmi(CLI::App& app, Command& chosen) {
  ToHdmiOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "to-hdmi", "Turn a DVI EDID into an HDMI one", chosen, RunToHdmi, options);
  command->add_option("input", options->input, kInputHelp)->required();
  command->add_option("--phys", options->address, "physical address, as 1.0.0.0 or 0x1000")->capture_default_str();
  command->add_flag("--allow-loss", options->allowLoss, kAllowLossHelp);
  command->add_option("-o,--output", options->output, kOutputHelp);
  command->footer(
      "Adds two-channel audio, front speakers and the HDMI block to the CTA-861 extension (a new one if\n"
      "there is none), which becomes the last block.");
}

void AddConvert(CLI::App& app, Command& chosen) {
  ConvertOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "convert", "The same EDID in another form", chosen, RunConvert, options);
  command->add_option("input", options->input, kInputHelp)->required();
  command->add_option("--to", options->form, "raw bytes, hexadecimal text or a C array")
      ->required()
      ->check(CLI::IsMember({"raw", "hex", "c"}));
  command->add_option("-o,--output", options->output, kOutputHelp);
}

void AddSample(CLI::App& app, Command& chosen) {
  SampleOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "sample", "List the built-in EDIDs, or write one", chosen, RunSample, options);
  command->add_option("name", options->name, "sample to write; without it, list them");
  command->add_option("-o,--output", options->output, kOutputHelp);
}

void AddQuery(CLI::App& app, Command& chosen, const char* name, const char* help,
              Exit (*run)(const QueryOptions&, Streams&)) {
  QueryOptions* options = nullptr;
  CLI::App* command = AddCommand(app, name, help, chosen, run, options);
  command->add_option("input", options->inputs, kInputsHelp)->required();
  command->add_flag("--json", options->json, kJsonHelp);
}

void AddTimings(CLI::App& app, Command& chosen) {
  TimingsOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "timings", "Every detailed timing", chosen, RunTimings, options);
  command->add_option("input", options->inputs, kInputsHelp)->required();
  command->add_option("--sort", options->sort, "highest first")->check(CLI::IsMember({"rate", "area"}));
  command->add_flag("--json", options->json, kJsonHelp);
}

void AddTiming(CLI::App& app, Command& chosen) {
  TimingOptions* options = nullptr;
  CLI::App* command =
      AddCommand(app, "timing", "What an identifier or a formula stands for", chosen, RunTiming, options);
  command
      ->add_option("what", options->words,
                   "vic 97 | dmt 0x52 | cvt 2560x1440@144 | std 1920 16:9 60 | find 1920x1080@60")
      ->required();
  CLI::Option* rb1 = command->add_flag("--rb1", options->rb1, "CVT with reduced blanking");
  command->add_flag("--rb2", options->rb2, "CVT with reduced blanking version 2")->excludes(rb1);
  command->add_flag("--ntsc", options->ntsc, "CVT version 2: rate times 1000/1001");
  command->add_flag("--interlaced", options->interlaced, "interlaced; the rate is that of the fields");
  command->add_flag("--json", options->json, kJsonHelp);
}

void AddPlot(CLI::App& app, Command& chosen) {
  PlotOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "plot", "A picture of colours and timings (SVG)", chosen, RunPlot, options);
  command->add_option("input", options->input, kInputHelp)->required();
  command->add_option("-o,--output", options->output, kOutputHelp);
}

void AddDiff(CLI::App& app, Command& chosen) {
  DiffOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "diff", "What differs between two EDIDs", chosen, RunDiff, options);
  command->add_option("first", options->first, kInputHelp)->required();
  command->add_option("second", options->second, "the other one")->required();
  command->add_flag("--json", options->json, kJsonHelp);
}

void AddEditOutput(CLI::App& command, EditOptions& options) {
  command.add_option("--rates", options.rates, "rates to lower timings to, as 120,60,50; else those of the EDID");
  command.add_option("-o,--output", options.output, kOutputHelp);
  command.add_flag("-q,--quiet", options.quiet, "no table of changes");
  command.add_flag("--allow-loss", options.allowLoss, kAllowLossHelp);
}

void AddLimit(CLI::App& app, Command& chosen) {
  EditOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "limit", "Hold an EDID to a link or a capability", chosen, RunEdit, options);
  command
      ->add_option_function<std::string>(
          "limit",
          [options](const std::string& name) {
            options->edits.push_back({true, name});
          },
          "hdmi20 (600 MHz), hdmi14 (340 MHz), pcm2ch, sdr, frl40g")
      ->required();
  command->add_option("input", options->input, kInputHelp)->required();
  AddEditOutput(*command, *options);
}

void AddEdit(CLI::App& app, Command& chosen) {
  EditOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "edit", "Several edits, in the order given", chosen, RunEdit, options);
  command->add_option("input", options->input, kInputHelp)->required();
  const auto add = [&](const char* name, bool isLimit, const char* help) {
    command
        ->add_option_function<std::string>(
            name,
            [options, isLimit](const std::string& value) {
              options->edits.push_back({isLimit, value});
            },
            help)
        ->trigger_on_parse();
  };
  add("--limit", true, "a limit, as for 'reedid limit'");
  add("--phys", false, "a physical address");
  AddEditOutput(*command, *options);
}

void AddHighRefresh(CLI::App& app, Command& chosen) {
  HighRefreshOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "high-refresh", "Three blocks or more into two, high rates kept", chosen,
                                 RunHighRefresh, options);
  command->add_option("input", options->input, kInputHelp)->required();
  command->add_option("-o,--output", options->output, kOutputHelp);
  command->add_flag("-q,--quiet", options->quiet, "no table of changes");
}

void SetUp(CLI::App& app, Command& chosen) {
  app.require_subcommand(1);
  app.set_version_flag("--version", fmt::format("reedid {}", reedid_version()));
  app.failure_message([](const CLI::App*, const CLI::Error& error) {
    return fmt::format("reedid: {}; see reedid --help\n", error.what());
  });
  AddShow(app, chosen);
  AddCheck(app, chosen);
  AddQuery(app, chosen, "rates", "Every frame rate that is offered", RunRates);
  AddTimings(app, chosen);
  AddQuery(app, chosen, "preferred", "The timing that a source should use", RunPreferred);
  AddQuery(app, chosen, "audio", "Audio formats", RunAudio);
  AddTiming(app, chosen);
  AddPlot(app, chosen);
  AddDiff(app, chosen);
  AddLimit(app, chosen);
  AddHighRefresh(app, chosen);
  AddEdit(app, chosen);
  AddPhys(app, chosen);
  AddToHdmi(app, chosen);
  AddConvert(app, chosen);
  AddSample(app, chosen);
  app.footer(std::string(kFooter) + "\n" + kExitCodesHelp);  // last: commands inherit what stands before them
}

Exit Run(int argc, char** argv, Streams& streams) {
  CLI::App app("Reads, checks and edits the EDID of displays.", "reedid");
  Command chosen;
  SetUp(app, chosen);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    std::ostringstream help, message;
    const bool wrong = app.exit(error, help, message) != 0;  // help and version are "errors" of code 0
    streams.Result(help.str());
    fmt::print(stderr, "{}", message.str());
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
  } catch (const std::exception& error) {
    Note(error.what());
    return Exit::kNoMemory;
  }
}

}  // namespace
}  // namespace reedid::tool

int main(int argc, char** argv) {
  return static_cast<int>(reedid::tool::Main(argc, argv));
}
