#include <doctest/doctest.h>

#include <array>

#include "simulator/page/canvas.h"
#include "simulator/page/stroke_font.h"
#include "simulator/page/test_page.h"
#include "tests/simulator/simulator_conversation.h"

// The built-in page, and the canvas that it is drawn on.

using simulator::Box;
using simulator::Canvas;
using simulator::Picture;

namespace {

using Pixel = std::array<unsigned, 3>;

// The pixel at a place in inches, its channels from 0 to 255.
Pixel At(const Picture& picture, double x, double y) {
  const auto column = static_cast<std::size_t>(x * picture.dotsPerInch);
  const auto row = static_cast<std::size_t>(y * picture.dotsPerInch);
  const std::uint16_t* const samples = &picture.samples[(row * picture.width + column) * 3];
  return {samples[0] / 257U, samples[1] / 257U, samples[2] / 257U};
}

std::size_t Inked(const Picture& picture) {
  std::size_t count = 0;
  for (const std::uint16_t sample : picture.samples) count += sample != 0xFFFF ? 1 : 0;
  return count;
}

constexpr Pixel kWhite{255, 255, 255};

}  // namespace

TEST_CASE("simulator: the test page is letter size at any resolution") {
  for (const std::uint32_t dotsPerInch : {1U, 25U, 72U, 100U}) {
    const Picture page = simulator::RenderTestPage(dotsPerInch);
    CHECK(page.width == (17 * dotsPerInch + 1) / 2);
    CHECK(page.height == 11 * dotsPerInch);
    CHECK(page.dotsPerInch == dotsPerInch);
    CHECK(page.samples.size() == std::size_t{page.width} * page.height * 3);
  }
}

TEST_CASE("simulator: each corner of the test page has its own colour, at the same place") {
  for (const std::uint32_t dotsPerInch : {100U, 150U}) {
    const Picture page = simulator::RenderTestPage(dotsPerInch);
    CHECK(At(page, 0.545, 1.2) == Pixel{0xC8, 0x20, 0x2F});
    CHECK(At(page, 8.5 - 0.545, 1.2) == Pixel{0x12, 0x80, 0x3C});
    CHECK(At(page, 0.545, 11 - 1.2) == Pixel{0x1F, 0x4F, 0xB4});
    CHECK(At(page, 8.5 - 0.545, 11 - 1.2) == Pixel{0xE0, 0x7A, 0x10});
    CHECK(At(page, 0.05, 0.05) == kWhite);
  }
}

TEST_CASE("simulator: the patches of the test page have exactly their colours") {
  const Picture page = simulator::RenderTestPage(75);
  CHECK(At(page, 0.85, 4.9) == Pixel{255, 0, 0});
  CHECK(At(page, 1.45, 4.9) == Pixel{0, 255, 0});
  CHECK(At(page, 2.05, 4.9) == Pixel{0, 0, 255});
  CHECK(At(page, 2.70, 4.9) == Pixel{0, 255, 255});
}

TEST_CASE("simulator: a box that covers a share of a pixel inks that share") {
  Canvas canvas(0.04, 0.01, 100);
  canvas.Fill({0.01, 0, 0.0125, 0.01}, simulator::kBlack);
  canvas.Fill({0.02, 0, 0.03, 0.005}, simulator::kBlack);
  const Picture picture = std::move(canvas).Take();
  CHECK(picture.samples[0] == 0xFFFF);
  CHECK(picture.samples[3] == doctest::Approx(0.75 * 65535).epsilon(0.001));
  CHECK(picture.samples[6] == doctest::Approx(0.50 * 65535).epsilon(0.001));
  CHECK(picture.samples[9] == 0xFFFF);
}

TEST_CASE("simulator: drawing beyond the canvas is cut off") {
  Canvas canvas(0.1, 0.1, 100);
  canvas.Fill({-5, -5, 0.05, 0.1}, simulator::kBlack);
  canvas.Disc({0, 0.2}, 0.05, simulator::kBlack);
  canvas.Line({-1, 0.02}, {5, 0.02}, 0.01, simulator::kBlack);
  CHECK(std::move(canvas).Take().samples.size() == 300);
}

TEST_CASE("simulator: every printable character has a drawing, and no two have the same") {
  std::vector<std::vector<std::uint16_t>> drawings;
  for (char character = '!'; character <= '~'; ++character) {
    Canvas canvas(0.5, 0.6, 100);
    simulator::DrawText(canvas, {0.1, 0.4}, std::string(1, character), {.points = 30});
    const Picture picture = std::move(canvas).Take();
    INFO(character);
    CHECK(Inked(picture) > 0);
    CHECK(std::count(drawings.begin(), drawings.end(), picture.samples) == 0);
    drawings.push_back(picture.samples);
  }
}

TEST_CASE("simulator: text grows with its size and its letters") {
  CHECK(simulator::TextWidth("", 10) == 0);
  CHECK(simulator::TextWidth("ab", 20) == doctest::Approx(2 * simulator::TextWidth("ab", 10)));
  CHECK(simulator::TextWidth("abc", 10) > simulator::TextWidth("ab", 10));
}
