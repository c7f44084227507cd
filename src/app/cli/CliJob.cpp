#include "cli/CliJob.h"

#include "core/application/CommandLine.h"
#include "core/application/ImportSteps.h"
#include "core/board/BoardOps.h"
#include "import/OpenExcellon.h"
#include "import/OpenGerber.h"

namespace isolith {

namespace {

struct DialectName {
  const char* name;
  int format;
};

constexpr DialectName kDialects[] = {
    {"gerber", kFormatGerber},     {"ares", kFormatAres},     {"eagle", kFormatEagle},
    {"orcad", kFormatOrcad},       {"osmond", kFormatOsmond}, {"pads", kFormatPads},
    {"pcb-wizard", kFormatWizard}, {"protel", kFormatProtel}, {"wintypon", kFormatWinTypon},
};

// The first circuit layer that holds nothing, or the last one when all are taken, as
// "Additional layer" chooses it.
int FreeCircuitLayer(const Board& b) {
  for (int layer = 0; layer < kCircuitLayers; ++layer)
    if (!LayerHasContent(b, layer)) return layer;
  return kCircuitLayers - 1;
}

// The load flows open a file silently when it cannot be opened; a script needs to know.
void CannotOpen(Application& app, const std::string& path) {
  app.platform.ShowMessage("Error", "Unable to open file. ''" + path + "''", MessageIcon::Error);
}

}  // namespace

int DialectFormat(const std::string& name) {
  for (const DialectName& d : kDialects)
    if (name == d.name) return d.format;
  return 0;
}

const char* DialectNames() {
  return "gerber, ares, eagle, orcad, osmond, pads, pcb-wizard, protel, wintypon";
}

bool ParseJobWord(const std::vector<std::string>& args, size_t& i, JobArguments& job,
                  bool allowToolpaths, std::string& error) {
  const std::string& word = args[i];
  auto value = [&](std::string& into) {
    if (i + 1 >= args.size()) {
      error = word + " needs a value";
      return false;
    }
    into = args[++i];
    return true;
  };
  if (word == "--dialect") {
    if (!value(job.dialect)) return false;
    if (DialectFormat(job.dialect) == 0) {
      error = "unknown dialect '" + job.dialect + "' (one of " + DialectNames() + ")";
      return false;
    }
    return true;
  }
  if (word == "--drills") {
    if (!value(job.drillFile)) return false;
    return true;
  }
  if (allowToolpaths && word == "--contours") return job.contours = true;
  if (allowToolpaths && word == "--hatches") return job.hatches = job.contours = true;
  if (!word.empty() && word[0] == '-') {
    error = "unexpected option '" + word + "'";
    return false;
  }
  job.layerFiles.push_back(word);
  return true;
}

bool LoadJob(Application& app, const JobArguments& job, std::vector<LoadedFile>& loaded) {
  Board& b = app.board;
  ImportContext context = MakeImportContext(app);
  for (size_t n = 0; n < job.layerFiles.size(); ++n) {
    const std::string& path = job.layerFiles[n];
    int format = DialectFormat(job.dialect);
    if (format == 0) format = FormatOfCommandLineFile(path, app.settings);
    app.settings.LayerImportFormat = format != 0 ? format : kFormatGerber;
    const int layer = n == 0 ? 0 : FreeCircuitLayer(b);
    if (n == 0) ResetJob(b);
    const int cutoutsBefore = CountOf(b.Cutouts);
    ResetHover(app);
    const LoadResult result = OpenGerberFile(context, path, layer);
    if (result != LoadResult::Loaded) {
      if (result == LoadResult::NotOpened) CannotOpen(app, path);
      loaded.push_back({path, -1, false});
      return false;
    }
    RequestRepaint(app, RepaintLevel::Full);
    loaded.push_back({path, layer, CountOf(b.Cutouts) > cutoutsBefore});
  }
  if (!job.drillFile.empty()) {
    ResetHover(app);
    const ExcellonResult result = OpenExcellonFile(context, app.excellonChoices, job.drillFile);
    if (result != ExcellonResult::Accepted) {
      if (result == ExcellonResult::NotOpened) CannotOpen(app, job.drillFile);
      loaded.push_back({job.drillFile, -1, false});
      return false;
    }
    RequestRepaint(app, RepaintLevel::Full);
    loaded.push_back({job.drillFile, kDrillLayer, false});
  }
  return true;
}

}  // namespace isolith
