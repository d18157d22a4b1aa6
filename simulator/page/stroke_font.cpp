#include "simulator/page/stroke_font.h"

#include "simulator/page/stroke_glyphs.h"

namespace simulator {
namespace {

double Unit(double points) {
  return points / 72 / 100;
}

double ShareBefore(Align align) {
  if (align == Align::kLeft) return 0;
  return align == Align::kCentre ? 0.5 : 1;
}

}  // namespace

double TextWidth(std::string_view text, double points) {
  double units = 0;
  for (const char character : text) units += GlyphOf(character).Advance();
  if (!text.empty()) units -= GlyphOf(text.front()).left + GlyphOf(text.back()).right;
  return units * Unit(points);
}

void DrawText(Canvas& canvas, const Point& at, std::string_view text, const TextStyle& style) {
  if (text.empty()) return;
  const double unit = Unit(style.points);
  const double pen = style.weight * style.points / 72;
  const double width = TextWidth(text, style.points) + pen;
  double x = at.x + pen / 2 - width * ShareBefore(style.align) - GlyphOf(text.front()).left * unit;
  for (const char character : text) {
    const Glyph& glyph = GlyphOf(character);
    std::vector<Polyline> lines = glyph.lines;
    for (Polyline& line : lines) {
      for (Point& point : line) {
        point = {x + (glyph.left + point.x) * unit, at.y - point.y * unit};
      }
    }
    if (!lines.empty()) canvas.Stroke(lines, pen, style.color);
    x += glyph.Advance() * unit;
  }
}

}  // namespace simulator
