#include "params/Expression.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <climits>
#include <cmath>
#include <random>

namespace isolith {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr float kExprPi = 3.14159274f;  // what "PI" gives: the nearest float
// Deeper nesting than this is refused rather than risking the stack on pasted text.
constexpr int kMaxDepth = 400;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
char Upper(char c) {
  return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c;
}
bool IsOperator(char c) {
  return c == '+' || c == '-' || c == '*' || c == '/';
}

// Sine and cosine of degrees, exact at the multiples of 90 so that TG(90) is an overflow and
// COS(90) is 0.
double DegreeSin(double degrees) {
  double r = std::fmod(degrees, 360.0);
  if (r < 0) r += 360.0;
  if (r == 0 || r == 180) return 0;
  if (r == 90) return 1;
  if (r == 270) return -1;
  return std::sin(degrees * kPi / 180.0);
}

double DegreeCos(double degrees) {
  return DegreeSin(degrees + 90.0);
}

class Evaluator {
 public:
  Evaluator(std::string text, char separator, std::span<const ExprVariable> variables)
      : s_(std::move(text)), separator_(separator), variables_(variables) {}

  // Evaluates the whole text; false on failure, with the place and words in errorPos/errorText.
  bool Run(double& out) {
    if (!CheckBrackets()) return false;
    return Eval(0, static_cast<int>(s_.size()), out, 0);
  }

  int errorPos = 0;
  std::string errorText;

 private:
  bool Fail(int pos, std::string text) {
    errorPos = pos;
    errorText = std::move(text);
    return false;
  }

  // The first pass: brackets are counted over the whole text.
  bool CheckBrackets() {
    int depth = 0;
    const int n = static_cast<int>(s_.size());
    for (int i = 0; i < n; ++i) {
      if (s_[i] == '(') {
        if (i > 0 && s_[i - 1] == ')') return Fail(i, "Missing operator.");
        ++depth;
      } else if (s_[i] == ')') {
        if (i > 0 && s_[i - 1] == '(') return Fail(i, "Undefined expression.");
        if (--depth < 0) return Fail(i, "Unexpected '')'' closing bracket.");
      }
    }
    if (depth > 0) return Fail(n, "Expected '')'' closing bracket.");
    return true;
  }

  // The index of the bracket that closes the one at `open`.
  int Matching(int open, int end) const {
    int depth = 0;
    for (int i = open; i < end; ++i) {
      if (s_[i] == '(') ++depth;
      if (s_[i] == ')' && --depth == 0) return i;
    }
    return end;  // not reached: the first pass found the brackets balanced
  }

  // Where the right operand of `op`, starting at `from`, ends.
  int OperandEnd(int from, int end, char op) const {
    if (op == '+') return end;
    int depth = 0;
    for (int i = from; i < end; ++i) {
      char c = s_[i];
      if (c == '(') ++depth;
      if (c == ')') --depth;
      if (depth != 0) continue;
      if (c == '+' || c == '-') return i;
      if ((op == '*' || op == '/') && (c == '*' || c == '/')) return i;
    }
    return end;
  }

  // A number, PI or a variable, in [begin, end).
  bool Term(int begin, int end, double& out) {
    char first = s_[begin];
    if (IsDigit(first) || first == separator_) {
      std::string number;
      bool seenSeparator = false;
      bool seenDigit = false;
      for (int i = begin; i < end; ++i) {
        char c = s_[i];
        if (IsDigit(c)) {
          number += c;
          seenDigit = true;
        } else if (c == separator_ && !seenSeparator) {
          number += '.';
          seenSeparator = true;
        } else {
          return Fail(i, "Syntax error.");
        }
      }
      if (!seenDigit) return Fail(begin, "Syntax error.");
      if (number.front() == '.') number.insert(number.begin(), '0');
      double value = 0;
      auto [ptr, ec] = std::from_chars(number.data(), number.data() + number.size(), value);
      if (ec == std::errc::result_out_of_range) {
        // Too small for a double reads as 0; too large is an overflow.
        if (number.find_first_not_of("0") < number.find('.')) return Fail(end, "Overflow");
        value = 0;
      }
      out = value;
      return true;
    }
    if (IsLetter(first)) {
      std::string name;
      for (int i = begin; i < end; ++i) name += Upper(s_[i]);
      if (name == "PI") {
        out = kExprPi;
        return true;
      }
      if (name.size() == 1) {
        for (const ExprVariable& v : variables_) {
          if (Upper(v.name) == name[0]) {
            out = static_cast<float>(v.value);
            return true;
          }
        }
      }
      return Fail(end, "Syntax error.");
    }
    return Fail(begin, "Syntax error.");
  }

  // One of the functions, named by [nameBegin, nameEnd), applied to `arg`; errors stand at `at`.
  bool Function(int nameBegin, int nameEnd, double arg, int at, double& out) {
    std::string name;
    for (int i = nameBegin; i < nameEnd; ++i) name += Upper(s_[i]);
    if (name == "ABS") {
      out = std::fabs(arg);
    } else if (name == "ATG") {
      out = std::atan(arg) * 180.0 / kPi;
    } else if (name == "ATGR") {
      out = std::atan(arg);
    } else if (name == "COS") {
      out = DegreeCos(arg);
    } else if (name == "SIN") {
      out = DegreeSin(arg);
    } else if (name == "TG" || name == "TGR") {
      double c = name == "TG" ? DegreeCos(arg) : std::cos(arg);
      if (c == 0) return Fail(at, "Overflow");
      out = (name == "TG" ? DegreeSin(arg) : std::sin(arg)) / c;
    } else if (name == "COSR") {
      out = std::cos(arg);
    } else if (name == "SINR") {
      out = std::sin(arg);
    } else if (name == "CUBE") {
      out = arg * arg * arg;
    } else if (name == "INT") {
      out = std::trunc(arg);
    } else if (name == "SQR") {
      out = arg * arg;
    } else if (name == "SQRT") {
      if (arg < 0) return Fail(at, "Negative square root.");
      out = std::sqrt(arg);
    } else if (name == "FRAC") {
      out = arg - std::trunc(arg);
    } else if (name == "RAND") {
      double limit = std::trunc(std::fmin(arg, 1000.0));
      out = 0;
      if (limit >= 1) {
        // A fresh generator on every call, seeded from the clock.
        std::mt19937 generator(
            static_cast<unsigned>(std::chrono::steady_clock::now().time_since_epoch().count()));
        std::uniform_int_distribution<int> pick(0, static_cast<int>(limit) - 1);
        out = pick(generator);
      }
    } else if (name == "EXP" || name == "HSIN" || name == "HCOS") {
      if (arg > 88) return Fail(at, "Overflow");
      out = name == "EXP" ? std::exp(arg) : name == "HSIN" ? std::sinh(arg) : std::cosh(arg);
    } else if (name == "LOG") {
      if (arg <= 0) return Fail(at, "Negative or null logarithm.");
      out = std::log10(arg);
    } else if (name == "LN") {
      // The natural logarithm is deliberately refused in every case, a positive argument
      // included: its value is worked out and then thrown away.
      if (arg > 0) out = std::log(arg);
      return Fail(at, "Negative or null logarithm.");
    } else {
      return Fail(at, name + "(...) :  Unknown function.");
    }
    return true;
  }

  bool Eval(int begin, int end, double& out, int depth) {
    if (depth > kMaxDepth) return Fail(begin, "Overflow");
    // The first term, up to the next operator or opening bracket.
    int p = begin;
    while (p < end && !IsOperator(s_[p]) && s_[p] != '(') ++p;
    double left = 0;
    int nameBegin = begin, nameEnd = p;  // a term right before "(" names a function
    if (p == begin) {
      if (p < end && s_[p] != '-' && s_[p] != '(') return Fail(p, "Syntax error.");
    } else if (p == end || s_[p] != '(') {
      if (!Term(begin, p, left)) return false;
    }
    while (p < end) {
      char op = s_[p];
      if (op == '(') {
        int close = Matching(p, end);
        double arg = 0;
        if (!Eval(p + 1, close, arg, depth + 1)) return false;
        if (nameEnd > nameBegin) {
          if (!Function(nameBegin, nameEnd, static_cast<float>(arg), p, left)) return false;
        } else {
          left = arg;
        }
        nameBegin = nameEnd = 0;
        p = close + 1;
        if (p < end && !IsOperator(s_[p])) return Fail(p, "Syntax error.");
        continue;
      }
      nameBegin = nameEnd = 0;
      int from = p + 1;
      int to = OperandEnd(from, end, op);
      double right = 0;
      if (!Eval(from, to, right, depth + 1)) return false;
      switch (op) {
        case '+':
          left += right;
          break;
        case '-':
          left -= right;
          break;
        case '*':
          left *= right;
          break;
        default:
          if (right == 0) return Fail(from, "Division by zero.");
          left /= right;
          break;
      }
      p = to;
    }
    out = left;
    return true;
  }

  std::string s_;
  char separator_;
  std::span<const ExprVariable> variables_;
};

}  // namespace

std::string_view TrimBlanks(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  size_t last = text.find_last_not_of(kBlanks);
  return text.substr(first, last - first + 1);
}

ExprResult EvaluateExpression(std::string_view text, char decimalSeparator,
                              std::span<const ExprVariable> variables) {
  std::string s(TrimBlanks(text));
  // Point and comma both stand for the machine's decimal separator.
  for (char& c : s) {
    if (decimalSeparator != '.' && c == '.') c = decimalSeparator;
    if (decimalSeparator == '.' && c == ',') c = '.';
  }
  ExprResult result;
  if (s.empty()) return result;
  // At most three variables take part.
  Evaluator evaluator(s, decimalSeparator, variables.first(std::min<size_t>(3, variables.size())));
  double value = 0;
  if (!evaluator.Run(value)) {
    // An error at the very first character cannot be told from a success.
    if (evaluator.errorPos != 0) {
      result.errorPosition = evaluator.errorPos;
      result.errorText = evaluator.errorText;
    }
    return result;
  }
  float stored = static_cast<float>(value);
  if (!std::isfinite(stored)) {
    result.errorPosition = static_cast<int>(s.size());
    result.errorText = "Overflow";
    return result;
  }
  result.value = stored;
  return result;
}

IntExprResult EvaluateInt(std::string_view text, char decimalSeparator) {
  ExprResult r = EvaluateExpression(text, decimalSeparator);
  IntExprResult result;
  if (r.errorPosition != 0) {
    result.errorPosition = r.errorPosition;
    result.errorText = r.errorText;
    return result;
  }
  double v = r.value;
  if (v != std::trunc(v) || v > INT_MAX || v < INT_MIN) {
    result.errorPosition = std::max(1, static_cast<int>(TrimBlanks(text).size()));
    result.errorText = "Invalid value.";
    return result;
  }
  result.value = static_cast<int>(v);
  return result;
}

}  // namespace isolith
