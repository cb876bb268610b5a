#include "document/plot/gamut_panel.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace reedid::document {
namespace {

constexpr double kMostX = 0.8;
constexpr double kMostY = 0.9;
constexpr double kLeastArea = 0.001;  // of primaries that span something: sRGB has 0.112

// From chromaticities to the picture.
class Plane {
 public:
  explicit Plane(const Box& frame) : frame_(frame) {}
  double X(double x) const { return frame_.x + x / kMostX * frame_.width; }
  double Y(double y) const { return frame_.bottom() - y / kMostY * frame_.height; }

 private:
  Box frame_;
};

std::string PathOf(const Polygon& polygon, const Plane& plane) {
  SvgPath path;
  path.Move(plane.X(polygon[0].x), plane.Y(polygon[0].y));
  for (size_t i = 1; i < polygon.size(); ++i) path.Line(plane.X(polygon[i].x), plane.Y(polygon[i].y));
  return path.Close().Text();
}

// A curve through the table's points (Catmull-Rom), closed by the line of purples.
std::string LocusPath(const Plane& plane) {
  constexpr size_t kLast = kSpectralLocus.size() - 1;
  SvgPath path;
  path.Move(plane.X(kSpectralLocus[0].x), plane.Y(kSpectralLocus[0].y));
  for (size_t i = 0; i < kLast; ++i) {
    const Chromaticity &before = kSpectralLocus[i == 0 ? 0 : i - 1], &after = kSpectralLocus[std::min(i + 2, kLast)];
    const Chromaticity &a = kSpectralLocus[i], &b = kSpectralLocus[i + 1];
    path.Curve(plane.X(a.x + (b.x - before.x) / 6), plane.Y(a.y + (b.y - before.y) / 6),
               plane.X(b.x - (after.x - a.x) / 6), plane.Y(b.y - (after.y - a.y) / 6), plane.X(b.x), plane.Y(b.y));
  }
  return path.Close().Text();
}

void DrawGrid(const Plane& plane, const Box& frame, Svg& svg) {
  for (int i = 0; i <= 8; ++i) {
    const double x = plane.X(i / 10.0);
    svg.Line("grid", x, frame.y, x, frame.bottom());
    svg.Text("tick mid", x, frame.bottom() + 17, fmt::format("{:.1f}", i / 10.0));
  }
  for (int i = 0; i <= 9; ++i) {
    const double y = plane.Y(i / 10.0);
    svg.Line("grid", frame.x, y, frame.right(), y);
    svg.Text("tick end", frame.x - 8, y + 4, fmt::format("{:.1f}", i / 10.0));
  }
  svg.Text("axis mid", frame.x + frame.width / 2, frame.bottom() + 38, "x");
  svg.Text("axis mid", frame.x - 40, frame.y + frame.height / 2, "y");
}

// Squares of one colour each, blurred and cut along the locus.
void DrawColors(const Plane& plane, const std::string& locus, Svg& svg) {
  constexpr int kSteps = 50;  // for 1.0
  const double side = plane.X(1.0 / kSteps) - plane.X(0);
  svg.Open("g", {{"clip-path", "url(#visible)"}}).Open("g", {{"filter", "url(#soft)"}});
  for (int row = -1; row < kMostY * kSteps; ++row) {
    for (int column = -1; column < kMostX * kSteps && row + column < kSteps + 2; ++column) {
      const double x = static_cast<double>(column) / kSteps, y = static_cast<double>(row) / kSteps;
      const double half = 0.5 / kSteps;
      svg.Element("path", {{"fill", SoftColor({std::max(x + half, 0.001), std::max(y + half, 0.004)})},
                           {"d", fmt::format("{}h{s}v-{s}h-{s}z", SvgPath().Move(plane.X(x), plane.Y(y)).Text(),
                                             fmt::arg("s", SvgNumber(side + 0.4)))}});
    }
  }
  svg.Close().Close();
  svg.Element("path", {{"class", "locus"}, {"d", locus}});
}

// What the drawing refers to: the visible colours, the blur, the frame.
void Define(const std::string& locus, const Box& frame, Svg& svg) {
  svg.Open("defs");
  svg.Open("clipPath", {{"id", "visible"}}).Element("path", {{"d", locus}}).Close();
  svg.Open("clipPath", {{"id", "diagram"}})
      .Element("rect", {{"x", frame.x}, {"y", frame.y}, {"width", frame.width}, {"height", frame.height}})
      .Close();
  svg.Open("filter", {{"id", "soft"}, {"x", 0}, {"y", 0}, {"width", 1}, {"height", 1}})
      .Element("feGaussianBlur", {{"stdDeviation", 6}})
      .Close();
  svg.Close();
}

// Some wavelengths, outside of the curve as seen from the middle.
void DrawWavelengths(const Plane& plane, Svg& svg) {
  constexpr int kNamed[] = {460, 470, 480, 490, 500, 510, 520, 530, 540, 550, 560, 570, 580, 590, 600, 620, 700};
  for (const int nanometres : kNamed) {
    const Chromaticity& p = kSpectralLocus[static_cast<size_t>((nanometres - kLocusFirst) / kLocusStep)];
    const double x = plane.X(p.x), y = plane.Y(p.y);
    const double dx = x - plane.X(1.0 / 3), dy = y - plane.Y(1.0 / 3);
    const double ux = dx / std::hypot(dx, dy), uy = dy / std::hypot(dx, dy);
    const char* style = ux < -0.3 ? "small end" : ux < 0.3 ? "small mid" : "small";
    svg.Line("locus", x, y, x + 4 * ux, y + 4 * uy);
    svg.Text(style, x + 8 * ux, y + 8 * uy + (uy < -0.9 ? 0 : 4), fmt::format("{}", nanometres));
  }
}

void DrawD65(double x, double y, Svg& svg) {
  svg.Titled("path",
             {{"class", "d65"}, {"d", SvgPath().Move(x - 6, y).Line(x + 6, y).Move(x, y - 6).Line(x, y + 6).Text()}},
             fmt::format("D65: {}, {}", kD65.x, kD65.y));
}

void DrawPoint(const char* name, const char* style, const Chromaticity& at, const Plane& plane, Svg& svg) {
  svg.Titled("circle", {{"class", style}, {"cx", plane.X(at.x)}, {"cy", plane.Y(at.y)}, {"r", 4}},
             fmt::format("{}: {:.4f}, {:.4f}", name, at.x, at.y));
}

void DrawDisplay(const Gamut& gamut, const Plane& plane, Svg& svg) {
  svg.Element("path", {{"class", "display"}, {"d", PathOf(TriangleOf(gamut), plane)}});
  DrawPoint("red", "corner", gamut.red, plane, svg);
  DrawPoint("green", "corner", gamut.green, plane, svg);
  DrawPoint("blue", "corner", gamut.blue, plane, svg);
  DrawPoint("white", "white", gamut.white, plane, svg);
}

void DrawReferences(const Plane& plane, Svg& svg) {
  for (const ReferenceGamut& reference : kReferences) {
    svg.Element("path", {{"class", "reference"},
                         {"stroke", reference.stroke},
                         {"stroke-dasharray", reference.dashes},
                         {"d", PathOf(TriangleOf(reference.gamut), plane)}});
  }
}

// What of a reference's area the display has, and how much of the reference lies inside the display's triangle.
void DrawShares(const Gamut& display, const Gamut& reference, double right, double y, Svg& svg) {
  const Polygon mine = TriangleOf(display), other = TriangleOf(reference);
  const double whole = Area(other);
  svg.Text("label end", right - 58, y, fmt::format("{:.0f} %", 100 * Area(mine) / whole));
  svg.Text("label end", right, y, fmt::format("{:.0f} %", 100 * Area(Intersection(other, mine)) / whole));
}

void DrawLegend(const std::optional<Gamut>& gamut, const Box& frame, Svg& svg) {
  const double left = frame.right() - 246, right = frame.right() - 14;
  double y = frame.y + 28;
  svg.Element("rect", {{"class", "legend"}, {"x", left - 12}, {"y", y - 18}, {"width", 252}, {"height", 108}});
  svg.Line("display", left, y - 4, left + 28, y - 4).Text("label", left + 36, y, "this display");
  if (gamut) svg.Text("small end", right - 58, y, "area").Text("small end", right, y, "covers");
  for (const ReferenceGamut& reference : kReferences) {
    y += 20;
    svg.Element("path", {{"class", "reference"},
                         {"stroke", reference.stroke},
                         {"stroke-dasharray", reference.dashes},
                         {"d", SvgPath().Move(left, y - 4).Line(left + 28, y - 4).Text()}});
    svg.Text("label", left + 36, y, reference.name);
    if (gamut) DrawShares(*gamut, reference.gamut, right, y, svg);
  }
  DrawD65(left + 14, y + 16, svg);
  svg.Text("label", left + 36, y + 20, "white D65");
}

}  // namespace

void DrawGamut(const std::optional<Gamut>& gamut, const Box& frame, Svg& svg) {
  const bool spans = gamut && Area(TriangleOf(*gamut)) >= kLeastArea;
  const Plane plane(frame);
  const std::string locus = LocusPath(plane);
  svg.Text("heading", frame.x, frame.y - 16, "Colour: CIE 1931 chromaticity");
  Define(locus, frame, svg);
  DrawColors(plane, locus, svg);
  DrawGrid(plane, frame, svg);
  DrawWavelengths(plane, svg);
  DrawReferences(plane, svg);
  DrawD65(plane.X(kD65.x), plane.Y(kD65.y), svg);
  if (spans) {
    svg.Open("g", {{"clip-path", "url(#diagram)"}});
    DrawDisplay(*gamut, plane, svg);
    svg.Close();
  }
  DrawLegend(spans ? gamut : std::nullopt, frame, svg);
  if (!spans) {
    svg.Text("missing mid", frame.x + 0.77 * frame.width, frame.bottom() - 30,
             gamut ? "the primaries span no triangle" : "no primaries are stated");
  }
}

}  // namespace reedid::document
