// The commands: options in, result on the streams, exit code out. What stops one is thrown as a ToolError.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "output.h"
#include "streams.h"

namespace reedid::tool {

constexpr char kAutoColor[] = "auto";  // of the options' `color`; also "always", "never"

struct ShowOptions {
  std::vector<std::string> inputs;
  std::string color = kAutoColor;
  bool blocks = false;  // a list of the data blocks
  bool hex = false;
  bool hidePrivate = false;
  bool json = false;
};
Exit RunShow(const ShowOptions& options, Streams& streams);

// rates, preferred, audio
struct QueryOptions {
  std::vector<std::string> inputs;
  std::string color = kAutoColor;
  bool json = false;
};
Exit RunRates(const QueryOptions& options, Streams& streams);
Exit RunPreferred(const QueryOptions& options, Streams& streams);
Exit RunAudio(const QueryOptions& options, Streams& streams);

struct TimingsOptions {
  std::vector<std::string> inputs;
  std::string sort;  // rate, area, or empty: as the image has them
  std::string color = kAutoColor;
  bool json = false;
};
Exit RunTimings(const TimingsOptions& options, Streams& streams);

struct TimingOptions {
  std::vector<std::string> words;  // "vic" "97"
  std::string color = kAutoColor;
  bool rb1 = false;
  bool rb2 = false;
  bool ntsc = false;
  bool interlaced = false;
  bool json = false;
};
Exit RunTiming(const TimingOptions& options, Streams& streams);

struct PlotOptions {
  std::string input;
  Output output;
};
Exit RunPlot(const PlotOptions& options, Streams& streams);

// How changes are printed.
struct TableOptions {
  bool quiet = false;
  bool all = false;  // with what was kept
  bool json = false;
};

struct DiffOptions {
  std::string first;
  std::string second;
  TableOptions table;
};
Exit RunDiff(const DiffOptions& options, Streams& streams);

struct EditStep;  // edit_steps.h
struct EditWord {
  const EditStep* step;
  std::string value;
};

// limit is an edit with one limit.
struct EditOptions {
  std::string input;
  std::vector<EditWord> edits;
  std::string rates;  // "120,60,50"; empty: those of the image
  Output output;
  TableOptions table;
};
Exit RunEdit(const EditOptions& options, Streams& streams);

struct CommonOptions {
  std::vector<std::string> inputs;  // two or more
  Output output;
  bool quiet = false;  // no table
  bool json = false;
};
Exit RunCommon(const CommonOptions& options, Streams& streams);

struct ReceiverOptions {
  std::string video;
  std::string audio;
  std::string address = "1.0.0.0";
  Output output;
  TableOptions table;
};
Exit RunReceiver(const ReceiverOptions& options, Streams& streams);

struct HighRefreshOptions {
  std::string input;
  Output output;
  TableOptions table;
};
Exit RunHighRefresh(const HighRefreshOptions& options, Streams& streams);

struct CheckOptions {
  std::vector<std::string> inputs;
  std::string color = kAutoColor;
  std::vector<std::string> rules;         // only these; none: all
  std::vector<std::string> withoutRules;  // all but these
  std::string severity = "note";          // this and worse
  bool strict = false;                    // warnings count as errors
  bool json = false;
  bool quiet = false;  // only what is not valid
};
Exit RunCheck(const CheckOptions& options, Streams& streams);

struct ExplainOptions {
  std::string rule;  // empty: list
  bool markdown = false;
};
Exit RunExplain(const ExplainOptions& options, Streams& streams);

struct FixOptions {
  std::string input;
  std::vector<std::string> rules;  // none: what is safe
  Output output;
  bool quiet = false;
};
Exit RunFix(const FixOptions& options, Streams& streams);

// An address that the user names. Throws Exit::kUsage, and without `force` Exit::kRefused for one that no port can have.
uint16_t AskedAddress(const std::string& text, bool force);

struct PhysOptions {
  std::string input;
  std::string address;  // empty: read
  Output output;
  bool json = false;  // of what is read
};
Exit RunPhys(const PhysOptions& options, Streams& streams);

struct ToHdmiOptions {
  std::string input;
  std::string address = "1.0.0.0";
  Output output;
};
Exit RunToHdmi(const ToHdmiOptions& options, Streams& streams);

struct ConvertOptions {
  std::string input;
  std::string form;  // raw, hex or c
  Output output;
};
Exit RunConvert(const ConvertOptions& options, Streams& streams);

struct SendOptions {
  std::string input;
  Output output;
  bool clear = false;  // instead of sending: take away what was sent
};
Exit RunSend(const SendOptions& options, Streams& streams);

struct DisplaysOptions {
  std::string color = kAutoColor;
  bool json = false;
};
Exit RunDisplays(const DisplaysOptions& options, Streams& streams);

struct ExportOptions {
  std::string input;
  Output output;        // none: standard output
  bool all = false;     // also the fields that are false, 0 or empty
  bool schema = false;  // the JSON Schema of the form in place of an EDID
};
Exit RunExport(const ExportOptions& options, Streams& streams);

struct BuildOptions {
  std::string input;
  Output output;
};
Exit RunBuild(const BuildOptions& options, Streams& streams);

struct SampleOptions {
  std::string name;  // empty: list
  Output output;
};
Exit RunSample(const SampleOptions& options, Streams& streams);

}  // namespace reedid::tool
