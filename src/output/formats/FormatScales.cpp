#include "output/formats/FormatScales.h"

#include "output/formats/FileTypes.h"

namespace isolith {

namespace {

// Machine units per mm for a setting of 1, in the plane and along Z.
struct ScaleRow {
  float xy, z;
};

ScaleRow LayerRow(int format) {
  switch (format) {
    case kFormatHpgl:
      return {40, 1};
    case kFormatNcp:
      return {1000, -1000};
    case kFormatIso:
    case kFormatNum:
      return {1, -1};
    case kFormatCamm3:
      return {40, 40};
    case kFormatEgx:
    case kFormatSml:
      return {100, 100};
    default:
      return {1, 1};
  }
}

// Whether Z follows the setting too (DXF and CBR keep 1 along Z; the user's format keeps 1).
bool LayerZScaled(int format) {
  return format != kFormatDxf && format != kFormatCbr && format != kFormatUser;
}

ScaleRow SectionRow(int format) {
  switch (format) {
    case kFormatHpgl:
      return {40, 1};
    case kFormatNcp:
      return {1000, -1000};
    case kFormatIso:
    case kFormatNum:
    case kFormatUser:
      return {1, -1};
    case kFormatCamm3:
      return {40, -40};
    case kFormatEgx:
    case kFormatSml:
      return {100, -100};
    case kFormatCbr:
      return {40, 40};
    default:
      return {1, 1};
  }
}

}  // namespace

float* ScaleOutSetting(Settings& settings, int format) {
  switch (format) {
    case kFormatHpgl:
      return &settings.PltScaleOut;
    case kFormatDxf:
      return &settings.DxfScaleOut;
    case kFormatNcp:
      return &settings.NcpScaleOut;
    case kFormatIso:
      return &settings.IsoScaleOut;
    case kFormatNum:
      return &settings.NumScaleOut;
    case kFormatCamm3:
      return &settings.Cm3ScaleOut;
    case kFormatEgx:
      return &settings.EgxScaleOut;
    case kFormatSml:
      return &settings.SmlScaleOut;
    case kFormatCbr:
      return &settings.CbrScaleOut;
    case kFormatUser:
      return &settings.PprScaleOut;
    default:
      return nullptr;
  }
}

float ScaleOutOf(const Settings& settings, int format) {
  const float* s = ScaleOutSetting(const_cast<Settings&>(settings), format);
  return s ? *s : 1.0f;
}

void SetLayerWalkScales(TOutputState& state, int format, const Settings& settings) {
  const double s = format == kFormatUser ? 1.0 : ScaleOutOf(settings, format);
  const ScaleRow row = LayerRow(format);
  state.ScaleX = state.ScaleY = static_cast<float>(row.xy * s);
  state.ScaleZ = static_cast<float>(LayerZScaled(format) ? row.z * s : row.z);
  state.ScaleVxy = 1;
  state.ScaleVz = 1;
  if (!settings.ExportZCoords) {
    state.ScaleZ = 0;
    state.ScaleVz = 0;
  }
  if (!settings.ExportSpeeds) {
    state.ScaleVxy = 0;
    state.ScaleVz = 0;
  }
}

void SetSectionWalkScales(TOutputState& state, int format, const Settings& settings) {
  const ScaleRow row = SectionRow(format);
  state.ScaleX = state.ScaleY = static_cast<float>(double(row.xy) * settings.MachineScaleXY);
  state.ScaleZ = static_cast<float>(double(row.z) * settings.MachineScaleZ);
  state.ScaleVxy = settings.MachineScaleVxy;
  state.ScaleVz = settings.MachineScaleVz;
}

}  // namespace isolith
