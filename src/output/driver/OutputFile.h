// One output file from start to end, as both walks open and close it: a fresh state named by
// the path (or the save dialog), the words of the format, the stream to a temporary file beside
// the target, and the values from the settings; at the end the stream replaces the target only
// when everything was written.
#pragma once

#include <memory>
#include <string>

#include "output/driver/OutputContext.h"
#include "output/driver/OutputState.h"
#include "output/driver/OutputStream.h"
#include "output/driver/PenMachine.h"

namespace isolith {

class OutputFile {
 public:
  OutputFile(OutputContext& context, int format, const std::string& path);
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  // Names the file (OpenOutputName), finds the format's words and opens the stream; fills the
  // clearance values from the settings. False when cancelled, when the format has no words, or
  // when the file cannot be created.
  bool Open();
  // The last line end, then the stream replaces the target. False when any write failed; the
  // previous file is then untouched.
  bool Close();

  TOutputState state;
  PenMachine& pen() { return *pen_; }

 private:
  OutputContext& context_;
  TOutputStream stream_;
  std::unique_ptr<FormatWords> ownedWords_;
  std::unique_ptr<PenMachine> pen_;
};

}  // namespace isolith
