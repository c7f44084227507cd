// Aperture macros: the primitives of a macro body worked out for the parameters of one aperture
// definition, with the body's variables and arithmetic, as plain figures in millimetres.
#pragma once

#include <string>
#include <vector>

#include "import/modern/Outlines.h"

namespace isolith {

// One primitive of a macro, placed and turned. A circle keeps its centre and diameter so that
// it can become a round pad; every primitive also has its outlines (even-odd).
struct MacroShape {
  bool on = true;  // exposure: off primitives clear what the ones before them drew
  bool circle = false;
  OutlinePoint centre;
  double diameter = 0;
  std::vector<Outline> outlines;
};

// The words of a macro body as the file gives them, one primitive or assignment to a word.
struct MacroDefinition {
  std::vector<std::string> words;
};

// The value of an arithmetic expression of a macro body ("$1x2+0.5", "-($2-$3)/2"), the
// variables taken from `vars` ($1 is vars[1]; a missing one reads 0). Anything that does not
// read gives 0.
double MacroExpression(const std::string& text, const std::vector<double>& vars);

// The shapes of `macro` for the parameters `params` ($1, $2, ... in order), lengths multiplied
// by `unit` (millimetres per file unit, with the aperture scale); curves within `tolerance`.
// Comments and unknown primitives give nothing.
std::vector<MacroShape> EvaluateMacro(const MacroDefinition& macro,
                                      const std::vector<double>& params, double unit,
                                      double tolerance);

}  // namespace isolith
