// The built-in format families, one class each. `MakeFormatWords` (BuiltinFormats.h) picks one
// by format code; they are declared here so that each can be tested on its own.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "output/formats/FormatWords.h"

namespace isolith {

// What every built-in family shares: the context, machine co-ordinates and the user files.
class BuiltinWords : public FormatWords {
 public:
  explicit BuiltinWords(FormatContext context);

 protected:
  const Board& board() const;
  // Machine values of board co-ordinates: (v - Zero) * Scale.
  static double MachineX(const TOutputState& s, float x) {
    return (double(x) - s.ZeroX) * s.ScaleX;
  }
  static double MachineY(const TOutputState& s, float y) {
    return (double(y) - s.ZeroY) * s.ScaleY;
  }
  static double MachineZ(const TOutputState& s, float z) {
    return (double(z) - s.ZeroZ) * s.ScaleZ;
  }
  // The user's replacement lines from the program folder, when the file holds any.
  std::optional<std::vector<std::string>> UserLines(std::string_view name) const;
  // The lines of a user file joined without line ends, for the formats that keep no breaks.
  std::optional<std::string> UserText(std::string_view name) const;

  FormatContext context_;
};

// Code 1: the Oxbel motion language.
class OxbelWords : public BuiltinWords {
 public:
  using BuiltinWords::BuiltinWords;
  void Header(TOutputState& s) override;
  void Footer(TOutputState& s) override;
  void ToolChange(TOutputState&, const ToolChangeWords&) override {}
  void ToolStop(TOutputState&) override {}
  void Speed(TOutputState& s, float v) override;
  void ZRapid(TOutputState& s, float z) override;
  void Rapid(TOutputState& s, float x, float y) override;
  void Plunge(TOutputState& s, float z) override;
  void Feed(TOutputState& s, float x, float y) override;
  void FullCircle(TOutputState& s, const ArcWords& arc) override;
};

// Code 2: HPGL plotter words, all on one line.
class HpglWords : public BuiltinWords {
 public:
  using BuiltinWords::BuiltinWords;
  void Header(TOutputState& s) override;
  void Footer(TOutputState& s) override;
  void ToolChange(TOutputState& s, const ToolChangeWords& change) override;
  void ToolStop(TOutputState& s) override;
  void Speed(TOutputState& s, float v) override;
  void ZRapid(TOutputState&, float) override {}
  void Rapid(TOutputState& s, float x, float y) override;
  void PenUp(TOutputState& s) override;
  void Plunge(TOutputState& s, float z) override;
  void Feed(TOutputState& s, float x, float y) override;
  void FullCircle(TOutputState& s, const ArcWords& arc) override;
  void Point(TOutputState& s) override;
};

// Code 4: DXF entities (LINE, CIRCLE, POINT) coloured by tool.
class DxfWords : public BuiltinWords {
 public:
  using BuiltinWords::BuiltinWords;
  void Header(TOutputState& s) override;
  void Footer(TOutputState& s) override;
  void ToolChange(TOutputState& s, const ToolChangeWords& change) override;
  void ToolStop(TOutputState&) override {}
  void ZRapid(TOutputState&, float) override {}
  void Rapid(TOutputState&, float, float) override {}
  void Plunge(TOutputState&, float) override {}
  void Feed(TOutputState& s, float x, float y) override;
  void FullCircle(TOutputState& s, const ArcWords& arc) override;
  void Point(TOutputState& s) override;
  // The colour of a pen or section slot.
  static int ColourOfSlot(int slot);
};

// Code 5: Isel remote NCP, numbered blocks.
class NcpWords : public BuiltinWords {
 public:
  using BuiltinWords::BuiltinWords;
  void Header(TOutputState& s) override;
  void Footer(TOutputState& s) override;
  void ToolChange(TOutputState& s, const ToolChangeWords& change) override;
  void ToolStop(TOutputState& s) override;
  bool SpeedOnMove() const override { return true; }
  void ZRapid(TOutputState& s, float z) override;
  void Rapid(TOutputState& s, float x, float y) override;
  void Plunge(TOutputState& s, float z) override;
  void Feed(TOutputState& s, float x, float y) override;
  void FullCircle(TOutputState& s, const ArcWords& arc) override;

 private:
  std::string Block(TOutputState& s) const;
};

// Codes 9 and 11: ISO G-code, with the arc centre relative to the start (9) or absolute (11).
class IsoWords : public BuiltinWords {
 public:
  IsoWords(FormatContext context, bool num);
  void Header(TOutputState& s) override;
  void Footer(TOutputState& s) override;
  void ToolChange(TOutputState& s, const ToolChangeWords& change) override;
  void ToolStop(TOutputState& s) override;
  bool SpeedOnMove() const override { return true; }
  void ZRapid(TOutputState& s, float z) override;
  void Rapid(TOutputState& s, float x, float y) override;
  void Plunge(TOutputState& s, float z) override;
  void Feed(TOutputState& s, float x, float y) override;
  void FullCircle(TOutputState& s, const ArcWords& arc) override;

 private:
  // " F" and the speed when it changed since it was last written.
  void AppendSpeed(TOutputState& s, std::string& line) const;
  bool num_;
};

// Codes 19 and 20: Roland CAMM-3 and EGX.
class RolandWords : public BuiltinWords {
 public:
  RolandWords(FormatContext context, bool egx);
  void Header(TOutputState& s) override;
  void Footer(TOutputState& s) override;
  void ToolChange(TOutputState& s, const ToolChangeWords& change) override;
  void ToolStop(TOutputState& s) override;
  void Speed(TOutputState& s, float v) override;
  void ZRapid(TOutputState& s, float z) override;
  void Rapid(TOutputState& s, float x, float y) override;
  void Plunge(TOutputState& s, float z) override;
  void Feed(TOutputState& s, float x, float y) override;
  void FullCircle(TOutputState& s, const ArcWords& arc) override;

 private:
  bool egx_;
};

// Code 21: Suregrave SML, all on one line, Y mirrored about the card's height.
class SmlWords : public BuiltinWords {
 public:
  using BuiltinWords::BuiltinWords;
  void Header(TOutputState& s) override;
  void Footer(TOutputState&) override {}
  void ToolChange(TOutputState& s, const ToolChangeWords& change) override;
  void ToolStop(TOutputState& s) override;
  void ZRapid(TOutputState&, float) override {}
  void Rapid(TOutputState& s, float x, float y) override;
  void PenUp(TOutputState& s) override;
  void Plunge(TOutputState&, float) override {}
  void Feed(TOutputState& s, float x, float y) override;
  void FullCircle(TOutputState& s, const ArcWords& arc) override;
  void Point(TOutputState& s) override;

 private:
  double MirroredY(const TOutputState& s, float y) const;
};

// Code 22: Colinbus CBR; circles only as polygons.
class CbrWords : public BuiltinWords {
 public:
  using BuiltinWords::BuiltinWords;
  void Header(TOutputState& s) override;
  void Footer(TOutputState& s) override;
  void ToolChange(TOutputState& s, const ToolChangeWords& change) override;
  void ToolStop(TOutputState& s) override;
  void Speed(TOutputState& s, float v) override;
  void ZRapid(TOutputState& s, float z) override;
  void Rapid(TOutputState& s, float x, float y) override;
  void Plunge(TOutputState& s, float z) override;
  void Feed(TOutputState& s, float x, float y) override;
  void FullCircle(TOutputState&, const ArcWords&) override {}
};

}  // namespace isolith
