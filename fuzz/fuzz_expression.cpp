// The numeric entry's evaluator on any text, with both decimal separators and three variables.
#include <array>

#include "FuzzInput.h"
#include "params/Expression.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace isolith;
  const std::array<ExprVariable, 3> variables{{{'X', 2.5}, {'Y', -1e30}, {'Z', 0}}};
  const auto text = fuzz::Text(data, size);
  EvaluateExpression(text, '.', variables);
  EvaluateExpression(text, ',');
  EvaluateInt(text, '.');
  return 0;
}
