// The output dialogs and commands: "Save...", the export flow with its dialogs and flip, the
// failure message, the "Final output" rows, and the one call of the Mill command.
#include <gtest/gtest.h>

#include <vector>

#include "OutputWorld.h"
#include "WalkTestSupport.h"
#include "output/ExportCommands.h"
#include "output/ExportDialogs.h"
#include "output/driver/SectionWalk.h"
#include "params/ToolForms.h"

namespace isolith::test {
namespace {

std::vector<float> AllCoordinates(const Board& b) {
  std::vector<float> values;
  for (int l = 0; l < kCircuitLayers; ++l) {
    for (const TPad* p = b.Pads[l]; p; p = p->next) values.insert(values.end(), {p->x, p->y});
    for (const TTrack* t = b.Tracks[l]; t; t = t->next)
      values.insert(values.end(), {t->x1, t->y1, t->x2, t->y2});
    for (const TPolygon* list : {b.Contours[l], b.Hatches[l]})
      for (; list; list = list->next)
        for (const TXY* v = list->first; v; v = v->next) values.insert(values.end(), {v->x, v->y});
  }
  for (const TDrill* d = b.Drills; d; d = d->next) values.insert(values.end(), {d->x, d->y});
  for (const TCutout* c = b.Cutouts; c; c = c->next)
    for (const TPolygon* list : {c->outline, c->paths})
      for (; list; list = list->next)
        for (const TXY* v = list->first; v; v = v->next) values.insert(values.end(), {v->x, v->y});
  values.insert(values.end(), {b.OriginX, b.OriginY});
  return values;
}

TEST(ExportFile, DialogsThenTheWalkAndAFlipThatLeavesTheBoardExactlyAsItWas) {
  OutputWorld w;
  AddPath(w.board.Contours[0], {{12.3f, 10.7f}, {20.1f, 10.7f}, {15.9f, 20.3f}, {12.3f, 10.7f}});
  // A hatch that the walk turns for good: the flip puts it back as it was.
  w.settings.HatchingTool = 0;
  AddPath(w.board.Hatches[0], {{12.3f, 11.1f}, {19.7f, 11.1f}});
  AddPath(w.board.Hatches[0], {{19.9f, 11.5f}, {12.1f, 11.5f}});
  w.settings.DrillingMode = 1;
  w.settings.DrillingTool = 0;
  w.board.DrillDiameter[0] = 0.2f;
  w.drills.rows[0] = {0.2f, 0};
  AddDrill(w.board, 33.3f, 44.4f, 0);
  w.board.OriginX = 0.7f;
  w.board.OriginY = 0.9f;
  w.choices.flipHorizontally = true;
  const std::vector<float> before = AllCoordinates(w.board);

  const std::string path = w.Path("flip.iso");
  ASSERT_TRUE(ExportFile(w.context, path, 9, false));
  EXPECT_EQ(w.platform.dialogsRun, (std::vector<std::string>{"TDialogExport", "TDialogExpMill"}));
  EXPECT_EQ(AllCoordinates(w.board), before);
  // Mirrored about the card's width, measured from the origin, which is mirrored too.
  const std::string text = ReadFile(path);
  EXPECT_NE(text.find("G00 X-11.6 Y9.8"), std::string::npos) << text;
  EXPECT_NE(text.find("G00 X-32.6 Y43.5"), std::string::npos);
}

TEST(ExportFile, FailureIsReportedWithThePath) {
  OutputWorld w;
  w.AddTriangle();
  EXPECT_FALSE(ExportFile(w.context, "/dev/full/job.iso", 9, false));
  ASSERT_EQ(w.platform.messages.size(), 1u);
  EXPECT_EQ(w.platform.messages[0].title, "Error");
  EXPECT_EQ(w.platform.messages[0].text, "Unable to export file. ''/dev/full/job.iso''");
}

TEST(ExportFile, CancelledDialogWritesNothing) {
  OutputWorld w;
  w.AddTriangle();
  w.platform.dialogs["TDialogExpMill"] = [](DialogForm&) { return false; };
  EXPECT_FALSE(ExportFile(w.context, w.Path("x.iso"), 9, false));
  EXPECT_TRUE(std::filesystem::is_empty(w.folder));
  EXPECT_TRUE(w.platform.messages.empty());
}

TEST(ExportDialogs, ExportChecksTheScaleAndStoresThePerFormatValues) {
  OutputWorld w;
  TDialogExport form(w.settings, w.choices, 11, "job.num", '.');
  EXPECT_TRUE(form.clearanceEnabled);
  EXPECT_FALSE(TDialogExport(w.settings, w.choices, 2, "job.plt", '.').clearanceEnabled);
  form.scale = "2000";
  EXPECT_FALSE(form.Accept(w.platform));
  EXPECT_EQ(form.focus, TDialogExport::kScale);
  EXPECT_EQ(w.platform.messages.size(), 1u);
  form.scale = "2*1.5";
  form.clearHeight = "7";
  form.flipZ = true;
  form.speeds = false;
  ASSERT_TRUE(form.Accept(w.platform));
  EXPECT_FLOAT_EQ(w.settings.NumScaleOut, 3);
  EXPECT_FLOAT_EQ(w.settings.IsoScaleOut, 1);
  EXPECT_FLOAT_EQ(w.settings.ExportClearHeight, 7);
  EXPECT_TRUE(w.settings.NumFlipZOut);
  EXPECT_FALSE(w.settings.ExportSpeeds);
}

TEST(ExportDialogs, FileExportOffersWhatExists) {
  OutputWorld w;
  AddDrill(w.board, 1, 1, 0);
  w.settings.SingleSequence = 2;
  TDialogExpMill drillsOnly(w.board, w.settings, w.choices);
  EXPECT_EQ(drillsOnly.offered, std::vector<int>{1});
  EXPECT_EQ(w.settings.SingleSequence, 0);  // "Mill then drill" cannot be chosen here
  EXPECT_FALSE(drillsOnly.cutoutEnabled);
  ASSERT_TRUE(drillsOnly.Accept(w.platform));
  EXPECT_EQ(w.settings.SingleSequence, 1);

  w.AddTriangle();
  w.board.Cutouts = new TCutout;
  w.settings.SingleSequence = 3;
  TDialogExpMill both(w.board, w.settings, w.choices);
  EXPECT_EQ(both.offered, (std::vector<int>{0, 1, 2, 3}));
  EXPECT_EQ(both.sequence, 3);
  EXPECT_TRUE(both.cardContour);
  both.cardContour = false;
  both.flipHorizontally = true;
  ASSERT_TRUE(both.Accept(w.platform));
  EXPECT_FALSE(w.choices.cardContour);
  EXPECT_TRUE(w.choices.flipHorizontally);
}

TEST(ExportDialogs, FinalOutputRowsAndTheirRefusal) {
  OutputWorld w;
  w.AddTriangle();
  AddPad(w.board);
  AddPath(w.board.Hatches[2], {{1, 1}, {2, 1}});
  w.board.DrillDiameter[1] = 0.8f;
  AddDrill(w.board, 5, 5, 1);
  w.drills.rows[0] = {0.8f, 1};
  w.drills.rows[1] = {1.2f, 2};
  ResetTool(w.tools[1]);
  w.tools[1].Diameter = 0.8f;
  ResetTool(w.tools[2]);
  w.tools[2].Diameter = 1.125f;
  w.settings.DrillingMode = 2;
  w.board.Cutouts = new TCutout;
  w.settings.MultiSequence = {10, 0, 2, 18, 0, 0, 0, 0};
  w.settings.MultiMirror = {1, 0, 0, 0, 0, 0, 0, 0};

  TDialogMillLayers form(w.context);
  EXPECT_EQ(form.title, "Final output");
  EXPECT_EQ(form.rows[0].label, "Section #1");
  std::vector<std::string> labels;
  for (const TSectionChoice& c : form.rows[0].choices) labels.push_back(c.label);
  EXPECT_EQ(labels, (std::vector<std::string>{
                        "Drilling (Tool #2 \xC3\xB8 0.8", "Drilling (Tool #3 \xC3\xB8 1.125",
                        "Engraving layer #1", "Hatching layer #3", "Cutting out"}));
  // The tool set was rebuilt: the back of the board follows the front, mirrored the other way.
  EXPECT_EQ(form.rows[1].code, 11);
  EXPECT_TRUE(form.rows[1].ticked);
  EXPECT_FALSE(form.rows[1].mirror);
  EXPECT_TRUE(form.rows[3].mirror);

  form.rows[5].ticked = true;
  form.rows[5].code = 2;
  EXPECT_FALSE(form.Accept(w.platform));
  EXPECT_EQ(form.focusRow, 5);
  EXPECT_EQ(w.platform.beeps, 1);
  form.rows[5].ticked = false;
  form.rows[2].ticked = false;
  ASSERT_TRUE(form.Accept(w.platform));
  EXPECT_EQ(w.settings.MultiSequence, (std::array<int32_t, 8>{10, 11, 0, 18, 0, 0, 0, 0}));
  EXPECT_EQ(w.settings.MultiMirror, (std::array<int32_t, 8>{1, 0, 0, 1, 0, 0, 0, 0}));

  // With nothing on layer 0 no row is mirrored.
  OutputWorld empty;
  empty.settings.MultiMirror.fill(1);
  TDialogMillLayers cleared(empty.context);
  for (const auto& row : cleared.rows) EXPECT_FALSE(row.mirror);

  // The stored sections with one drilling tool: each drilling section drills every hole again,
  // and a section with nothing to write says so, rather than showing an empty choice.
  OutputWorld one;
  AddDrill(one.board, 5, 5, 1);
  one.settings.DrillingMode = 0;
  one.settings.MultiSequence = {1, 2, 3, 4, 5, 10, 14, 18};
  TDialogMillLayers single(one.context);
  const char* shown[] = {"(nothing to output)",
                         "Drilling (single tool)",
                         "Drilling (single tool), all holes again",
                         "Drilling (single tool), all holes again",
                         "Drilling (single tool), all holes again",
                         "(nothing to output)",
                         "(nothing to output)",
                         "(nothing to output)"};
  for (int i = 0; i < kSequenceSlots; ++i) {
    std::string label;
    for (const TSectionChoice& c : single.rows[i].choices)
      if (c.code == single.rows[i].code) label = c.label;
    EXPECT_EQ(label, shown[i]) << "row " << i;
  }
}

TEST(CmdSave, FiltersFormatMemoryAndTheWrittenFile) {
  OutputWorld w;
  w.AddTriangle();
  w.settings.ExportFormat = 11;
  w.settings.IsoExtension = "nc";
  const std::string path = w.Path("board.TAP");
  // Excellon and Gerber are offered only by a program that has their writers.
  EXPECT_EQ(SaveFormats(w.context).size(), 9u);
  w.context.writeExcellon = [](const std::string&) { return true; };
  w.context.writeGerber = [](const std::string&) { return true; };
  w.platform.files.push_back(path);
  CmdSave(w.context);
  ASSERT_EQ(w.platform.fileRequests.size(), 1u);
  const FileRequest& request = w.platform.fileRequests[0];
  ASSERT_EQ(request.filters.size(), 11u);
  EXPECT_EQ(request.filters[0].description,
            "HPGL-Plotter 2D/2\xC2\xBD"
            "D  (*.PLT / *.HPG)");
  EXPECT_EQ(request.filters[0].patterns, "*.plt;*.hpg");
  EXPECT_EQ(request.filters[4].description,
            "ISO G-Code for NUM CNC-Mill (I/J absolute)  (*.ISO / *.NC)");
  EXPECT_EQ(request.filters[10].description, "Gerber Scientific Intruments Flasher  (*.GRB)");
  EXPECT_EQ(request.filterIndex, 5);
  EXPECT_EQ(request.folder, w.context.programFolder);
  // The typed extension is kept for NUM in its own key; ISO's stays.
  EXPECT_EQ(w.settings.NumExtension, "tap");
  EXPECT_EQ(w.settings.IsoExtension, "nc");
  EXPECT_EQ(w.settings.ExportPath, w.folder.string() + "/");
  EXPECT_NE(ReadFile(path).find("NUM-Mill Output"), std::string::npos);

  OutputWorld nothing;
  CmdSave(nothing.context);
  EXPECT_EQ(nothing.platform.beeps, 1);
  EXPECT_TRUE(nothing.platform.fileRequests.empty());
}

TEST(CmdSave, AMissingToolOpensTheToolDialogFirst) {
  OutputWorld w;
  w.AddTriangle();
  w.settings.MillingTool = -1;
  w.platform.dialogs["TDialogDrill"] = [](DialogForm& form) {
    static_cast<TDialogDrill&>(form).millingTool = -1;
    return false;
  };
  CmdSave(w.context);
  EXPECT_EQ(w.platform.dialogsRun, std::vector<std::string>{"TDialogDrill"});
  EXPECT_TRUE(w.platform.fileRequests.empty());
}

TEST(WriteMachineJob, SectionWalkOrLayerWalkBySetting) {
  OutputWorld w;
  w.AddTriangle();
  w.settings.MachineFormat = 9;
  w.settings.MultiSequence = {10, 0, 0, 0, 0, 0, 0, 0};
  const std::string path = w.Path("machine.iso");
  ASSERT_TRUE(WriteMachineJob(w.context, path));
  EXPECT_EQ(w.platform.dialogsRun, std::vector<std::string>{"TDialogMillLayers"});
  EXPECT_EQ(IsoMoves(ReadFile(path)).front(), "G00 X10 Y10");

  w.settings.MachineSetSeq = false;
  w.platform.dialogsRun.clear();
  ASSERT_TRUE(WriteMachineJob(w.context, path));
  EXPECT_EQ(w.platform.dialogsRun, (std::vector<std::string>{"TDialogExport", "TDialogExpMill"}));

  EXPECT_FALSE(WriteMachineJob(w.context, "/dev/full/machine.iso"));
  EXPECT_EQ(w.platform.LastMessage(), "Unable to export file. ''/dev/full/machine.iso''");

  OutputWorld nothing;
  EXPECT_FALSE(WriteMachineJob(nothing.context, nothing.Path("x.iso")));
  EXPECT_EQ(nothing.platform.beeps, 1);
}

}  // namespace
}  // namespace isolith::test
