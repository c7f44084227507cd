// Angle helpers: radians, counter-clockwise from +X, Y upward.
#pragma once

namespace isolith {

// Brings an angle into (-Pi, Pi].
void NormalizeAngle(float& a);
// Adds 2 Pi to b until it is more than a tenth of a degree above a.
void AngleAbove(float a, float& b);
// Subtracts 2 Pi from b until it is more than a tenth of a degree below a.
void AngleBelow(float a, float& b);
// AngleBelow for a negative direction, AngleAbove otherwise.
void AngleBeyond(float a, float& b, float direction);

}  // namespace isolith
