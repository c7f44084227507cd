#include "cli/CliJob.h"

#include <fstream>
#include <initializer_list>

#include "commands/CommandLine.h"
#include "commands/ImportSteps.h"
#include "core/board/BoardOps.h"
#include "import/ExcellonHeader.h"
#include "import/ExcellonReader.h"
#include "import/OpenExcellon.h"
#include "import/OpenGerber.h"
#include "params/SettingsFormats.h"

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

// The value of a drill answer word: its index in `words`, -1 when it is none of them.
int AnswerIndex(const std::string& value, std::initializer_list<const char*> words) {
  int index = 0;
  for (const char* w : words) {
    if (value == w) return index;
    ++index;
  }
  return -1;
}

bool ParseDrillAnswer(const std::string& word, const std::string& value, DrillAnswers& answers,
                      std::string& error) {
  using From = DrillAnswers::From;
  auto wrong = [&](const char* choices) {
    error = word + " takes " + choices + ", not '" + value + "'";
    return false;
  };
  if (word == "--drill-zeros") {
    const int i = AnswerIndex(value, {"leading", "trailing", "auto"});
    if (i < 0) return wrong("leading, trailing or auto");
    answers.zerosFrom = i == 2 ? From::Header : From::Given;
    answers.zeros = i == 1 ? kExcellonBasicCoordinates : kExcellonNoTrailingZeros;
    return true;
  }
  if (word == "--drill-units") {
    const int i = AnswerIndex(value, {"inch", "metric", "auto"});
    if (i < 0) return wrong("inch, metric or auto");
    answers.unitsFrom = i == 2 ? From::Header : From::Given;
    answers.metric = i == 1;
    return true;
  }
  const int i = AnswerIndex(value, {"absolute", "incremental"});
  if (i < 0) return wrong("absolute or incremental");
  answers.relative = i == 1;
  return true;
}

// One more setting for this run only, kept off the settings file as a --set is: the overrides
// are applied again, with this one added, over the values the file gave.
void OverrideForRun(Application& app, const char* key, const std::string& value) {
  Settings fileValues = app.overrides.ForFile(app.settings);
  std::string error;
  if (!app.overrides.Add(key, value, error)) return;
  app.overrides.Apply(fileValues);
  app.settings = fileValues;
}

// Gives the person's answers before the drill file is read. The zero answer is what the open
// dialog's row sets (the load takes it afresh from DrillImportFormat); units and co-ordinates
// are the dialog's own choices, which start from the stored defaults as the load would take
// them. An "auto" answer whose header says nothing leaves the program's own.
void GiveDrillAnswers(Application& app, const JobArguments& job) {
  using From = DrillAnswers::From;
  const DrillAnswers& given = job.drillAnswers;
  ExcellonHeader header;
  if (given.zerosFrom == From::Header || given.unitsFrom == From::Header) {
    std::ifstream file(job.drillFile, std::ios::binary);
    if (file) header = ReadExcellonHeader(file);
  }

  std::optional<int> zeros;
  if (given.zerosFrom == From::Given) zeros = given.zeros;
  if (given.zerosFrom == From::Header) zeros = ZeroSuppressionAnswer(header);
  if (zeros && *zeros != app.settings.DrillImportFormat)
    OverrideForRun(app, "DrillImportFormat", ImportFormatName(*zeros, kFormatExcellon1));

  std::optional<bool> metric;
  if (given.unitsFrom == From::Given) metric = given.metric;
  if (given.unitsFrom == From::Header) metric = MetricAnswer(header);
  if (!metric && !given.relative) return;
  ExcellonChoices& choices = app.excellonChoices;
  if (!choices.ready) {
    choices.ready = true;
    choices.relative = app.settings.ExlRelative;
    choices.metric = app.settings.ExlMetric;
    choices.digitSet = app.settings.ExlDigitSet;
    choices.digits = app.settings.ExlDigits;
  }
  if (metric) choices.metric = *metric;
  if (given.relative) choices.relative = *given.relative;
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
  if (word == "--drill-zeros" || word == "--drill-units" || word == "--drill-coordinates") {
    std::string answer;
    if (!value(answer)) return false;
    return ParseDrillAnswer(word, answer, job.drillAnswers, error);
  }
  if (word == "--modern") return job.modern = true;
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
  if (job.modern) OverrideForRun(app, "ModernImport", "Yes");
  // Before anything is read, so that the run's overrides are still those of its start.
  if (!job.drillFile.empty()) GiveDrillAnswers(app, job);
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
