#include "simulator/page/stroke_glyphs.h"

#include <array>
#include <cmath>
#include <numbers>
#include <sstream>
#include <string>

namespace simulator {
namespace {

// Room beside a glyph: straight stems need most, diagonals least.
constexpr int kStem = 11;
constexpr int kRound = 9;
constexpr int kSlant = 6;

// The path of a pen. M x y lifts it and puts it down there; L x y draws to there;
// C x1 y1 x2 y2 x y draws a cubic curve; E cx cy rx ry a b draws the arc of an ellipse from a to b
// degrees, counterclockwise from the right: after a lift as a line of its own, "e" going on from
// where the pen is.
struct Row {
  char character;
  int left;
  int width;
  int right;
  const char* path;
};

// clang-format off
constexpr std::array kRows{
    Row{' ', 0, 28, 0, ""},
    // Capitals.
    Row{'A', kSlant, 56, kSlant, "M0 0 L28 70 L56 0 M9 23 L47 23"},
    Row{'B', kStem, 44, kRound,
        "M0 0 L0 70 L22 70 e22 53.5 18 16.5 90 -90 L0 37 M22 37 e24 18.5 20 18.5 90 -90 L0 0"},
    Row{'C', kRound, 54, kRound, "E31 35 31 35 48 312"},
    Row{'D', kStem, 53, kRound, "M0 0 L0 70 L19 70 e19 35 34 35 90 -90 L0 0"},
    Row{'E', kStem, 40, kSlant, "M40 0 L0 0 L0 70 L40 70 M0 37 L35 37"},
    Row{'F', kStem, 38, kSlant, "M0 0 L0 70 L38 70 M0 35 L33 35"},
    Row{'G', kRound, 57, kStem, "E31 35 31 35 50 317 L56 12 L56 33 L35 33"},
    Row{'H', kStem, 49, kStem, "M0 0 L0 70 M49 0 L49 70 M0 36 L49 36"},
    Row{'I', kStem, 0, kStem, "M0 0 L0 70"},
    Row{'J', kSlant, 31, kStem, "M31 70 L31 17 e15.5 17 15.5 17 0 -160"},
    Row{'K', kStem, 47, kSlant, "M0 0 L0 70 M44 70 L0 27 M16 42 L47 0"},
    Row{'L', kStem, 38, kSlant, "M0 70 L0 0 L38 0"},
    Row{'M', kStem, 62, kStem, "M0 0 L0 70 L31 18 L62 70 L62 0"},
    Row{'N', kStem, 51, kStem, "M0 0 L0 70 L51 0 L51 70"},
    Row{'O', kRound, 64, kRound, "E32 35 32 35 0 360"},
    Row{'P', kStem, 44, kSlant, "M0 0 L0 70 L24 70 e24 51 20 19 90 -90 L0 32"},
    Row{'Q', kRound, 64, kRound, "E32 35 32 35 0 360 M40 19 L61 -6"},
    Row{'R', kStem, 47, kSlant, "M0 0 L0 70 L24 70 e24 52 21 18 90 -90 L0 34 M25 34 L47 0"},
    Row{'S', kRound, 44, kRound,
        "M41 58 C38 66 31 70 22 70 C11 70 3 63 3 53 C3 42 12 38 22 36 C34 33 44 29 44 18 C44 "
        "7 34 0 22 0 C11 0 3 5 0 14"},
    Row{'T', kSlant, 52, kSlant, "M0 70 L52 70 M26 70 L26 0"},
    Row{'U', kStem, 50, kStem, "M0 70 L0 25 e25 25 25 25 180 360 L50 70"},
    Row{'V', kSlant, 54, kSlant, "M0 70 L27 0 L54 70"},
    Row{'W', kSlant, 82, kSlant, "M0 70 L20 0 L41 62 L62 0 L82 70"},
    Row{'X', kSlant, 50, kSlant, "M1 70 L50 0 M49 70 L0 0"},
    Row{'Y', kSlant, 52, kSlant, "M0 70 L26 33 L52 70 M26 33 L26 0"},
    Row{'Z', kSlant, 48, kSlant, "M2 70 L46 70 L0 0 L48 0"},
    // Small letters.
    Row{'a', kRound, 43, kStem, "E21.5 24 21.5 24 0 360 M43 48 L43 0"},
    Row{'b', kStem, 43, kRound, "M0 72 L0 0 E21.5 24 21.5 24 0 360"},
    Row{'c', kRound, 39, kSlant, "E23 24 23 24 46 314"},
    Row{'d', kRound, 43, kStem, "E21.5 24 21.5 24 0 360 M43 72 L43 0"},
    Row{'e', kRound, 45, kRound, "M0.4 25 L44.6 25 e22.5 24 22.5 24 2 320"},
    Row{'f', kSlant, 25, kSlant - 3, "M9 0 L9 55 e23 55 14 17 180 78 M0 46 L23 46"},
    Row{'g', kRound, 43, kStem, "E21.5 24 21.5 24 0 360 M43 48 L43 2 e21.5 2 21.5 22 0 -152"},
    Row{'h', kStem, 39, kStem, "M0 72 L0 0 M0 28 e19.5 28 19.5 20 180 0 L39 0"},
    Row{'i', kStem, 0, kStem, "M0 48 L0 0 E0 66 1.5 1.5 0 360"},
    Row{'j', kSlant, 10, kStem, "M10 48 L10 -7 e-2 -7 12 13 0 -80 E10 66 1.5 1.5 0 360"},
    Row{'k', kStem, 37, kSlant, "M0 72 L0 0 M34 48 L0 17 M13 29 L37 0"},
    Row{'l', kStem, 0, kStem, "M0 72 L0 0"},
    Row{'m', kStem, 66, kStem,
        "M0 48 L0 0 M0 31 e16.5 31 16.5 17 180 0 L33 0 M33 31 e49.5 31 16.5 17 180 0 L66 0"},
    Row{'n', kStem, 39, kStem, "M0 48 L0 0 M0 28 e19.5 28 19.5 20 180 0 L39 0"},
    Row{'o', kRound, 47, kRound, "E23.5 24 23.5 24 0 360"},
    Row{'p', kStem, 43, kRound, "M0 48 L0 -20 E21.5 24 21.5 24 0 360"},
    Row{'q', kRound, 43, kStem, "E21.5 24 21.5 24 0 360 M43 48 L43 -20"},
    Row{'r', kStem, 23, kSlant - 3, "M0 48 L0 0 M0 26 e20 26 20 22 180 80"},
    Row{'s', kRound, 33, kRound,
        "M31 39 C28 45 23 48 17 48 C8 48 2 43 2 36 C2 28 9 26 17 24 C26 22 33 19 33 12.5 C33 "
        "4 26 0 17 0 C9 0 3 3 0 9"},
    Row{'t', kSlant, 25, kSlant - 1, "M10 63 L10 14 e23 14 13 14 180 278 M0 47 L24 47"},
    Row{'u', kStem, 39, kStem, "M0 48 L0 20 e19.5 20 19.5 20 180 360 M39 48 L39 0"},
    Row{'v', kSlant, 42, kSlant, "M0 48 L21 0 L42 48"},
    Row{'w', kSlant, 64, kSlant, "M0 48 L16 0 L32 43 L48 0 L64 48"},
    Row{'x', kSlant, 39, kSlant, "M1 48 L39 0 M38 48 L0 0"},
    Row{'y', kSlant, 42, kSlant, "M0 48 L21 0 M42 48 L16 -11 C13 -18 9 -20 2 -20"},
    Row{'z', kSlant, 37, kSlant, "M1 48 L36 48 L0 0 L37 0"},
    // Digits, all of one width.
    Row{'0', 8, 44, 8, "E22 35 22 35 0 360"},
    Row{'1', 8, 44, 8, "M9 57 L26 70 L26 0"},
    Row{'2', 8, 44, 8, "M2 52 C2 63 10 70 22 70 C34 70 42 63 42 52 C42 44 38 38 30 29 L1 0 L44 0"},
    Row{'3', 8, 44, 8,
        "M4 60 C8 67 14 70 21 70 C32 70 40 63 40 54 C40 44 33 38 22 38 L17 38 M22 38 C35 38 "
        "43 30 43 19 C43 8 34 0 21 0 C11 0 4 4 1 13"},
    Row{'4', 8, 44, 8, "M34 0 L34 70 L0 19 L45 19"},
    Row{'5', 8, 44, 8,
        "M40 70 L9 70 L5 38 C10 43 16 45 22 45 C35 45 43 36 43 23 C43 9 34 0 21 0 C12 0 5 4 "
        "1 11"},
    Row{'6', 8, 44, 8, "E22 22 21.5 22 0 360 M29.5 70 L4.4 35"},
    Row{'7', 8, 44, 8, "M1 70 L43 70 L15 0"},
    Row{'8', 8, 44, 8, "E22 53.5 18 16.5 0 360 E22 18.5 21.5 18.5 0 360"},
    Row{'9', 8, 44, 8, "E22 48 21.5 22 0 360 M14.5 0 L39.6 35"},
    // Punctuation.
    Row{'.', kStem, 0, kStem, "E0 2 1.5 1.5 0 360"},
    Row{',', kStem, 4, kRound, "E4 2 1.5 1.5 0 360 M4 1 L0 -11"},
    Row{':', kStem, 0, kStem, "E0 2 1.5 1.5 0 360 E0 40 1.5 1.5 0 360"},
    Row{';', kStem, 4, kRound, "E4 2 1.5 1.5 0 360 M4 1 L0 -11 E4 40 1.5 1.5 0 360"},
    Row{'!', kStem, 0, kStem, "M0 70 L0 22 E0 2 1.5 1.5 0 360"},
    Row{'?', kRound, 37, kRound,
        "M0 54 C1 64 8 70 18 70 C30 70 37 63 37 53 C37 44 31 40 25 35 C20 31 18 28 18 21 E18 "
        "2 1.5 1.5 0 360"},
    Row{'\'', kStem, 0, kStem, "M0 70 L0 52"},
    Row{'"', kStem, 15, kStem, "M0 70 L0 52 M15 70 L15 52"},
    Row{'(', kStem, 15, kSlant, "M15 80 C4 64 0 46 0 31 C0 16 4 -2 15 -18"},
    Row{')', kSlant, 15, kStem, "M0 80 C11 64 15 46 15 31 C15 16 11 -2 0 -18"},
    Row{'[', kStem, 15, kSlant, "M15 79 L0 79 L0 -17 L15 -17"},
    Row{']', kSlant, 15, kStem, "M0 79 L15 79 L15 -17 L0 -17"},
    Row{'{', kSlant, 20, kSlant,
        "M20 79 C10 79 9 75 9 66 L9 46 C9 36 7 31 0 31 C7 31 9 26 9 16 L9 -4 C9 -13 10 -17 "
        "20 -17"},
    Row{'}', kSlant, 20, kSlant,
        "M0 79 C10 79 11 75 11 66 L11 46 C11 36 13 31 20 31 C13 31 11 26 11 16 L11 -4 C11 "
        "-13 10 -17 0 -17"},
    Row{'/', kSlant, 32, kSlant, "M0 -8 L32 78"},
    Row{'\\', kSlant, 32, kSlant, "M0 78 L32 -8"},
    Row{'|', kStem, 0, kStem, "M0 80 L0 -18"},
    Row{'-', kRound, 24, kRound, "M0 28 L24 28"},
    Row{'_', 0, 50, 0, "M0 -14 L50 -14"},
    Row{'+', kRound, 44, kRound, "M0 32 L44 32 M22 10 L22 54"},
    Row{'=', kRound, 44, kRound, "M0 42 L44 42 M0 22 L44 22"},
    Row{'<', kRound, 40, kRound, "M40 54 L0 32 L40 10"},
    Row{'>', kRound, 40, kRound, "M0 54 L40 32 L0 10"},
    Row{'*', kRound, 30, kRound, "M15 71 L15 39 M1 63 L29 47 M29 63 L1 47"},
    Row{'#', kRound, 57, kRound, "M14 0 L24 70 M35 0 L45 70 M4 48 L57 48 M0 23 L53 23"},
    Row{'%', kRound, 66, kRound, "E12 56 12 14 0 360 E54 14 12 14 0 360 M54 70 L12 0"},
    Row{'&', kRound, 52, kRound,
        "M52 0 L14 47 C10 52 9 55 9 58 C9 65 14 70 21 70 C28 70 33 65 33 58 C33 50 27 46 19 "
        "41 C8 34 1 28 1 18 C1 7 9 0 21 0 C36 0 46 12 49 30"},
    Row{'@', kRound, 68, kRound,
        "E34 30 13 14 0 360 M47 44 L47 24 C47 18 50 15 55 15 C62 15 67 22 67 32 C67 53 53 68 "
        "34 68 C15 68 1 53 1 31 C1 9 15 -6 35 -6 C44 -6 51 -4 57 0"},
    Row{'$', kRound, 44, kRound,
        "M41 58 C38 66 31 70 22 70 C11 70 3 63 3 53 C3 42 12 38 22 36 C34 33 44 29 44 18 C44 "
        "7 34 0 22 0 C11 0 3 5 0 14 M22 80 L22 -10"},
    Row{'^', kRound, 36, kRound, "M0 46 L18 72 L36 46"},
    Row{'~', kRound, 44, kRound, "M0 28 C6 40 15 38 22 32 C29 26 38 24 44 36"},
    Row{'`', kRound, 14, kRound, "M0 74 L14 58"},
};
// clang-format on

class Pen {
 public:
  explicit Pen(const char* path) : stream_(path) {}

  std::vector<Polyline> Draw() {
    for (char command = 0; stream_ >> command;) Obey(command);
    return std::move(lines_);
  }

 private:
  void Obey(char command) {
    if (command == 'M' || command == 'E') lines_.emplace_back();
    if (command == 'M' || command == 'L') lines_.back().push_back(ReadPoint());
    if (command == 'C') Curve();
    if (command == 'E' || command == 'e') Arc();
  }

  Point ReadPoint() {
    Point point;
    stream_ >> point.x >> point.y;
    return point;
  }

  void Curve() {
    constexpr int kSteps = 16;
    const Point a = lines_.back().back();
    const Point b = ReadPoint();
    const Point c = ReadPoint();
    const Point d = ReadPoint();
    for (int i = 1; i <= kSteps; ++i) {
      const double t = static_cast<double>(i) / kSteps;
      const double s = 1 - t;
      const auto at = [&](double w, double x, double y, double z) {
        return s * s * s * w + 3 * s * s * t * x + 3 * s * t * t * y + t * t * t * z;
      };
      lines_.back().push_back({at(a.x, b.x, c.x, d.x), at(a.y, b.y, c.y, d.y)});
    }
  }

  void Arc() {
    constexpr double kDegreesAStep = 6;
    const Point centre = ReadPoint();
    const Point radius = ReadPoint();
    const Point angles = ReadPoint();
    const double turn = angles.y - angles.x;
    const int steps = static_cast<int>(std::ceil(std::abs(turn) / kDegreesAStep));
    for (int i = 0; i <= steps; ++i) {
      const double angle = (angles.x + turn * i / steps) * std::numbers::pi / 180;
      lines_.back().push_back(
          {centre.x + radius.x * std::cos(angle), centre.y + radius.y * std::sin(angle)});
    }
  }

  std::istringstream stream_;
  std::vector<Polyline> lines_;
};

using Glyphs = std::array<Glyph, 128>;

Glyphs MakeGlyphs() {
  Glyphs glyphs;
  for (const Row& row : kRows) {
    glyphs[static_cast<std::size_t>(row.character)] = {
        static_cast<double>(row.left), static_cast<double>(row.width),
        static_cast<double>(row.right), Pen(row.path).Draw()};
  }
  return glyphs;
}

}  // namespace

const Glyph& GlyphOf(char character) {
  static const Glyphs kGlyphs = MakeGlyphs();
  const auto code = static_cast<unsigned char>(character);
  return kGlyphs[code > ' ' && code < 0x7F ? code : ' '];
}

}  // namespace simulator
