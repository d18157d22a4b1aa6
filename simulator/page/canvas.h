#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <vector>

#include "simulator/page/picture.h"

namespace simulator {

// All lengths on a canvas are in inches, from the top left corner, y downwards.
struct Point {
  double x = 0;
  double y = 0;
};

inline double Distance(const Point& a, const Point& b) {
  return std::sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y));
}

struct Box {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;

  double Width() const { return right - left; }
  double Height() const { return bottom - top; }
  Point Middle() const { return {(left + right) / 2, (top + bottom) / 2}; }
  Box Grown(double margin) const {
    return {left - margin, top - margin, right + margin, bottom + margin};
  }
};

// Channels from 0 to 1.
struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;
};

// 0xRRGGBB.
constexpr Color Rgb(std::uint32_t code) {
  return {(code >> 16 & 0xFF) / 255.0, (code >> 8 & 0xFF) / 255.0, (code & 0xFF) / 255.0};
}

// `share` of `to`, the rest of `from`.
constexpr Color Mix(const Color& from, const Color& to, double share) {
  return {from.red + (to.red - from.red) * share, from.green + (to.green - from.green) * share,
          from.blue + (to.blue - from.blue) * share};
}

inline constexpr Color kBlack{0, 0, 0};
inline constexpr Color kPaper{1, 1, 1};

// A line through points, drawn with a round pen.
using Polyline = std::vector<Point>;

// A white sheet to draw on, with smooth edges at any resolution. What lies outside is cut off.
class Canvas {
 public:
  Canvas(double width, double height, std::uint32_t dotsPerInch);

  double PixelSize() const { return 1.0 / picture_.dotsPerInch; }

  void Fill(const Box& box, const Color& color);
  void Frame(const Box& box, double thickness, const Color& color);  // inside the box
  void Disc(const Point& centre, double radius, const Color& color);
  void Ring(const Point& centre, double radius, double thickness, const Color& color);
  void Polygon(std::span<const Point> corners, const Color& color);  // convex, clockwise
  // Lines, at least one, of two points at least; they do not shine through each other.
  void Stroke(std::span<const Polyline> lines, double thickness, const Color& color);
  void Line(const Point& from, const Point& to, double thickness, const Color& color);

  // Paints each pixel of the box with share(its middle), from 0 to 1, of the color.
  template <class Share>
  void Paint(const Box& box, const Color& color, const Share& share) {
    ForEachPixel(box, [&](const Pixel& pixel) { Blend(pixel, color, share(pixel.middle)); });
  }

  // Gives each pixel of the box colorAt(its middle); pixels on the box's edge by their share in it.
  template <class ColorAt>
  void Shade(const Box& box, const ColorAt& colorAt) {
    ForEachPixel(box, [&](const Pixel& pixel) {
      Blend(pixel, colorAt(pixel.middle), ShareOf(box, pixel.middle));
    });
  }

  // The share of a pixel that lies within a shape whose edge is `distance` inside of its middle
  // (negative: outside).
  double ShareInside(double distance) const {
    return std::clamp(0.5 + distance * picture_.dotsPerInch, 0.0, 1.0);
  }

  // The share of a pixel, `distance` from the middle of a band, that the band covers.
  double ShareWithin(double distance, double halfThickness) const {
    return ShareInside(halfThickness - distance) - ShareInside(-halfThickness - distance);
  }

  Picture Take() && { return std::move(picture_); }

 private:
  struct Pixel {
    std::uint32_t column;
    std::uint32_t row;
    Point middle;
  };

  // The columns and rows that a box touches, the ends excluded.
  struct Grid {
    std::uint32_t left;
    std::uint32_t top;
    std::uint32_t right;
    std::uint32_t bottom;
  };

  template <class Visit>
  void ForEachPixel(const Box& box, const Visit& visit) const {
    const Grid grid = GridOf(box);
    const double size = PixelSize();
    for (std::uint32_t y = grid.top; y < grid.bottom; ++y) {
      for (std::uint32_t x = grid.left; x < grid.right; ++x) {
        visit(Pixel{x, y, {(x + 0.5) * size, (y + 0.5) * size}});
      }
    }
  }

  Grid GridOf(const Box& box) const;
  double ShareOf(const Box& box, const Point& middle) const;
  void Blend(const Pixel& pixel, const Color& color, double share);

  Picture picture_;
};

}  // namespace simulator
