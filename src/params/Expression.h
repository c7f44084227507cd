// The evaluator behind every numeric field: a typed number may be an arithmetic expression with
// brackets, a few functions, PI and up to three one-letter variables.
//
// The grammar is the program's own and reads strictly from left to right: the right operand of
// "+" reaches to the end of the text, that of "-" to the next "+" or "-", that of "*" and "/" to
// the next operator. Products thus come first, and a sign right after "*" or "/" is not a sign:
// "2*-3" is 2 * (nothing) - 3 = -3. Users' habits depend on this, so it stays.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace isolith {

// A one-letter variable that an expression may use, e.g. {'X', 2.5}.
struct ExprVariable {
  char name = 0;  // a letter, compared without case
  double value = 0;
};

// The outcome of an evaluation. `errorPosition` is the 0-based index in the trimmed text where
// the error was seen, 0 on success; an error seen at index 0 therefore reads as a success with
// the value 0 (so "*3" gives 0 without a word), which is how the fields have always behaved.
struct ExprResult {
  float value = 0;
  int errorPosition = 0;
  std::string errorText;
};

struct IntExprResult {
  int value = 0;
  int errorPosition = 0;
  std::string errorText;
};

// Evaluates `text`. Blanks at both ends are ignored; "." and "," both stand for the decimal
// separator; `decimalSeparator` is the locale's. A blank text gives 0.
ExprResult EvaluateExpression(std::string_view text, char decimalSeparator,
                              std::span<const ExprVariable> variables = {});

// As EvaluateExpression, for whole numbers: a result with a fractional part (or beyond the range
// of an int) fails with "Invalid value.".
IntExprResult EvaluateInt(std::string_view text, char decimalSeparator);

// Text without the blanks at both ends.
std::string_view TrimBlanks(std::string_view text);

}  // namespace isolith
