#include "toolpath/geometry/Angles.h"

#include <cmath>

#include "toolpath/geometry/Scalars.h"

namespace isolith {

namespace {

// Angles met in the calculators are within a few turns of the target, where the loops below run
// a handful of times. A wild value (from a corrupt input) is first brought near the target in one
// step, and the loops are capped, so that it can never hang the program: past 2^27 a float cannot
// move by 2 Pi at all.
constexpr double kFarTurns = 64;
constexpr int kMaxSteps = 1000;

// Multiples of 2 Pi that bring `from` to within a couple of turns of `to`.
double TurnsBetween(double from, double to) {
  double turns = std::trunc((to - from) / TwoPi);
  if (turns > 0) return turns - 1;
  if (turns < 0) return turns + 1;
  return 0;
}

}  // namespace

void NormalizeAngle(float& a) {
  if (!std::isfinite(a)) return;
  if (std::fabs(a) > kFarTurns * TwoPi) {
    a = static_cast<float>(a + TurnsBetween(a, 0) * TwoPi);
  }
  for (int i = 0; i < kMaxSteps && a > Pi; ++i)
    a = static_cast<float>(static_cast<double>(a) - TwoPi);
  // Not greater than -Pi, so that -Pi itself becomes Pi.
  for (int i = 0; i < kMaxSteps && !(a > -Pi); ++i) {
    a = static_cast<float>(static_cast<double>(a) + TwoPi);
  }
}

void AngleAbove(float a, float& b) {
  if (!std::isfinite(a) || !std::isfinite(b)) return;
  if (static_cast<double>(a) - b > kFarTurns * TwoPi) {
    b = static_cast<float>(b + TurnsBetween(b, a) * TwoPi);
  }
  for (int i = 0; i < kMaxSteps && !(b > static_cast<double>(a) + TenthDegree); ++i) {
    b = static_cast<float>(static_cast<double>(b) + TwoPi);
  }
}

void AngleBelow(float a, float& b) {
  if (!std::isfinite(a) || !std::isfinite(b)) return;
  if (static_cast<double>(b) - a > kFarTurns * TwoPi) {
    b = static_cast<float>(b + TurnsBetween(b, a) * TwoPi);
  }
  for (int i = 0; i < kMaxSteps && !(a > static_cast<double>(b) + TenthDegree); ++i) {
    b = static_cast<float>(static_cast<double>(b) - TwoPi);
  }
}

void AngleBeyond(float a, float& b, float direction) {
  if (direction < 0) {
    AngleBelow(a, b);
  } else {
    AngleAbove(a, b);
  }
}

}  // namespace isolith
