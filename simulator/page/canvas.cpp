#include "simulator/page/canvas.h"

#include <array>

namespace simulator {
namespace {

constexpr double kFullLight = 65535;

double DistanceToSegment(const Point& point, const Point& from, const Point& to) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  const double square = dx * dx + dy * dy;
  if (square == 0) return Distance(point, from);
  const double along = ((point.x - from.x) * dx + (point.y - from.y) * dy) / square;
  const double t = std::clamp(along, 0.0, 1.0);
  return Distance(point, {from.x + t * dx, from.y + t * dy});
}

Box Around(std::span<const Point> points) {
  Box box{points[0].x, points[0].y, points[0].x, points[0].y};
  for (const Point& point : points) {
    box.left = std::min(box.left, point.x);
    box.top = std::min(box.top, point.y);
    box.right = std::max(box.right, point.x);
    box.bottom = std::max(box.bottom, point.y);
  }
  return box;
}

Box Around(std::span<const Polyline> lines) {
  Box box = Around(lines[0]);
  for (const Polyline& line : lines) {
    const Box other = Around(line);
    box = {std::min(box.left, other.left), std::min(box.top, other.top),
           std::max(box.right, other.right), std::max(box.bottom, other.bottom)};
  }
  return box;
}

template <class Visit>
void ForEachSegment(std::span<const Polyline> lines, const Visit& visit) {
  for (const Polyline& line : lines) {
    for (std::size_t i = 1; i < line.size(); ++i) visit(line[i - 1], line[i]);
  }
}

Box Around(const Point& centre, double radius) {
  return Box{centre.x, centre.y, centre.x, centre.y}.Grown(radius);
}

// How far the point lies inside the convex, clockwise polygon; negative outside.
double DepthInside(std::span<const Point> corners, const Point& point) {
  double depth = 1e9;
  Point from = corners.back();
  for (const Point& to : corners) {
    const double length = Distance(from, to);
    const double side = (to.x - from.x) * (point.y - from.y) - (to.y - from.y) * (point.x - from.x);
    depth = std::min(depth, side / length);
    from = to;
  }
  return depth;
}

}  // namespace

Canvas::Canvas(double width, double height, std::uint32_t dotsPerInch) {
  picture_.width = static_cast<std::uint32_t>(std::lround(width * dotsPerInch));
  picture_.height = static_cast<std::uint32_t>(std::lround(height * dotsPerInch));
  picture_.dotsPerInch = dotsPerInch;
  picture_.samples.assign(std::size_t{picture_.width} * picture_.height * 3, 0xFFFF);
}

Canvas::Grid Canvas::GridOf(const Box& box) const {
  const auto index = [&](double inches, std::uint32_t limit) {
    const double place = std::floor(inches * picture_.dotsPerInch);
    return static_cast<std::uint32_t>(std::clamp(place, 0.0, static_cast<double>(limit)));
  };
  return {index(box.left, picture_.width), index(box.top, picture_.height),
          index(box.right + PixelSize(), picture_.width),
          index(box.bottom + PixelSize(), picture_.height)};
}

void Canvas::Blend(const Pixel& pixel, const Color& color, double share) {
  if (share <= 0) return;
  std::uint16_t* const sample =
      &picture_.samples[(std::size_t{pixel.row} * picture_.width + pixel.column) * 3];
  const std::array channels{color.red, color.green, color.blue};
  for (std::size_t i = 0; i < 3; ++i) {
    const double there = sample[i];
    const double wanted = std::clamp(channels[i], 0.0, 1.0) * kFullLight;
    sample[i] = static_cast<std::uint16_t>(there + (wanted - there) * share + 0.5);
  }
}

double Canvas::ShareOf(const Box& box, const Point& middle) const {
  const double half = PixelSize() / 2;
  const double across = std::min(box.right, middle.x + half) - std::max(box.left, middle.x - half);
  const double down = std::min(box.bottom, middle.y + half) - std::max(box.top, middle.y - half);
  if (across <= 0 || down <= 0) return 0;
  return std::min(1.0, across * down * picture_.dotsPerInch * picture_.dotsPerInch);
}

void Canvas::Fill(const Box& box, const Color& color) {
  Shade(box, [&](const Point&) { return color; });
}

void Canvas::Frame(const Box& box, double thickness, const Color& color) {
  const Box inner = box.Grown(-thickness);
  Fill({box.left, box.top, box.right, inner.top}, color);
  Fill({box.left, inner.bottom, box.right, box.bottom}, color);
  Fill({box.left, inner.top, inner.left, inner.bottom}, color);
  Fill({inner.right, inner.top, box.right, inner.bottom}, color);
}

void Canvas::Disc(const Point& centre, double radius, const Color& color) {
  Paint(Around(centre, radius + PixelSize()), color,
        [&](const Point& point) { return ShareInside(radius - Distance(point, centre)); });
}

void Canvas::Ring(const Point& centre, double radius, double thickness, const Color& color) {
  Paint(Around(centre, radius + thickness), color, [&](const Point& point) {
    return ShareWithin(std::abs(Distance(point, centre) - radius), thickness / 2);
  });
}

void Canvas::Polygon(std::span<const Point> corners, const Color& color) {
  Paint(Around(corners).Grown(PixelSize()), color,
        [&](const Point& point) { return ShareInside(DepthInside(corners, point)); });
}

void Canvas::Line(const Point& from, const Point& to, double thickness, const Color& color) {
  const std::array lines{Polyline{from, to}};
  Stroke(lines, thickness, color);
}

// The shares of all segments are joined before anything is painted, so that joints and crossings
// come out as one shape.
void Canvas::Stroke(std::span<const Polyline> lines, double thickness, const Color& color) {
  const Box box = Around(lines).Grown(thickness / 2 + PixelSize());
  const Grid grid = GridOf(box);
  const std::size_t width = grid.right - grid.left;
  std::vector<double> shares(width * (grid.bottom - grid.top));
  const auto share = [&](const Pixel& pixel) -> double& {
    return shares[(pixel.row - grid.top) * width + pixel.column - grid.left];
  };
  ForEachSegment(lines, [&](const Point& from, const Point& to) {
    const std::array ends{from, to};
    const Box around = Around(ends).Grown(thickness / 2 + PixelSize());
    ForEachPixel(around, [&](const Pixel& pixel) {
      const double distance = DistanceToSegment(pixel.middle, from, to);
      share(pixel) = std::max(share(pixel), ShareWithin(distance, thickness / 2));
    });
  });
  ForEachPixel(box, [&](const Pixel& pixel) { Blend(pixel, color, share(pixel)); });
}

}  // namespace simulator
