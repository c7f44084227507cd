#include "import/WinTyponReader.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <vector>

#include "core/board/BoardOps.h"
#include "import/TextNumbers.h"

namespace isolith {

namespace {

constexpr int kLineBytes = 256;
constexpr char kSectionMark = '\xA4';  // "¤" in the file's Western code page
constexpr char kFieldMark = '\xB7';    // "·"
constexpr std::string_view kPadSection = "\xA4#PASTILLE\xA4";
constexpr std::string_view kTrackSection = "\xA4#SEGMENT\xA4";
constexpr int kNumberChars = 15;

enum class Section { None, Pads, Tracks };

// One record: its fields by number, counting from 1.
class Record {
 public:
  explicit Record(std::string_view line) {
    size_t start = 0;
    for (;;) {
      size_t end = line.find(kFieldMark, start);
      fields_.push_back(line.substr(start, end == std::string_view::npos ? end : end - start));
      if (end == std::string_view::npos) break;
      start = end + 1;
    }
  }

  bool Has(int n) const { return n >= 1 && n <= static_cast<int>(fields_.size()); }

  // The field read as a number as far as it is digits, points and minus signs.
  double Number(int n) const {
    if (!Has(n)) return 0;
    std::string_view f = fields_[n - 1];
    size_t k = 0;
    while (k < f.size() && k < kNumberChars &&
           ((f[k] >= '0' && f[k] <= '9') || f[k] == '.' || f[k] == '-'))
      ++k;
    return ReadNumberText(f.substr(0, k));
  }

 private:
  std::vector<std::string_view> fields_;
};

bool Near(double a, float b, double tolerance) {
  return std::fabs(a - b) < tolerance;
}

class WinTyponReader {
 public:
  WinTyponReader(std::istream& file, float scaleIn, Board& board)
      : b_(board), file_(*file.rdbuf()), scale_(scaleIn) {}

  void Run() {
    bool more = true;
    while (more && !b_.StopImport) {
      more = ReadLine();
      std::string_view line(line_, static_cast<size_t>(len_));
      if (line.empty()) continue;
      if (line[0] == kSectionMark) {
        section_ = line == kPadSection     ? Section::Pads
                   : line == kTrackSection ? Section::Tracks
                                           : Section::None;
      } else if (section_ == Section::Pads) {
        Pad(Record(line));
      } else if (section_ == Section::Tracks) {
        Track(Record(line));
      }
    }
    Finish();
  }

 private:
  // A line up to its line feed: bytes above space or of the upper half, but not "+", folded to
  // upper case; bytes past the buffer are dropped. False at the end of the file, the last line
  // being read all the same.
  bool ReadLine() {
    len_ = 0;
    for (;;) {
      int c = file_.sbumpc();
      if (c == std::char_traits<char>::eof()) return false;
      if (c == '\n') return true;
      auto u = static_cast<unsigned char>(c);
      if ((u > 0x20 || (u & 0x80)) && u != '+' && len_ < kLineBytes) {
        if (u >= 'a' && u <= 'z') u = static_cast<unsigned char>(u - 'a' + 'A');
        line_[len_++] = static_cast<char>(u);
      }
    }
  }

  float Length(const Record& r, int n) const { return StoredValue(r.Number(n) * 0.01 * scale_); }

  void Pad(const Record& r) {
    if (!r.Has(1) || !r.Has(2) || !r.Has(10) || !r.Has(11)) return;
    if (!padTablesCleared_) {
      padTablesCleared_ = true;
      for (int l = 0; l < kCircuitLayers; ++l)
        for (int i = 0; i < kApertures; ++i) {
          b_.PadShape[l][i] = 0;
          b_.PadSizeX[l][i] = 0;
          b_.PadSizeY[l][i] = 0;
        }
      for (float& d : b_.DrillDiameter) d = 0;
    }
    float x = Length(r, 1), y = Length(r, 2);
    float sx = Length(r, 10), sy = Length(r, 11);
    double code = r.Number(12);
    int shapeCode = code >= 0 && code < 100 ? static_cast<int>(code) : -1;
    uint8_t shape = kShapeRectangle;
    if (shapeCode == 0 || shapeCode == 4 || shapeCode == 5) shape = kShapeCircle;
    if (shapeCode == 2) shape = kShapeObround;
    if (shapeCode == 6) shape = kShapeOctagon;
    if (shapeCode == 0 || shapeCode == 3 || shapeCode == 5 || shapeCode == 6)
      sx = sy = std::max(sx, sy);
    float hole = std::max(Length(r, 16), Length(r, 17));

    int code0 = PadAperture(shape, sx, sy, hole);
    auto aperture = static_cast<uint8_t>(code0);
    AppendTo(pads_[0], padTail_[0], new TPad{aperture, 0, x, y, nullptr});
    if (b_.DrillDiameter[aperture] != 0)
      AppendTo(b_.ImportDrills, drillTail_, new TDrill{aperture, 0, x, y, nullptr});
  }

  // The entry of layer 0 that the pad takes: an equal one as it stands, else a free one, else
  // the closest of the ways below, which is then overwritten with this pad's aperture.
  int PadAperture(uint8_t shape, float sx, float sy, float hole) {
    auto sameSizes = [&](int i, double tolerance) {
      return Near(sx, b_.PadSizeX[0][i], tolerance) && Near(sy, b_.PadSizeY[0][i], tolerance);
    };
    for (int i = 0; i < kApertures; ++i)
      if (b_.PadShape[0][i] == shape && sameSizes(i, 0.1) && Near(hole, b_.DrillDiameter[i], 0.1))
        return i;
    int entry = -1;
    for (int i = 0; i < kApertures && entry < 0; ++i)
      if (b_.PadSizeX[0][i] == 0) entry = i;
    const struct {
      bool sameShape;
      double tolerance;
    } passes[] = {{true, 0.1}, {true, 1.0}, {false, 0.1}, {false, 1.0}};
    for (const auto& pass : passes)
      for (int i = 0; i < kApertures && entry < 0; ++i)
        if ((!pass.sameShape || b_.PadShape[0][i] == shape) && sameSizes(i, pass.tolerance))
          entry = i;
    if (entry < 0) entry = kApertures - 1;
    b_.PadShape[0][entry] = shape;
    b_.PadSizeX[0][entry] = sx;
    b_.PadSizeY[0][entry] = sy;
    b_.DrillDiameter[entry] = hole;
    b_.ApertureFlags[entry] = 7;
    return entry;
  }

  void Track(const Record& r) {
    for (int n : {1, 2, 3, 4, 8})
      if (!r.Has(n)) return;
    if (!trackTablesCleared_) {
      trackTablesCleared_ = true;
      for (int l = 0; l < kCircuitLayers; ++l)
        for (float& w : b_.TrackWidth[l]) w = 0;
    }
    float width = Length(r, 8);
    int entry = -1;
    for (int i = 0; i < kApertures && entry < 0; ++i)
      if (Near(width, b_.TrackWidth[0][i], 0.1)) entry = i;
    if (entry < 0) {
      for (int i = 0; i < kApertures && entry < 0; ++i)
        if (b_.TrackWidth[0][i] == 0) entry = i;
      for (int i = 0; i < kApertures && entry < 0; ++i)
        if (Near(width, b_.TrackWidth[0][i], 0.5)) entry = i;
      if (entry < 0) entry = kApertures - 1;
      b_.TrackWidth[0][entry] = width;
      b_.ApertureFlags[entry] = 7;
    }
    int side = r.Number(7) > 0 ? 1 : 0;
    AppendTo(tracks_[side], trackTail_[side],
             new TTrack{static_cast<uint8_t>(entry), 0, Length(r, 1), Length(r, 2), Length(r, 3),
                        Length(r, 4), nullptr});
  }

  void Finish() {
    for (int i = 0; i < kApertures; ++i) {
      b_.PadShape[1][i] = b_.PadShape[0][i];
      b_.PadSizeX[1][i] = b_.PadSizeX[0][i];
      b_.PadSizeY[1][i] = b_.PadSizeY[0][i];
      b_.TrackWidth[1][i] = b_.TrackWidth[0][i];
    }
    if (tracks_[1]) {
      if (!tracks_[0]) {
        // All the copper is on one side: a one-sided board.
        tracks_[0] = tracks_[1];
        tracks_[1] = nullptr;
      } else {
        // Pads go through both sides.
        for (const TPad* p = pads_[0]; p; p = p->next)
          AppendTo(pads_[1], padTail_[1], new TPad{p->code, p->flags, p->x, p->y, nullptr});
      }
    }
    b_.HoverPad = pads_[1];
    b_.HoverTrack = tracks_[1];
    TPad* padTail = LastOf(b_.ImportPads);
    for (TPad* list : pads_)
      if (list) {
        AppendTo(b_.ImportPads, padTail, list);
        padTail = LastOf(list);
      }
    TTrack* trackTail = LastOf(b_.ImportTracks);
    for (TTrack* list : tracks_)
      if (list) {
        AppendTo(b_.ImportTracks, trackTail, list);
        trackTail = LastOf(list);
      }
  }

  Board& b_;
  std::streambuf& file_;
  float scale_;
  char line_[kLineBytes];
  int len_ = 0;
  Section section_ = Section::None;
  bool padTablesCleared_ = false, trackTablesCleared_ = false;
  TPad* pads_[2] = {nullptr, nullptr};
  TPad* padTail_[2] = {nullptr, nullptr};
  TTrack* tracks_[2] = {nullptr, nullptr};
  TTrack* trackTail_[2] = {nullptr, nullptr};
  TDrill* drillTail_ = nullptr;
};

// Cuts `head` at `seam`: the part from the seam on is returned, null when the seam is not in the
// list.
template <typename R>
R* CutAt(R*& head, R* seam) {
  if (!seam) return nullptr;
  for (R** link = &head; *link; link = &(*link)->next)
    if (*link == seam) {
      *link = nullptr;
      return seam;
    }
  return nullptr;
}

}  // namespace

void ReadWinTypon(std::istream& file, float scaleIn, Board& board) {
  if (!file.rdbuf()) return;
  WinTyponReader reader(file, scaleIn, board);
  reader.Run();
}

void SplitWinTyponSides(Board& board) {
  TPad* pads = CutAt(board.Pads[0], board.HoverPad);
  TTrack* tracks = CutAt(board.Tracks[0], board.HoverTrack);
  board.HoverPad = nullptr;
  board.HoverTrack = nullptr;
  if (pads) {
    FreePads(board, board.Pads[1]);
    board.Pads[1] = pads;
  }
  if (tracks) {
    FreeTracks(board, board.Tracks[1]);
    board.Tracks[1] = tracks;
  }
}

}  // namespace isolith
