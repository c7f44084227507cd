// The scales of each format for the two walks: machine units per mm in X, Y and Z, and the
// factors on speeds. The layer walk takes them from the format's own "*ScaleOut" setting and
// the export switches; the section walk multiplies a fixed table by the machine's scales.
#pragma once

#include "output/driver/OutputState.h"
#include "params/Settings.h"

namespace isolith {

// The format's "*ScaleOut" setting (PltScaleOut, DxfScaleOut, ... PprScaleOut); null for a
// code that has none.
float* ScaleOutSetting(Settings& settings, int format);
float ScaleOutOf(const Settings& settings, int format);

// Layer walk: ScaleX = ScaleY and ScaleZ from the format's setting s (HPGL 40 s and s, DXF s
// and 1, NCP 1000 s and -1000 s, ISO and NUM s and -s, CAMM-3 40 s twice, EGX and SML 100 s
// twice, CBR s and 1, the user's format 1 and 1); speeds 1. `ExportZCoords` off sets ScaleZ and
// ScaleVz to 0, `ExportSpeeds` off ScaleVxy and ScaleVz.
void SetLayerWalkScales(TOutputState& state, int format, const Settings& settings);

// Section walk: the fixed table (HPGL 40 and 1, DXF 1 and 1, NCP 1000 and -1000, ISO and NUM 1
// and -1, CAMM-3 40 and -40, EGX and SML 100 and -100, CBR 40 and 40, the user's format 1 and
// -1) times MachineScaleXY and MachineScaleZ; the speed factors are MachineScaleVxy and
// MachineScaleVz.
void SetSectionWalkScales(TOutputState& state, int format, const Settings& settings);

}  // namespace isolith
