#include "help.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "document/nearest.h"
#include "document/printable.h"
#include "tool_error.h"

namespace reedid::tool {
namespace {

constexpr char kLook[] = "Look at EDIDs";
constexpr char kAsk[] = "Ask one thing";
constexpr char kChange[] = "Write a changed EDID";
constexpr char kForms[] = "Get and send EDIDs";

constexpr CommandHelp kCommands[] = {
    {"show", kLook,
     "Examples:\n"
     "  reedid show /sys/class/drm/card0-HDMI-A-1/edid\n"
     "  reedid show sample:tv-4k              a built-in EDID\n"
     "  reedid show --blocks display.bin      which data blocks there are, and where\n"
     "  reedid show --json displays/          all files of a folder, as one array"},
    {"check", kLook,
     "An error may stop a source, a warning contradicts a standard, a note is worth knowing; 'reedid explain'\n"
     "tells what each rule is about, 'reedid fix' mends. Valid is what has no error: exit code 0 valid, 1 not\n"
     "valid, 3 no EDID at all; of several inputs the highest, and a table counts them by rule.\n\n"
     "Examples:\n"
     "  reedid check display.bin\n"
     "  reedid check --severity warning --no-rule name-missing display.bin\n"
     "  reedid check -q displays/             of a whole folder, only what is not valid"},
    {"explain", kLook,
     "Examples:\n  reedid explain                        list all rules\n  reedid explain hdmi-tmds-unset"},
    {"plot", kLook,
     "Left the colours that the display states, in the chromaticity diagram with the usual colour spaces; right all\n"
     "timings by pixel clock and refresh rate, with what the HDMI links can carry.\n\n"
     "Examples:\n"
     "  reedid plot display.bin -o display.svg\n"
     "  reedid plot sample:tv-4k -o - | rsvg-convert -o tv.png"},
    {"diff", kLook,
     "Every byte that differs is told: by the timing or the field that it belongs to, by what moved to its place, or\n"
     "as a byte. Exit code 0: all bytes are equal, 1: the table tells what differs.\n\n"
     "Example:\n  reedid diff display.bin hdmi20.bin"},
    {"rates", kAsk, "Examples:\n  reedid rates display.bin\n  reedid rates displays/                one line per file"},
    {"timings", kAsk, "Example:\n  reedid timings --sort rate display.bin"},
    {"preferred", kAsk, "Example:\n  reedid preferred display.bin"},
    {"audio", kAsk, "Example:\n  reedid audio display.bin"},
    {"timing", kAsk,
     "Examples:\n"
     "  reedid timing vic 97                  a format of CTA-861\n"
     "  reedid timing dmt 0x52                a DMT identifier\n"
     "  reedid timing cvt 2560x1440@144 --rb2 a formula\n"
     "  reedid timing std 1920 16:9 60        a standard timing\n"
     "  reedid timing find 1920x1080@60       the identifiers of a format"},
    {"phys", kAsk,
     "Examples:\n"
     "  reedid phys display.bin                           print it\n"
     "  reedid phys display.bin 1.2.0.0 -o port2.bin      the EDID for port 2 of a repeater\n"
     "Nothing but the address and the checksum changes. An EDID without HDMI block becomes one of HDMI, as by "
     "to-hdmi."},
    {"limit", kChange,
     "Limits of a link:\n"
     "  hdmi20          600 MHz, 4:2:0                  hdmi14      340 MHz\n"
     "  dvi             165 MHz, no sound               300mhz-420  300 MHz, 4:2:0\n"
     "  capture-165mhz  165 MHz, 8 bits a colour        frl3 .. 6   HDMI 2.1 with 24, 32, 40 or 48 Gbit/s\n"
     "Of a capability:\n"
     "  pcm2ch          two-channel L-PCM               sdr         no HDR, no Dolby Vision; wide colours stay\n"
     "  frl40g          FRL rates up to 40 Gbit/s, timings as they are\n"
     "A timing that is too fast is lowered to a rate of the display; what fits stays as it is, byte for byte.\n"
     "What changed is printed as a table. Exit code 1: a timing still needs more; it is named.\n\n"
     "Example:\n  reedid limit hdmi20 display.bin -o hdmi20.bin"},
    {"fix", kChange,
     "Without --rule, all that can be mended without changing what the display says. With it, what that rule finds,\n"
     "also where it changes that. A repair after which something else would be wrong is not made. What is left to\n"
     "decide is listed, with the command that would do it.\n\n"
     "Examples:\n"
     "  reedid fix display.bin -o mended.bin\n"
     "  reedid fix display.bin --rule serial-placeholder -o mended.bin"},
    {"high-refresh", kChange,
     "The base block and the first CTA-861 extension stay as they are; timings of the other blocks come in where there "
     "is\n"
     "room, high rates first, and high rates that do not fit as they are come as 1920x1080.\n\n"
     "Example:\n  reedid high-refresh display.bin -o two-blocks.bin"},
    {"edit", kChange,
     "Examples:\n"
     "  reedid edit display.bin --limit hdmi20 --limit pcm2ch --phys 1.0.0.0 -o out.bin\n"
     "  reedid edit display.bin --max 3840x2160@60 --max-clock 300 -o scaler.bin\n"
     "  reedid edit tv.bin --common monitor.bin --audio-from avr.bin -o out.bin"},
    {"common", kChange,
     "Timings, sound, colours and link that all displays take; names, sizes and the address are those of the first.\n"
     "A table tells what each display costs the others.\n\n"
     "Examples:\n"
     "  reedid common left.bin right.bin -o splitter.bin\n"
     "  reedid common hall1.bin hall2.bin hall3.bin -o - | reedid check -"},
    {"receiver", kChange,
     "The sound is what the EDID after --audio tells of it: formats, speakers, room. All else is the television's.\n\n"
     "Example:\n  reedid receiver --video tv.bin --audio avr.bin --phys 1.0.0.0 -o out.bin"},
    {"to-hdmi", kChange,
     "Adds what is missing of video formats, two-channel audio, front speakers, HDMI block and video capability to "
     "the\n"
     "CTA-861 extension (a new one if there is none), which becomes the first extension. Timings above 600 MHz are\n"
     "lowered as by 'reedid limit hdmi20'. An analog input is refused.\n\n"
     "Example:\n  reedid to-hdmi dvi.bin --phys 1.0.0.0 -o hdmi.bin"},
    {"displays", kForms,
     "Every connector with its state, the display behind it, and the bus that its EDID can be read from.\n\n"
     "Examples:\n  reedid displays\n  reedid show connector:HDMI-A-1        what the kernel read there\n"
     "  reedid show i2c:HDMI-A-1              what the display says now"},
    {"send", kForms,
     "Every command sends what it writes when -o names a device; this one changes nothing:\n"
     "  v4l2:/dev/video0    a capture card or another receiver shows it to its source\n"
     "  override:HDMI-A-1   the kernel takes it for the display's, until it restarts\n"
     "  firmware:NAME       the kernel finds it when it starts\n"
     "What check finds errors in is not sent; what was sent is read back.\n\n"
     "Examples:\n"
     "  reedid send display.bin -o v4l2:/dev/video0\n"
     "  reedid send --clear -o v4l2:/dev/video0"},
    {"convert", kForms,
     "Examples:\n"
     "  reedid convert display.txt --to raw -o display.bin\n"
     "  xxd display.bin | reedid convert - --to c -o edid.h"},
    {"export", kForms,
     "Text (JSON, docs/text-form.md) that says all that the EDID says: edit it, keep it under version control, build\n"
     "it again. What show --json prints is for programs that read; this is for people that write, and loses no "
     "byte.\n\n"
     "Examples:\n"
     "  reedid export display.bin -o display.json\n"
     "  reedid export sample:tv-4k            on standard output"},
    {"build", kForms,
     "Checksums, counts and offsets are computed unless the text tells them; what it leaves out takes a default.\n"
     "Everything that is wrong is told at once, with its place in the text, and nothing is written then.\n\n"
     "Example:\n  reedid build display.json -o display.bin"},
    {"sample", kForms, "Examples:\n  reedid sample                         list them\n  reedid sample tv-4k -o tv.bin"},
};

constexpr char kFooter[] =
    "An input is a file with raw bytes or hexadecimal text (plain, xxd, hexdump -C, a C array), "
    "/sys/class/drm/*/edid,\n"
    "'-' for standard input, or sample:NAME for a built-in EDID. show, check, rates, timings, preferred and audio "
    "take\n"
    "several, and folders with all files in and below them. On Linux, an input may be a device:\n"
    "  connector:HDMI-A-1  what the kernel read there; 'reedid displays' lists them\n"
    "  i2c:/dev/i2c-4      what the display says, over DDC; i2c:HDMI-A-1 is the bus of this connector\n"
    "  v4l2:/dev/video0    what a capture card shows to its source\n"
    "and so may an output: v4l2:/dev/video0, override:HDMI-A-1, firmware:NAME ('reedid help send').\n"
    "\n"
    "Results go to standard output or to the file after -o, diagnostics and notes to standard error. What is written\n"
    "has the right extension count, block map and checksums; a note tells which were wrong before.\n"
    "\n"
    "Examples:\n"
    "  reedid show /sys/class/drm/card0-HDMI-A-1/edid    what does this display say of itself?\n"
    "  reedid show sample:tv-4k                          try it without a display\n"
    "  reedid check displays/                            what do the EDIDs of a folder state wrongly?\n"
    "  reedid plot display.bin -o display.svg            its colours and timings as a picture\n"
    "  reedid limit hdmi20 display.bin -o hdmi20.bin     an EDID whose timings all fit HDMI 2.0\n"
    "  reedid diff display.bin hdmi20.bin                what did that change?\n"
    "\n"
    "Read on: 'reedid help COMMAND' for options and examples of a command, 'man reedid' for everything.\n";

// The nearest command within two slips of the finger; a beginning of a command is near, too.
std::string NearestCommand(std::string_view word) {
  constexpr size_t kLongest = 20, kMostSlips = 2;
  if (word.size() < 2 || word.size() > kLongest) return "";
  std::string nearest;
  size_t slips = std::min(kMostSlips, word.size() / 2) + 1;
  for (const CommandHelp& command : kCommands) {
    const std::string_view name = command.name;
    const size_t distance = name.starts_with(word) ? 1 : document::Slips(word, name);
    if (distance >= slips) continue;
    slips = distance;
    nearest = name;
  }
  return nearest;
}

}  // namespace

const CommandHelp* FindHelp(std::string_view command) {
  const auto is = [command](const CommandHelp& help) { return command == help.name; };
  const auto* const help = std::find_if(std::begin(kCommands), std::end(kCommands), is);
  return help == std::end(kCommands) ? nullptr : help;
}

std::string MainFooter() {
  return fmt::format("{}\n{}", kFooter, kExitCodesHelp);
}

std::string UnknownCommandText(const std::string& word) {
  std::error_code ignored;
  const std::string shown = document::Shortened(word);
  if (const std::string nearest = NearestCommand(word); !nearest.empty()) {
    return fmt::format("no command '{}'; did you mean '{}'? See reedid --help", shown, nearest);
  }
  if (std::filesystem::exists(word, ignored)) {
    return fmt::format("a command comes before the input, such as: reedid show {}", word);
  }
  return fmt::format("no command '{}'; reedid --help lists all", shown);
}

std::string ShortHelp() {
  std::string text = "Usage: reedid COMMAND INPUT [OPTIONS]\n\n";
  std::string_view group;
  for (const CommandHelp& command : kCommands) {
    if (command.group != group) text += fmt::format("{}{:<22}", group.empty() ? "" : "\n", command.group);
    group = command.group;
    text += fmt::format(" {}", command.name);
  }
  return text +
         "\n\nTry 'reedid show sample:tv-4k', 'reedid --help' for all commands, or 'reedid COMMAND --help' for one.\n";
}

}  // namespace reedid::tool
