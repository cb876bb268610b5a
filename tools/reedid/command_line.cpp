#include "command_line.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <optional>

#include "commands.h"
#include "device/schemes.h"
#include "document/printable.h"
#include "edit_steps.h"
#include "help.h"
#include "reedid/version.h"

namespace reedid::tool {
namespace {

constexpr char kInputHelp[] =
    "file with raw bytes or hexadecimal text, '-' for standard input, sample:NAME, or a device (see reedid --help)";
constexpr char kInputsHelp[] =
    "files, folders with all files in and below them, '-' for standard input, sample:NAME, or devices";
constexpr char kOutputHelp[] = "file to write, '-' for standard output, or a device; replaced as a whole or not at all";
constexpr char kJsonHelp[] = "print JSON (docs/json.md)";
constexpr char kForceHelp[] = "send to a device what check calls wrong, too";
constexpr char kForceAddressHelp[] =
    "write an address that no port can have, and send to a device what check calls wrong";
constexpr char kDeviceGroup[] = "Devices";

template <class Options>
concept HasInputs = requires(Options options) {
  options.inputs;
};
template <class Options>
concept HasInput = requires(Options options) {
  options.input;
};
template <class Options>
concept HasTwo = requires(Options options) {
  options.second;
};
template <class Options>
concept HasOutput = requires(Options options) {
  options.output;
};

// The names of images that a command was given.
template <class Options>
std::vector<std::string*> NamesIn(Options& options) {
  std::vector<std::string*> names;
  if constexpr (HasInputs<Options>) {
    for (std::string& name : options.inputs) names.push_back(&name);
  }
  if constexpr (HasInput<Options>) names.push_back(&options.input);
  if constexpr (HasTwo<Options>) names.insert(names.end(), {&options.first, &options.second});
  if constexpr (HasOutput<Options>) names.push_back(&options.output.name);
  return names;
}

// A pad is a part of the names of video devices, once all words are known.
void CompleteNames(const std::vector<std::string*>& names, unsigned pad) {
  size_t completed = 0;
  for (std::string* name : names) completed += device::AddPad(*name, pad) ? 1 : 0;
  if (completed == 0) throw ToolError(Exit::kUsage, "--pad is for names such as v4l2:/dev/video0");
}

// Adds a command whose options live as long as the parser; returns it for its options to be set up.
template <class Options>
CLI::App* AddCommand(CLI::App& app, const char* name, const char* help, Command& chosen,
                     Exit (*run)(const Options&, Streams&), Options*& options) {
  CLI::App* command = app.add_subcommand(name, help);
  if (const CommandHelp* more = FindHelp(name)) command->group(more->group)->footer(more->footer);
  auto owned = std::make_shared<Options>();
  auto pad = std::make_shared<std::optional<unsigned>>();
  options = owned.get();
  if constexpr (HasInputs<Options> || HasTwo<Options> || HasOutput<Options>) {
    command->add_option("--pad", *pad, "connector of the video device, where it has several (v4l2:)")
        ->group(kDeviceGroup);
  }
  command->callback([owned, pad, run, &chosen] {
    if (*pad) CompleteNames(NamesIn(*owned), **pad);
    chosen = [owned, run](Streams& streams) { return run(*owned, streams); };
  });
  return command;
}

// The parser repeats what it was given, however long that is.
std::string ShortenedWords(std::string_view text) {
  std::string words;
  for (;;) {
    const size_t end = std::min(text.find(' '), text.size());
    words += document::Shortened(text.substr(0, end));
    if (end == text.size()) return words;
    words += ' ';
    text.remove_prefix(end + 1);
  }
}

void AddColor(CLI::App& command, std::string& color) {
  command.add_option("--color", color, "auto: on a terminal, unless NO_COLOR is set")
      ->check(CLI::IsMember({kAutoColor, "always", "never"}))
      ->capture_default_str();
}

void AddOutput(CLI::App& command, Output& output, const char* forceHelp = kForceHelp) {
  command.add_option("-o,--output", output.name, kOutputHelp);
  command.add_flag("--force", output.force, forceHelp)->group(forceHelp == kForceHelp ? kDeviceGroup : "Options");
}

void AddShow(CLI::App& app, Command& chosen) {
  ShowOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "show", "A readable account of every block", chosen, RunShow, options);
  command->add_option("input", options->inputs, kInputsHelp)->required();
  command->add_flag("--json", options->json, kJsonHelp);
  CLI::Option* hex = command->add_flag("--hex", options->hex, "the bytes beside each field");
  command->add_flag("--blocks", options->blocks, "a line for each data block: place, size, kind and meaning")
      ->excludes(hex);
  command->add_flag("--private", options->hidePrivate, "hide serial numbers and what else tells one unit from another");
  AddColor(*command, options->color);
}

void AddCheck(CLI::App& app, Command& chosen) {
  CheckOptions* options = nullptr;
  CLI::App* command =
      AddCommand(app, "check", "What an EDID states wrongly, and what to do", chosen, RunCheck, options);
  command->add_option("input", options->inputs, kInputsHelp)->required();
  command->add_option("--rule", options->rules, "this rule only; may be given again")->allow_extra_args(false);
  command->add_option("--no-rule", options->withoutRules, "all rules but this one")->allow_extra_args(false);
  command->add_option("--severity", options->severity, "findings of this severity and worse")
      ->check(CLI::IsMember({"note", "warning", "error"}))
      ->capture_default_str();
  command->add_flag("--strict", options->strict, "exit code 1 for warnings, too");
  command->add_flag("--json", options->json, kJsonHelp);
  command->add_flag("-q,--quiet", options->quiet, "nothing of what is valid");
  AddColor(*command, options->color);
}

void AddExplain(CLI::App& app, Command& chosen) {
  ExplainOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "explain", "What a rule of check is about", chosen, RunExplain, options);
  command->add_option("rule", options->rule, "the rule; without it, list all");
  command->add_flag("--markdown", options->markdown, "all rules as a page (docs/rules.md)");
}

void AddFix(CLI::App& app, Command& chosen) {
  FixOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "fix", "Mend what check finds", chosen, RunFix, options);
  command->add_option("input", options->input, kInputHelp)->required();
  command->add_option("--rule", options->rules, "what this rule finds, and nothing else; may be given again")
      ->allow_extra_args(false);
  AddOutput(*command, options->output);
  command->add_flag("-q,--quiet", options->quiet, "no table of changes");
}

void AddPhys(CLI::App& app, Command& chosen) {
  PhysOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "phys", "Read or set the HDMI physical address", chosen, RunPhys, options);
  command->add_option("input", options->input, kInputHelp)->required();
  command->add_option("address", options->address,
                      "new address, as 1.2.0.0 or 0x1200; without it, print the present one");
  command->add_flag("--json", options->json, kJsonHelp);
  AddOutput(*command, options->output, kForceAddressHelp);
}

void AddToHdmi(CLI::App& app, Command& chosen) {
  ToHdmiOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "to-hdmi", "Turn a DVI EDID into an HDMI one", chosen, RunToHdmi, options);
  command->add_option("input", options->input, kInputHelp)->required();
  command->add_option("--phys", options->address, "physical address, as 1.0.0.0 or 0x1000")->capture_default_str();
  AddOutput(*command, options->output, kForceAddressHelp);
}

void AddConvert(CLI::App& app, Command& chosen) {
  ConvertOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "convert", "The same EDID in another form", chosen, RunConvert, options);
  command->add_option("input", options->input, kInputHelp)->required();
  command->add_option("--to", options->form, "raw bytes, hexadecimal text or a C array")
      ->required()
      ->check(CLI::IsMember({"raw", "hex", "c"}));
  AddOutput(*command, options->output);
}

void AddExport(CLI::App& app, Command& chosen) {
  ExportOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "export", "An EDID as text to be edited", chosen, RunExport, options);
  command->add_option("input", options->input, kInputHelp);
  command->add_option("-o,--output", options->output.name, "file to write; without it, standard output");
  command->add_flag("--all", options->all, "also the fields that are false, 0 or empty");
  command->add_flag("--schema", options->schema, "the JSON Schema of the form (docs/edid.schema.json)");
}

void AddBuild(CLI::App& app, Command& chosen) {
  BuildOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "build", "The EDID that such a text stands for", chosen, RunBuild, options);
  command->add_option("input", options->input, "file with the text (docs/text-form.md), '-' for standard input")
      ->required();
  AddOutput(*command, options->output);
}

void AddSample(CLI::App& app, Command& chosen) {
  SampleOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "sample", "List the built-in EDIDs, or write one", chosen, RunSample, options);
  command->add_option("name", options->name, "sample to write; without it, list them");
  AddOutput(*command, options->output);
}

void AddSend(CLI::App& app, Command& chosen) {
  SendOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "send", "To a device, as it is", chosen, RunSend, options);
  command->add_option("input", options->input, kInputHelp);
  command->add_flag("--clear", options->clear, "take away what was sent, instead");
  AddOutput(*command, options->output);
}

void AddDisplays(CLI::App& app, Command& chosen) {
  DisplaysOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "displays", "What is plugged into this machine", chosen, RunDisplays, options);
  command->add_flag("--json", options->json, kJsonHelp);
  AddColor(*command, options->color);
}

void AddQuery(CLI::App& app, Command& chosen, const char* name, const char* help,
              Exit (*run)(const QueryOptions&, Streams&)) {
  QueryOptions* options = nullptr;
  CLI::App* command = AddCommand(app, name, help, chosen, run, options);
  command->add_option("input", options->inputs, kInputsHelp)->required();
  command->add_flag("--json", options->json, kJsonHelp);
  AddColor(*command, options->color);
}

void AddTimings(CLI::App& app, Command& chosen) {
  TimingsOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "timings", "Every detailed timing", chosen, RunTimings, options);
  command->add_option("input", options->inputs, kInputsHelp)->required();
  command->add_option("--sort", options->sort, "highest first")->check(CLI::IsMember({"rate", "area"}));
  command->add_flag("--json", options->json, kJsonHelp);
  AddColor(*command, options->color);
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
  AddColor(*command, options->color);
}

void AddPlot(CLI::App& app, Command& chosen) {
  PlotOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "plot", "A picture of colours and timings (SVG)", chosen, RunPlot, options);
  command->add_option("input", options->input, kInputHelp)->required();
  command->add_option("-o,--output", options->output.name, kOutputHelp);
}

void AddTable(CLI::App& command, TableOptions& table) {
  command.add_flag("--all", table.all, "also the timings that were kept");
  command.add_flag("--json", table.json, kJsonHelp);
}

void AddDiff(CLI::App& app, Command& chosen) {
  DiffOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "diff", "What differs between two EDIDs", chosen, RunDiff, options);
  command->add_option("first", options->first, kInputHelp)->required();
  command->add_option("second", options->second, "the other one")->required();
  AddTable(*command, options->table);
}

void AddEditOutput(CLI::App& command, EditOptions& options, const char* forceHelp = kForceHelp) {
  command.add_option("--rates", options.rates, "rates to lower timings to, as 120,60,50; else those of the display");
  AddOutput(command, options.output, forceHelp);
  AddTable(command, options.table);
  command.add_flag("-q,--quiet", options.table.quiet, "no table of changes");
}

void AddLimit(CLI::App& app, Command& chosen) {
  EditOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "limit", "Hold an EDID to a link or a capability", chosen, RunEdit, options);
  command
      ->add_option_function<std::string>(
          "limit",
          [options](const std::string& name) {
            options->edits.push_back({&FindStep("--limit"), name});
          },
          "hdmi20, hdmi14, dvi, frl3 to frl6, pcm2ch, sdr and others; see below")
      ->required();
  command->add_option("input", options->input, kInputHelp)->required();
  AddEditOutput(*command, *options);
}

void AddEdit(CLI::App& app, Command& chosen) {
  EditOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "edit", "Several edits, in the order given", chosen, RunEdit, options);
  command->add_option("input", options->input, kInputHelp)->required();
  for (const EditStep& step : EditSteps()) {
    command
        ->add_option_function<std::string>(
            step.option,
            [options, &step](const std::string& value) {
              options->edits.push_back({&step, value});
            },
            step.help)
        ->type_name(step.word)
        ->trigger_on_parse();
  }
  AddEditOutput(*command, *options, kForceAddressHelp);
}

void AddCommon(CLI::App& app, Command& chosen) {
  CommonOptions* options = nullptr;
  CLI::App* command =
      AddCommand(app, "common", "What all of several displays take, for a splitter", chosen, RunCommon, options);
  command->add_option("input", options->inputs, "EDIDs of two or more displays; the first gives its name and size")
      ->required()
      ->expected(2, 1000);
  AddOutput(*command, options->output);
  command->add_flag("--json", options->json, kJsonHelp);
  command->add_flag("-q,--quiet", options->quiet, "no table of what each display costs the others");
}

void AddReceiver(CLI::App& app, Command& chosen) {
  ReceiverOptions* options = nullptr;
  CLI::App* command =
      AddCommand(app, "receiver", "The picture of one EDID with the sound of another", chosen, RunReceiver, options);
  command->add_option("--video", options->video, "EDID of the television")->required()->type_name("EDID");
  command->add_option("--audio", options->audio, "EDID with the sound of the receiver")->required()->type_name("EDID");
  command->add_option("--phys", options->address, "physical address, as 1.0.0.0 or 0x1000")->capture_default_str();
  AddOutput(*command, options->output, kForceAddressHelp);
  AddTable(*command, options->table);
  command->add_flag("-q,--quiet", options->table.quiet, "no table of changes");
}

void AddHighRefresh(CLI::App& app, Command& chosen) {
  HighRefreshOptions* options = nullptr;
  CLI::App* command = AddCommand(app, "high-refresh", "Three blocks or more into two, high rates kept", chosen,
                                 RunHighRefresh, options);
  command->add_option("input", options->input, kInputHelp)->required();
  AddOutput(*command, options->output);
  AddTable(*command, options->table);
  command->add_flag("-q,--quiet", options->table.quiet, "no table of changes");
}

}  // namespace

void SetUpCommandLine(CLI::App& app, Command& chosen) {
  app.require_subcommand(1);
  app.get_formatter()->column_width(26);
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.get_formatter()->label("REQUIRED", "");
  app.set_version_flag("--version", fmt::format("reedid {}", reedid_version()));
  app.failure_message([](const CLI::App* whole, const CLI::Error& error) {
    const auto parsed = whole->get_subcommands();
    return fmt::format("reedid: {}; see reedid {}--help\n", document::WithoutControls(ShortenedWords(error.what())),
                       parsed.empty() ? "" : parsed[0]->get_name() + " ");
  });
  AddShow(app, chosen);
  AddCheck(app, chosen);
  AddExplain(app, chosen);
  AddPlot(app, chosen);
  AddDiff(app, chosen);
  AddQuery(app, chosen, "rates", "Every frame rate that is offered", RunRates);
  AddTimings(app, chosen);
  AddQuery(app, chosen, "preferred", "The timing that a source should use", RunPreferred);
  AddQuery(app, chosen, "audio", "Audio formats", RunAudio);
  AddTiming(app, chosen);
  AddPhys(app, chosen);
  AddLimit(app, chosen);
  AddFix(app, chosen);
  AddHighRefresh(app, chosen);
  AddEdit(app, chosen);
  AddCommon(app, chosen);
  AddReceiver(app, chosen);
  AddToHdmi(app, chosen);
  AddDisplays(app, chosen);
  AddSend(app, chosen);
  AddConvert(app, chosen);
  AddExport(app, chosen);
  AddBuild(app, chosen);
  AddSample(app, chosen);
  app.footer(MainFooter());
}

}  // namespace reedid::tool
