// Scalar helpers and the constants of the toolpath geometry.
//
// Every stored coordinate, length and angle is a 32-bit float. Expressions are evaluated in
// double and rounded to float only when stored or passed on; the calculators' tie-breaks depend
// on exactly where that rounding happens, so the constants below are the float values themselves.
#pragma once

namespace isolith {

// Angles, as the 32-bit floats the calculators were tuned with.
inline constexpr float Pi = 3.1415927f;
inline constexpr float HalfPi = 1.5707964f;
inline constexpr float TwoPi = 6.2831855f;
inline constexpr float QuarterPi = 0.7853982f;
inline constexpr float EighthPi = 0.3926991f;
inline constexpr float SixteenthPi = 0.19634955f;
inline constexpr float OneDegree = 0.017453292f;
// A tenth of a degree: the slack of AngleAbove and AngleBelow.
inline constexpr float TenthDegree = 0.0017453292f;

// The three tolerances of the toolpath engine, in millimetres.
inline constexpr float kNearTolerance = 0.01f;   // near points, contour and hatch intersections
inline constexpr float kFineTolerance = 0.001f;  // card-contour offset, perpendicular feet
inline constexpr float kCloseTolerance = 0.05f;  // closing of an offset path

// Length of the probes drawn to find perpendicular feet, and the distance that means "no foot".
inline constexpr float kProbeLength = 20000.0f;
inline constexpr float kNoFoot = 1.0e9f;

inline float AbsF(float a) {
  return a < 0 ? -a : a;
}
inline float MinF(float a, float b) {
  return a < b ? a : b;
}
inline float MaxF(float a, float b) {
  return b < a ? a : b;
}

inline void SwapF(float& a, float& b) {
  float t = a;
  a = b;
  b = t;
}

// Swaps so that a is not greater than b.
inline void OrderF(float& a, float& b) {
  if (b < a) SwapF(a, b);
}

// Orders each axis of a box independently.
inline void OrderBox(float& x1, float& y1, float& x2, float& y2) {
  OrderF(x1, x2);
  OrderF(y1, y2);
}

}  // namespace isolith
