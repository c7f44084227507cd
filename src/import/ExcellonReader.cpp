#include "import/ExcellonReader.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "import/TextNumbers.h"

namespace isolith {

namespace {

constexpr int kLineBytes = 256;
constexpr float kDefaultHole = 0.8f;  // a tool the file gives no size for

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// The whole part of a number, kept within the range of an int.
int WholePart(double v) {
  if (!(v > -1e9 && v < 1e9)) return 0;
  return static_cast<int>(std::trunc(v));
}

class ExcellonReader {
 public:
  ExcellonReader(std::istream& file, const ExcellonFormat& f, Board& board)
      : board_(board),
        file_(*file.rdbuf()),
        format_(f.format),
        scale_(StoredValue(double(f.scaleIn) * 2.54)),
        drillScale_(f.drillScaleIn),
        relative_(f.relative),
        metric_(f.metric) {
    tail_ = LastOf(board_.ImportDrills);
  }

  int Run() {
    int holes = 0;
    while (!board_.StopImport && ReadLine()) {
      WholeLineWords();
      if (skipLine_) continue;
      if (Tokens()) {
        AddHole();
        ++holes;
      }
    }
    return holes;
  }

 private:
  // A line up to its line feed, without blanks, control bytes, bytes of the upper half and "+",
  // folded to upper case; bytes past the buffer are dropped. False at the end of the file: a
  // last line without its line feed is not read.
  bool ReadLine() {
    len_ = 0;
    for (;;) {
      int c = file_.sbumpc();
      if (c == std::char_traits<char>::eof()) return false;
      if (c == '\n') return true;
      auto u = static_cast<unsigned char>(c);
      if (u > 0x20 && u < 0x80 && u != '+' && len_ < kLineBytes) {
        if (u >= 'a' && u <= 'z') u = static_cast<unsigned char>(u - 'a' + 'A');
        line_[len_++] = static_cast<char>(u);
      }
    }
  }

  bool LineHas(const char* word) const {
    return std::string_view(line_, static_cast<size_t>(len_)).find(word) != std::string_view::npos;
  }

  // Header words that count wherever they stand in the line.
  void WholeLineWords() {
    skipLine_ = false;
    if (LineHas("REL")) relative_ = true;
    if (LineHas("ABS")) relative_ = false;
    if (!metric_ && LineHas("MET")) {
      metric_ = true;
      scale_ = StoredValue(scale_ * (1 / 2.54));
      skipLine_ = true;
    }
  }

  // The number that starts one past `pos_`; `pos_` ends on its last character. A co-ordinate of
  // the first kind of file is left-justified in six digits, and is scaled.
  float Number(bool coordinate, bool commaAsPoint) {
    std::string text;
    while (pos_ + 1 < len_) {
      char c = line_[pos_ + 1];
      if (c == ',' && commaAsPoint) c = '.';
      if (!IsDigit(c) && c != '.' && c != '-') break;
      text += c;
      ++pos_;
    }
    if (coordinate && format_ == kExcellonNoTrailingZeros) {
      text += "000000";
      text.resize(text[0] == '-' ? 7 : 6);
    }
    double number = ReadNumberText(text);
    return StoredValue(coordinate ? number * scale_ : number);
  }

  // The tokens of the line; true when it gave a position.
  bool Tokens() {
    bool toolWord = false, moved = false;
    for (pos_ = 0; pos_ < len_; ++pos_) {
      char c = line_[pos_];
      if (c == '$') break;
      if (c == '(') {
        while (pos_ < len_ && line_[pos_] != ')') ++pos_;
        continue;
      }
      char next = pos_ + 1 < len_ ? line_[pos_ + 1] : '\0';
      if (!IsDigit(next) && next != '.' && next != '-') continue;
      switch (c) {
        case 'M': {
          int m = WholePart(Number(false, false));
          if ((m == 70 || m == 72) && metric_) {
            metric_ = false;
            scale_ = StoredValue(scale_ * 2.54);
          } else if (m == 71 && !metric_) {
            metric_ = true;
            scale_ = StoredValue(scale_ * (1 / 2.54));
          }
          break;
        }
        case 'C': {
          float size = Number(false, true);
          // A size belongs to a tool only on the line that names the tool.
          if (toolWord && size > 0) {
            board_.ApertureFlags[tool_] = 4;
            board_.DrillDiameter[tool_] =
                StoredValue(double(size) * scale_ * 10 * double(drillScale_));
          }
          break;
        }
        case 'G': {
          int g = WholePart(Number(false, false));
          if (g == 90) relative_ = false;
          if (g == 91) relative_ = true;
          break;
        }
        case 'T': {
          float t = Number(false, false);
          if (t > 0) tool_ = static_cast<uint8_t>(WholePart(std::fmod(std::trunc(t), 100.0)));
          toolWord = true;
          break;
        }
        case 'X':
          x_ = StoredValue(Number(true, false) * 0.001);
          moved = true;
          break;
        case 'Y':
          y_ = StoredValue(Number(true, false) * 0.001);
          moved = true;
          break;
        default:
          break;
      }
    }
    return moved;
  }

  void AddHole() {
    if (relative_) {
      // Both axes take the previous position, also one the line did not give: increments
      // repeat and add up, as drill files of this kind expect.
      x_ = StoredValue(double(x_) + px_);
      y_ = StoredValue(double(y_) + py_);
    }
    px_ = x_;
    py_ = y_;
    AppendTo(board_.ImportDrills, tail_, new TDrill{tool_, 0, x_, y_, nullptr});
    if (board_.DrillDiameter[tool_] < 0.01) board_.DrillDiameter[tool_] = kDefaultHole;
  }

  Board& board_;
  std::streambuf& file_;
  char line_[kLineBytes];
  int len_ = 0, pos_ = 0;
  bool skipLine_ = false;
  uint8_t tool_ = 0;
  int format_;
  float scale_;
  float drillScale_;
  bool relative_, metric_;
  float x_ = 0, y_ = 0, px_ = 0, py_ = 0;
  TDrill* tail_ = nullptr;
};

}  // namespace

int ReadExcellon(std::istream& file, const ExcellonFormat& format, Board& board) {
  if (!file.rdbuf()) return 0;
  ExcellonReader reader(file, format, board);
  return reader.Run();
}

}  // namespace isolith
