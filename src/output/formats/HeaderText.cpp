#include "output/formats/HeaderText.h"

#include <cmath>
#include <cstdio>
#include <ctime>

#include "output/formats/Writers.h"

namespace isolith {

namespace {

std::tm LocalTime(int64_t now) {
  const std::time_t t = static_cast<std::time_t>(now);
  std::tm parts{};
  if (!localtime_r(&t, &parts)) parts = std::tm{};
  return parts;
}

}  // namespace

std::string ProgramLabel() {
  return std::string(kOutputTitle) + " " + kOutputVersion + " - " + kOutputDate;
}

std::string FileLabel(const TOutputState& state) {
  return state.FileName.empty() ? std::string("File") : state.FileName;
}

std::string DateText(int64_t now) {
  const std::tm t = LocalTime(now);
  char buffer[48];
  std::snprintf(buffer, sizeof buffer, "%02d/%02d/%04d", t.tm_mday, t.tm_mon + 1, t.tm_year + 1900);
  return buffer;
}

std::string TimeText(int64_t now) {
  const std::tm t = LocalTime(now);
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%02d:%02d", t.tm_hour, t.tm_min);
  return buffer;
}

std::string WorkpieceText(const Board& board, const TOutputState& state) {
  return "Workpiece dimensions: " + Trimmed(double(board.CardWidth) * state.ScaleX, 3) + " x " +
         Trimmed(double(board.CardHeight) * state.ScaleY, 3) + " x " +
         Trimmed(std::fabs(double(board.CardThickness) * state.ScaleZ), 3) + " mm";
}

}  // namespace isolith
