// diff, limit, edit and high-refresh: edits of a whole image with a table of what changed.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>

#include "changes.h"
#include "commands.h"
#include "describe.h"
#include "loss.h"
#include "output.h"
#include "query.h"

namespace reedid::tool {
namespace {

using Rates = std::vector<uint16_t>;

// A link whose clock bounds every timing; HDMI 1.4 knows no YCbCr 4:2:0, so nothing there needs half a clock.
struct Link {
  uint32_t clock;  // kHz
  bool has420;
  void (*limitImage)(EdidHandle*, const uint16_t*, uint32_t);
  void (*limitExtension)(CeaBlock*, const uint16_t*, uint32_t);
};

constexpr Link kHdmi20 = {600000, true, EDID_LimitToHDMI20, CEA_LimitToHDMI20};
constexpr Link kHdmi14 = {340000, false, EDID_LimitToHDMI14, CEA_LimitToHDMI14};

struct Limit {
  const char* name;
  const Link* link;            // null: not a link
  void (*apply)(EdidHandle*);  // when there is no link
};

constexpr Limit kLimits[] = {{"hdmi20", &kHdmi20, nullptr},
                             {"hdmi14", &kHdmi14, nullptr},
                             {"pcm2ch", nullptr, EDID_LimitToPCM2CH},
                             {"sdr", nullptr, EDID_LimitToSDR},
                             {"frl40g", nullptr, EDID_LimitToFrl40G}};

const Limit& RequireLimit(const std::string& name) {
  for (const Limit& limit : kLimits) {
    if (name == limit.name) return limit;
  }
  throw ToolError(Exit::kUsage, fmt::format("'{}' is no limit; there are hdmi20, hdmi14, pcm2ch, sdr, frl40g", name));
}

// "120,60,50"
Rates RequireRates(const std::string& text) {
  Rates rates;
  const char* at = text.data();
  const char* const end = at + text.size();
  for (;;) {
    uint16_t rate = 0;
    const auto [next, error] = std::from_chars(at, end, rate);
    const bool right = error == std::errc() && rate != 0 && (next == end || *next == ',');
    if (!right) throw ToolError(Exit::kUsage, fmt::format("'{}' is no list of rates; write it like 120,60,50", text));
    rates.push_back(rate);
    if (next == end) return rates;
    at = next + 1;
  }
}

// The library cannot write an extension that has timings but no data blocks, so it would keep timings that are too
// fast. A data block that comes and goes leaves an empty collection, which can be written.
void LimitBareExtension(const Link& link, const Rates& rates, EdidBlock& block) {
  const Owned<CeaBlock> model(CEA_Open(&block));
  if (model == nullptr || model->dataBlocks != nullptr) return;
  uint8_t passing[] = {2 << 5 | 1, 1};
  const CeaDataBlock entry = {2, 0, sizeof passing, passing};
  if (CEA_AddDataBlock(model.get(), &entry, 0) != 0) return;
  CEA_DeleteDataBlock(model.get(), &model->dataBlocks[0]);
  link.limitExtension(model.get(), rates.data(), static_cast<uint32_t>(rates.size()));
  uint8_t bytes[128];
  EdidBlock written = {EDID_BLOCK_CEA, sizeof bytes, sizeof bytes, bytes};
  if (CEA_GenerateBlock(model.get(), &written) == 0) std::copy(bytes, bytes + sizeof bytes, block.bytes);
}

void LimitLink(const Link& link, const std::string& rateText, const Image& image) {
  const Rates rates = rateText.empty() ? AllRates(image) : RequireRates(rateText);
  link.limitImage(image.handle(), rates.data(), static_cast<uint32_t>(rates.size()));
  for (EdidBlock& block : image.blocks()) {
    if (block.type == EDID_BLOCK_CEA) LimitBareExtension(link, rates, block);
  }
}

void ApplyLimit(const Limit& limit, const std::string& rates, const Image& image) {
  if (limit.link != nullptr) {
    LimitLink(*limit.link, rates, image);
  } else {
    limit.apply(image.handle());
  }
}

void ApplyAddress(const std::string& text, const Image& image) {
  if (EDID_SetPhyAddr(image.handle(), RequireAddress(text)) == 0) return;
  throw ToolError(Exit::kRefused,
                  fmt::format("{}: no HDMI block that can hold the address; nothing was written", image.name()));
}

// A block that the library refuses to write anew keeps its bytes, and a rate is rounded to the nearest hertz.
bool NoteWhatIsAbove(const Link& link, const Node& account, const std::string& name) {
  const std::vector<std::string> above = TimingsAbove(account, link.clock, link.has420);
  for (const std::string& timing : above) {
    Note(fmt::format("{}: still above {} MHz: {}", name, link.clock / 1000, timing));
  }
  return above.empty();
}

// The table goes where it cannot be mixed with the image.
void PrintTable(const std::string& text, const std::string& output, Streams& streams) {
  if (output != "-") {
    streams.Offer(text);
  } else {
    Tell(text);
  }
}

// Limits leave data blocks and timings out on purpose, but nothing of what stands behind them.
CtaContent ContentToKeep(const Image& image) {
  CtaContent content = CountCtaContent(image);
  content.dataBlocks = 0;
  content.timings = 0;
  return content;
}

// The table comes first: when it cannot be printed, the exit code says that no output was written.
void Finish(Image& image, const Node& before, const std::string& output, bool quiet, Streams& streams,
            const std::string& more = "") {
  const ByteVector bytes = image.Generate();
  if (!quiet) PrintTable(ChangesText(FindChanges(before, DescribeImage(image))) + more, output, streams);
  WriteOutput(output, bytes, streams);
}

}  // namespace

Exit RunEdit(const EditOptions& options, Streams& streams) {
  RequireOutput(options.output, "an edit");
  if (options.edits.empty()) throw ToolError(Exit::kUsage, "edit: name an edit, --limit or --phys");
  for (const Edit& edit : options.edits) {  // nothing is begun that cannot be ended
    if (edit.isLimit) RequireLimit(edit.value);
  }
  if (!options.rates.empty()) RequireRates(options.rates);
  Image image = Image::Read(options.input);
  const Node before = DescribeImage(image);
  const CtaContent content = ContentToKeep(image);
  const Link* link = nullptr;
  for (const Edit& edit : options.edits) {
    if (!edit.isLimit) {
      ApplyAddress(edit.value, image);
      continue;
    }
    const Limit& limit = RequireLimit(edit.value);
    ApplyLimit(limit, options.rates, image);
    if (limit.link != nullptr && (link == nullptr || limit.link->clock < link->clock)) link = limit.link;
  }
  CheckLoss(image, content, options.allowLoss);
  Finish(image, before, options.output, options.quiet, streams);
  if (link == nullptr) return Exit::kDone;
  return NoteWhatIsAbove(*link, DescribeImage(image), image.name()) ? Exit::kDone : Exit::kNo;
}

Exit RunDiff(const DiffOptions& options, Streams& streams) {
  const Node first = DescribeImage(Image::Read(options.first));
  const Node second = DescribeImage(Image::Read(options.second));
  const std::vector<Change> changes = FindChanges(first, second);
  streams.Result(options.json ? JsonText(ChangesJson(changes)) : ChangesText(changes));
  return AreSame(changes) ? Exit::kDone : Exit::kNo;
}

Exit RunHighRefresh(const HighRefreshOptions& options, Streams& streams) {
  RequireOutput(options.output, "high-refresh");
  Image image = Image::Read(options.input);
  if (!image.IsEdid() || image.blocks().size() < 3) {
    throw ToolError(Exit::kRefused,
                    fmt::format("{}: has no more than two blocks already; nothing was written", image.name()));
  }
  const Node before = DescribeImage(image);
  const Rates ratesBefore = AllRates(image);
  if (EDID_HighRefreshRate(image.handle()) != 0) {
    throw ToolError(Exit::kRefused, fmt::format("{}: cannot be rewritten; nothing was written", image.name()));
  }
  const std::string rates = fmt::format("rates before: {} Hz\nrates after:  {} Hz\n", fmt::join(ratesBefore, ", "),
                                        fmt::join(AllRates(image), ", "));
  Finish(image, before, options.output, options.quiet, streams, rates);
  return Exit::kDone;
}

}  // namespace reedid::tool
