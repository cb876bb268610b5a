#include "document/plot/limit_lines.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace reedid::document {
namespace {

// What a link carries with 8 bits per colour in RGB or YCbCr 4:4:4.
struct LinkLimit {
  std::string name;
  std::string value;
  double megahertz;
  bool isOwn = false;  // of this display
};

constexpr double kFastestFrl = 48;  // Gbit/s
constexpr double kSameLimit = 1.02;
constexpr double kNameWidth = 76;  // of a limit, which others keep off

// FRL has no TMDS clock; error correction, which takes some of it, is left out.
std::string FrlText(double megahertz) {
  return fmt::format("\xE2\x89\x88 {:.0f} MHz *", megahertz);
}

void AddOwn(const LinkLimit& own, const Axes& axes, std::vector<LinkLimit>& limits) {
  for (LinkLimit& limit : limits) {
    if (std::max(limit.megahertz, own.megahertz) > kSameLimit * std::min(limit.megahertz, own.megahertz)) continue;
    limit.isOwn = true;
    return;
  }
  std::erase_if(limits, [&](const LinkLimit& limit) {
    return !limit.isOwn && std::abs(axes.X(limit.megahertz) - axes.X(own.megahertz)) < kNameWidth;
  });
  limits.push_back(own);
}

std::vector<LinkLimit> LinkLimits(const DisplayLimits& display, const Axes& axes) {
  if (!display.hasHdmi) return {};
  std::vector<LinkLimit> limits = {{"HDMI 1.4", "340 MHz", 340},
                                   {"HDMI 2.0", "600 MHz", 600},
                                   {"HDMI 2.1 FRL", FrlText(FrlClock(kFastestFrl)), FrlClock(kFastestFrl)}};
  if (display.tmdsClock != 0) {
    AddOwn({"its TMDS", fmt::format("{} MHz", display.tmdsClock), display.tmdsClock, true}, axes, limits);
  }
  if (display.frlRate != 0) {
    const double clock = FrlClock(display.frlRate);
    AddOwn({fmt::format("its FRL {:.0f}G", display.frlRate), FrlText(clock), clock, true}, axes, limits);
  }
  return limits;
}

void DrawLink(const LinkLimit& limit, const Axes& axes, const Box& frame, Svg& svg) {
  const double x = axes.X(limit.megahertz);
  if (x < frame.x || x > frame.right()) return;
  svg.Element("rect",
              {{"class", "beyond"}, {"x", x}, {"y", frame.y}, {"width", frame.right() - x}, {"height", frame.height}});
  svg.Line(limit.isOwn ? "limit own" : "limit", x, frame.y - 4, x, frame.bottom());
  svg.Text("limitname mid", x, frame.y - 22, limit.name);
  svg.Text("small mid", x, frame.y - 9, limit.value);
}

// Named in a corner that no timing stands in: none has that clock and a rate below the least one.
void DrawRange(const DisplayLimits& display, const Axes& axes, const Box& frame, Svg& svg) {
  if (display.mostRate <= display.leastRate) return;
  const double top = std::max(axes.Y(display.mostRate), frame.y);
  const double bottom = std::clamp(axes.Y(display.leastRate), top, frame.bottom());
  const bool hasClock = display.mostClock != 0;
  const double right = hasClock ? std::clamp(axes.X(display.mostClock), frame.x, frame.right()) : frame.right();
  const std::string title = fmt::format("range limits: {} to {} Hz{}", display.leastRate, display.mostRate,
                                        hasClock ? fmt::format(", up to {:.0f} MHz", display.mostClock) : "");
  svg.Titled("rect",
             {{"class", "range"}, {"x", frame.x}, {"y", top}, {"width", right - frame.x}, {"height", bottom - top}},
             title);
}

// One bar for each range; what stands beyond the axis is cut off.
void DrawVariable(const DisplayLimits& display, const Axes& axes, const Box& frame, Svg& svg) {
  constexpr double kStep = 11, kFirst = 7, kRoom = 36;
  double x = frame.right() + kFirst;
  for (const VariableRates& rates : display.variable) {
    if (x > frame.right() + kRoom) return;
    const double top = std::max(axes.Y(rates.most), frame.y);
    const double bottom = std::clamp(axes.Y(rates.least), top, frame.bottom());
    const std::string text = fmt::format("{} {}\xE2\x80\x93{} Hz", rates.name, rates.least, rates.most);
    svg.Titled("rect", {{"class", "variable"}, {"x", x - 5}, {"y", top}, {"width", 9.0}, {"height", bottom - top}},
               text);
    svg.Element(
        "text",
        {{"class", "variablename mid"},
         {"transform", fmt::format("translate({} {}) rotate(-90)", SvgNumber(x + 3),
                                   SvgNumber(std::clamp((top + bottom) / 2, frame.y + 50, frame.bottom() - 50)))}},
        text);
    x += kStep;
  }
}

}  // namespace

void DrawLimits(const DisplayLimits& display, const Axes& axes, const Box& frame, Svg& svg) {
  for (const LinkLimit& limit : LinkLimits(display, axes)) DrawLink(limit, axes, frame, svg);
  DrawRange(display, axes, frame, svg);
  DrawVariable(display, axes, frame, svg);
}

}  // namespace reedid::document
