// The main job on a small photoplot: the file loaded as "New circuit" loads it, its contours
// and hatches calculated on every layer, and the ISO machine file written as "Mill" writes it.
// Only boards of a person's size are calculated (a few dozen items within half a metre): the
// readers themselves are fuzzed on any size by their own harnesses.
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>

#include "FuzzInput.h"
#include "commands/Application.h"
#include "commands/ImportSteps.h"
#include "commands/OutputCommands.h"
#include "commands/ToolpathCommands.h"
#include "core/board/BoardOps.h"
#include "core/platform/ConsolePlatform.h"
#include "import/OpenGerber.h"
#include "params/SettingsFormats.h"
#include "params/ToolFile.h"

namespace {

using namespace isolith;

constexpr size_t kMaxBytes = 2048;
constexpr int kMaxItems = 40;
constexpr float kMaxExtent = 500;  // mm

bool Near(float v) {
  return std::isfinite(v) && std::fabs(v) <= kMaxExtent;
}

// Whether the loaded copper is small enough to stand for a real board.
bool PersonSized(const Board& b) {
  int items = 0;
  for (int layer = 0; layer < kCircuitLayers; ++layer) {
    for (const TPad* p = b.Pads[layer]; p; p = p->next, ++items)
      if (!Near(p->x) || !Near(p->y)) return false;
    for (const TTrack* t = b.Tracks[layer]; t; t = t->next, ++items)
      if (!Near(t->x1) || !Near(t->y1) || !Near(t->x2) || !Near(t->y2)) return false;
  }
  for (int layer = 0; layer < kCircuitLayers; ++layer)
    for (int a = 0; a < kApertures; ++a)
      if (!Near(b.PadSizeX[layer][a]) || !Near(b.PadSizeY[layer][a]) ||
          !Near(b.TrackWidth[layer][a]))
        return false;
  return items <= kMaxItems && Near(b.CardWidth) && Near(b.CardHeight);
}

const std::string& Folder() {
  static const std::string folder = [] {
    char pattern[] = "/tmp/isolith-fuzz-XXXXXX";
    const char* made = mkdtemp(pattern);
    return std::string(made ? made : "/tmp") + "/";
  }();
  return folder;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > kMaxBytes) return 0;
  const std::string layer = Folder() + "board.gbr", machine = Folder() + "board.iso";
  std::ofstream(layer, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  static std::FILE* quiet = std::fopen("/dev/null", "w");
  ConsolePlatform platform(quiet);
  Application app(platform);
  app.AutoMill = true;  // the dialogs stand as they are
  ReadToolsText(app.tools,
                "[Tool #1]\r\nNumber=1\r\nName=End mill\r\nDiameter=0.2\r\n"
                "Profile=Cylindrical\r\nRotationSpeed=20000\r\nAbsDrillSpeed=60\r\n");
  Settings& s = app.settings;
  s.MillingTool = s.HatchingTool = s.DrillingTool = s.CuttingTool = 0;
  s.MachineFormat = ReadOutputFormatValue("ISO");
  s.MachineSetSeq = false;

  ResetJob(app.board);
  ImportContext context = MakeImportContext(app);
  s.LayerImportFormat = kFormatGerber;
  if (OpenGerberFile(context, layer, 0) != LoadResult::Loaded || !PersonSized(app.board)) return 0;
  if (CalculateContoursOnAllLayers(app)) CalculateHatchesOnAllLayers(app);
  MillJob(app, machine);
  return 0;
}
