#include "output/driver/OutputStream.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <vector>

namespace isolith {

TOutputStream::~TOutputStream() {
  Discard();
}

bool TOutputStream::OpenFile(const std::string& target) {
  Discard();
  target_ = target;
  std::vector<char> name(target.begin(), target.end());
  const std::string suffix = ".tmp-XXXXXX";
  name.insert(name.end(), suffix.begin(), suffix.end());
  name.push_back('\0');
  const int fd = ::mkstemp(name.data());
  if (fd < 0) {
    good_ = false;
    return false;
  }
  // mkstemp makes the file private; give it the mode a newly created file would have.
  const mode_t mask = ::umask(0);
  ::umask(mask);
  ::fchmod(fd, 0666 & ~mask);
  file_ = ::fdopen(fd, "wb");
  if (!file_) {
    ::close(fd);
    ::unlink(name.data());
    good_ = false;
    return false;
  }
  temporary_ = name.data();
  good_ = true;
  return true;
}

void TOutputStream::Write(std::string_view text) {
  if (!good_) return;
  std::string converted;
  converted.reserve(text.size() + 8);
  for (char c : text) {
    if (c == '\n') converted.push_back('\r');
    converted.push_back(c);
  }
  if (!file_) {
    text_ += converted;
    return;
  }
  if (std::fwrite(converted.data(), 1, converted.size(), file_) != converted.size()) good_ = false;
}

bool TOutputStream::Commit() {
  if (!file_) return good_;
  bool ok = good_ && std::fflush(file_) == 0 && !std::ferror(file_);
  ok = ok && ::fsync(::fileno(file_)) == 0;
  if (std::fclose(file_) != 0) ok = false;
  file_ = nullptr;
  if (ok && std::rename(temporary_.c_str(), target_.c_str()) != 0) ok = false;
  if (!ok) ::unlink(temporary_.c_str());
  temporary_.clear();
  good_ = ok;
  return ok;
}

void TOutputStream::Discard() {
  if (!file_) return;
  std::fclose(file_);
  file_ = nullptr;
  ::unlink(temporary_.c_str());
  temporary_.clear();
}

}  // namespace isolith
