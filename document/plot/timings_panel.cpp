#include "document/plot/timings_panel.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "document/plot/clock_axes.h"
#include "document/plot/labels.h"
#include "document/plot/limit_lines.h"
#include "document/plot/timing_points.h"

namespace reedid::document {
namespace {

// ---- points

std::string Diamond(double x, double y) {
  return SvgPath().Move(x - 6, y).Line(x, y - 6).Line(x + 6, y).Line(x, y + 6).Close().Text();
}

void DrawPoint(const Point& point, const Axes& axes, Svg& svg) {
  const double x = axes.X(point.clock), y = axes.Y(point.rate);
  const char* color = SizeOf(point.item).color;
  const std::string title = TimingText(point.item.timing) + (point.item.ycc420 ? ", 4:2:0 only" : "") +
                            (point.preferred ? ", preferred" : "");
  if (point.item.ycc420) {
    svg.Titled(
        "path",
        {{"class", "timing"}, {"fill", "#fdfdfc"}, {"stroke", color}, {"stroke-width", 1.8}, {"d", Diamond(x, y)}},
        title);
  } else {
    svg.Titled("circle", {{"class", "timing"}, {"fill", color}, {"cx", x}, {"cy", y}, {"r", 4}}, title);
  }
  if (point.preferred) svg.Element("circle", {{"class", "preferred"}, {"cx", x}, {"cy", y}, {"r", 8.5}});
}

using Series = std::map<std::string, std::vector<const Point*>>;

// The points of one resolution by clock.
Series SeriesOf(const std::vector<Point>& points) {
  Series series;
  for (const Point& point : points) series[FormatText(point.item.timing)].push_back(&point);
  for (auto& [name, members] : series) {
    std::sort(members.begin(), members.end(), [](const Point* a, const Point* b) {
      return std::pair(a->clock, a->rate) < std::pair(b->clock, b->rate);
    });
  }
  return series;
}

void DrawSeries(const std::vector<const Point*>& members, const Axes& axes, Svg& svg) {
  if (members.size() < 2) return;
  SvgPath path;
  path.Move(axes.X(members[0]->clock), axes.Y(members[0]->rate));
  for (size_t i = 1; i < members.size(); ++i) path.Line(axes.X(members[i]->clock), axes.Y(members[i]->rate));
  svg.Element("path", {{"class", "series"}, {"stroke", SizeOf(members[0]->item).color}, {"d", path.Text()}});
}

// Each resolution has its name at its fastest point and at the preferred one; large ones choose first.
std::vector<const Point*> LabelledPoints(const Series& series) {
  std::vector<const Point*> labelled;
  for (const auto& [name, members] : series) {
    labelled.push_back(members.back());
    for (const Point* point : members) {
      if (point->preferred && point != members.back()) labelled.push_back(point);
    }
  }
  const auto weight = [](const Point* p) {
    return std::tuple(p->preferred,
                      uint64_t{p->item.timing.hactive} * p->item.timing.vactive * (p->item.timing.interlaced ? 2 : 1),
                      p->rate);
  };
  std::sort(labelled.begin(), labelled.end(), [&](const Point* a, const Point* b) { return weight(a) > weight(b); });
  return labelled;
}

std::string LabelText(const Point& point) {
  const DtdTiming& t = point.item.timing;
  return fmt::format("{}\xC3\x97{}{}", t.hactive, t.vactive * (t.interlaced ? 2 : 1), t.interlaced ? "i" : "");
}

void DrawLabel(const Point& point, const Axes& axes, Labels& labels, Svg& svg) {
  constexpr double kHeight = 13, kLeader = 12;
  const double x = axes.X(point.clock), y = axes.Y(point.rate);
  const std::string text = LabelText(point);
  const auto box = labels.Place(x, y, LabelWidth(text), kHeight);
  if (!box) return;
  const double nearX = std::clamp(x, box->x, box->right()), nearY = std::clamp(y, box->y, box->bottom());
  if (std::hypot(nearX - x, nearY - y) > kLeader) svg.Line("leader", x, y, nearX, nearY);
  svg.Text(point.preferred ? "name mid best" : "name mid", box->x + box->width / 2, box->bottom() - 3, text);
}

void DrawLabels(const Series& series, const std::vector<Point>& points, const Axes& axes, Labels& labels, Svg& svg) {
  for (const Point& point : points) {
    const double reach = point.preferred ? 9 : 5;
    labels.Occupy({axes.X(point.clock) - reach, axes.Y(point.rate) - reach, 2 * reach, 2 * reach});
  }
  for (const Point* point : LabelledPoints(series)) DrawLabel(*point, axes, labels, svg);
}

// ---- what stands beside

// The colours and marks in use, in a row below the axis: no corner of the frame is free of timings for sure.
void DrawLegend(const std::vector<Point>& points, const Box& frame, Svg& svg) {
  const auto any = [&points](auto is) { return std::any_of(points.begin(), points.end(), is); };
  const double y = frame.bottom() + 62;
  double x = frame.x + 6;
  const auto name = [&](std::string_view text) {
    svg.Text("label", x + 12, y, text);
    x += 27 + 6.6 * static_cast<double>(text.size());
  };
  for (const SizeClass& size : kSizes) {
    if (!any([&size](const Point& point) { return &SizeOf(point.item) == &size; })) continue;
    svg.Element("circle", {{"fill", size.color}, {"cx", x}, {"cy", y - 4}, {"r", 4}});
    name(size.name);
  }
  if (any([](const Point& point) { return point.preferred; })) {
    svg.Element("circle", {{"class", "preferred"}, {"cx", x}, {"cy", y - 4}, {"r", 6.5}});
    name("preferred");
  }
  if (any([](const Point& point) { return point.item.ycc420; })) {
    svg.Element("path", {{"class", "white"}, {"d", Diamond(x, y - 4)}});
    name("4:2:0 only\xE2\x80\xA0");
  }
}

// What belongs to the display itself, in a row of its own.
void DrawLimitsLegend(const DisplayLimits& limits, const Box& frame, Svg& svg) {
  constexpr double kSecond = 120;  // of the two entries
  const double x = frame.x + 6, y = frame.bottom() + 79;
  if (limits.mostRate > limits.leastRate) {
    svg.Element("rect", {{"class", "range"}, {"x", x - 7}, {"y", y - 9}, {"width", 14.0}, {"height", 10.0}});
    svg.Text("label", x + 12, y, "range limits");
  }
  if (limits.tmdsClock != 0 || limits.frlRate != 0) {
    svg.Line("limit own", x + kSecond, y - 10, x + kSecond, y + 2);
    svg.Text("label", x + kSecond + 12, y, "TMDS and FRL limits of the display itself");
  }
}

void DrawNotes(const std::vector<Point>& points, const DisplayLimits& limits, size_t left, const Box& frame, Svg& svg) {
  double y = frame.bottom() + 98;
  const auto note = [&](std::string_view text) {
    svg.Text("note", frame.x, y, text);
    y += 14;
  };
  const bool has420 = std::any_of(points.begin(), points.end(), [](const Point& p) { return p.item.ycc420; });
  const char* half = "\xE2\x80\xA0 In 4:2:0 the TMDS clock is half of the pixel clock";
  if (limits.hasHdmi) {
    note(
        "* Gbit/s \xC3\x97 16/18 (line code) / 24 bit per pixel; error correction takes about 2 % off, DSC carries "
        "more");
    note(fmt::format("Limits are pixel clocks with 8 bits per colour in RGB or 4:4:4{}{}", has420 ? ".  " : "",
                     has420 ? half : ""));
  } else if (has420) {
    note(half);
  }
  if (left != 0) note(fmt::format("not drawn: {} without a rate of up to {} Hz", left, kHighestRate));
}

}  // namespace

void DrawTimings(const std::vector<TimingItem>& items, const std::optional<TimingItem>& preferred,
                 const DisplayLimits& limits, const Box& frame, Svg& svg) {
  std::vector<Point> points = PointsOf(items, preferred);
  const size_t all = points.size();
  std::erase_if(points, [](const Point& point) { return !IsDrawn(point); });
  const Axes axes(frame, points);
  svg.Text("heading", frame.x, frame.y - 16,
           all == 0   ? "no timings"
           : all == 1 ? "1 timing"
                      : fmt::format("{} timings", all));
  axes.Draw(svg);
  DrawLimits(limits, axes, frame, svg);
  svg.Element("rect",
              {{"class", "frame"}, {"x", frame.x}, {"y", frame.y}, {"width", frame.width}, {"height", frame.height}});
  Labels labels(frame);
  const Series series = SeriesOf(points);
  for (const auto& [name, members] : series) DrawSeries(members, axes, svg);
  for (const Point& point : points) DrawPoint(point, axes, svg);
  DrawLabels(series, points, axes, labels, svg);
  DrawLegend(points, frame, svg);
  DrawLimitsLegend(limits, frame, svg);
  DrawNotes(points, limits, all - points.size(), frame, svg);
}

}  // namespace reedid::document
