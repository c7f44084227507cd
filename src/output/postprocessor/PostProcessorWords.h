// The words of the user's own format (code 33): the pen machine's hooks said through the
// templates of the post-processor, with its line numbers, line header and trailer bytes.
#pragma once

#include <string_view>

#include "core/board/Board.h"
#include "output/driver/OutputState.h"
#include "output/formats/FormatWords.h"
#include "output/postprocessor/PostProcessor.h"

namespace isolith {

// The line writer of the user's format. `text` is cut into lines at each two-backslash break;
// each line is written as: the line header bytes that are not 0; when `LineNumber` is not
// negative, `LineNb` with each run of n "0" replaced by the number padded with zeros to n
// digits, the number advancing by `IncNb` after each run and wrapping to `BeginNb` above `EndNb`;
// the line's text (at most 200 characters); the trailer bytes that are not 0. Everything goes
// out through the raw writer, so the default trailer CR LF reaches the file as CR CR LF. An
// empty `text` writes nothing.
void WriteBlock(TOutputState& state, const TPostProcessor& pp, std::string_view text);

// A speed in mm/s as the user's format writes it: turned by the speed unit of the settings
// (an index of kSpeed...), then times 60 and `ScaleV`.
double PostSpeed(double mmPerSecond, int speedUnit, const TPostProcessor& pp);

// One motion line to board position (x, y, z) through the template of the present mode
// (`MotionTemplate`): nothing when the position is the present one. The groups are worked
// against the old position, the speed and the motion types of the state; then the tags X, Y, Z
// (machine values, plus the offsets, or minus the raw old position with `RelCoords`), V, and the
// polar R and A about the machine origin.
void PostMove(TOutputState& state, const TPostProcessor& pp, int speedUnit, double x, double y,
              double z);

// The machine zero of the section walk as `OriginXY` and `OriginZ` choose it.
void PostProcessorZeroPoint(const TPostProcessor& pp, const Board& board, float& zeroX,
                            float& zeroY, float& zeroZ);

class PostProcessorWords : public FormatWords {
 public:
  // Keeps its own copy of the post-processor for the length of a walk; `speedUnit` is the
  // settings' speed unit, which the speeds of the templates follow.
  PostProcessorWords(const TPostProcessor& pp, int speedUnit);

  // "FileTop" numbered from 0, then the body numbered from `BeginNb`.
  void Header(TOutputState& state) override;
  // The parts of "FileBottom": a part that begins with "<N>" numbered, the others not.
  void Footer(TOutputState& state) override;
  // "ToolChg" with <T>, then "SpindleOn" with <T>, <RPM> and <RPS>.
  void ToolChange(TOutputState& state, const ToolChangeWords& change) override;
  // "SpindleOff" with <T>, its <RPM> and <RPS> as 0.
  void ToolStop(TOutputState& state) override;
  // "ClearV", its <V> being 60 times the speed through the speed rule.
  void Speed(TOutputState& state, float v) override;
  std::string MotionTemplate(int mode) const override;
  void ZRapid(TOutputState& state, float z) override;
  void Rapid(TOutputState& state, float x, float y) override;
  void Plunge(TOutputState& state, float z) override;
  void Feed(TOutputState& state, float x, float y) override;
  // Always "FeedArc2", whatever the turn, with every group kept that has an axis tag.
  void FullCircle(TOutputState& state, const ArcWords& arc) override;
  // The post-processor's own scales (X, Y, Z), its "Arcs" choice and its zero point.
  void AdjustSectionWalk(TOutputState& state, const Board& board) override;

  const TPostProcessor& postProcessor() const { return pp_; }

 private:
  TPostProcessor pp_;
  int speedUnit_;
};

}  // namespace isolith
