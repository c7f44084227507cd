// Moving the board as a whole, or one layer against the others: reframing, flips, quarter
// turns, scale, shift and the adjustment on a reference pad. Flips and turns are about the
// card's centre lines, and the card's size is part of what they keep true.
#pragma once

#include "core/board/Board.h"

namespace isolith {

// The reframing margin when none is given.
inline constexpr float kReframeMargin = 2.54f;

// With `swapXY` the two values change place and nothing else happens; otherwise `mirrorX`
// reflects x in the card's width and `mirrorY` y in its height.
void TransformPoint(const Board& b, bool mirrorX, bool mirrorY, bool swapXY, float& x, float& y);
// Applies one transform to one layer's lists (with its contours and hatches).
void TransformLayer(Board& b, bool mirrorX, bool mirrorY, bool swapXY, int layer);

// Moves everything so that the content's box sits `margin` from the card's lower-left corner,
// and sizes the card round it with the same margin; resets the view. False for an empty job.
bool ReframeBoard(Board& b, float margin = kReframeMargin);

// "Flip horizontally" (mirrorX) and "Flip vertically" (mirrorY): the active layer, with the
// drills and the cutout when it is layer 0, and the origin.
void FlipBoard(Board& b, bool mirrorX, bool mirrorY);

// A quarter turn: swap then mirror. `layer` -1 turns the whole board (and the card, and the
// pad tables); a layer index turns that layer alone, which is then reframed unless it is 0.
void RotateBoard(Board& b, bool mirrorX, bool mirrorY, int layer, bool withDrills);
// "Rotate 90°" (plus) and "Rotate -90°" (minus) of the active layer or the whole board.
void RotatePlus(Board& b);
void RotateMinus(Board& b);

// Swaps the X and Y sizes of every pad aperture of the four circuit layers, when `ctrlHeld` or
// a circuit layer is shown; false when nothing was done.
bool RotatePadApertures(Board& b, bool ctrlHeld);

// Moves the active layer so that the hovered pad (or drill, on the drill layer) meets the
// reference pad; the card shrinks when the content's maximum does. False when nothing to do.
bool AdjustOnReference(Board& b);

// The apply step of "Co-ordinate shift".
void ShiftBoard(Board& b, float dx, float dy, bool allLayers, float thickness);

// What "Scale" changes.
struct ScaleChoice {
  bool coordinates = true;
  bool apertureSizes = true;
  bool drillDiameters = true;
  bool trackThicknesses = true;
};
// The apply step of "Scale": one call of ScaleLists per circuit layer, so the tables, the card,
// the origin and the view are multiplied by the fourth power of the factor. This is how boards
// have always been scaled here, and results must not change.
void ScaleBoard(Board& b, float factor, const ScaleChoice& choice);

}  // namespace isolith
