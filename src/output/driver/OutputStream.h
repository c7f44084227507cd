// The text stream of one output file. Every LF byte reaches the file as CR LF. The text goes to
// a temporary file beside the target, which replaces the target only by `Commit`, once the whole
// file has been written and flushed: a failed or abandoned output leaves the previous file as it
// was. The stream can also collect into memory, for the words of a format under test and for
// callers that send the text elsewhere (a port, a printer queue).
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace isolith {

class TOutputStream {
 public:
  // A stream that collects the converted text in memory; it never fails.
  TOutputStream() = default;
  ~TOutputStream();
  TOutputStream(const TOutputStream&) = delete;
  TOutputStream& operator=(const TOutputStream&) = delete;

  // Opens a temporary file beside `target` (write-only for its owner and group as a new file
  // would be). False when it cannot be created; the stream then stays closed and failed.
  bool OpenFile(const std::string& target);

  // Appends text; each LF becomes CR LF. Nothing happens once the stream has failed.
  void Write(std::string_view text);

  // False once a write failed, or when a file stream could not be opened.
  bool Good() const { return good_; }

  // File streams: flushes, syncs and closes the temporary file, then renames it over the target.
  // False (and the temporary file removed, the target untouched) when anything failed.
  bool Commit();
  // Drops the temporary file; the target stays as it was. Called by the destructor when neither
  // Commit nor Discard ran.
  void Discard();

  // The text collected by a memory stream.
  const std::string& Text() const { return text_; }

 private:
  bool good_ = true;
  std::FILE* file_ = nullptr;
  std::string target_;
  std::string temporary_;
  std::string text_;
};

}  // namespace isolith
