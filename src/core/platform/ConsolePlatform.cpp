#include "core/platform/ConsolePlatform.h"

#include <spawn.h>

#include <chrono>
#include <string>

extern char** environ;

namespace isolith {

namespace {
// A message box text can hold several lines; the console shows it on one line per box.
std::string OneLine(std::string_view text) {
  std::string s(text);
  while (!s.empty() && (s.back() == '\n' || s.back() == '\r' || s.back() == ' ')) s.pop_back();
  for (char& c : s)
    if (c == '\n' || c == '\r') c = ' ';
  return s;
}
}  // namespace

void ConsolePlatform::ShowMessage(std::string_view title, std::string_view text, MessageIcon) {
  std::fprintf(out_, "%.*s: %s\n", static_cast<int>(title.size()), title.data(),
               OneLine(text).c_str());
}

Answer ConsolePlatform::Ask(std::string_view title, std::string_view text, bool, Answer preferred) {
  const char* word = preferred == Answer::Yes ? "Yes" : preferred == Answer::No ? "No" : "Cancel";
  std::fprintf(out_, "%.*s: %s [%s]\n", static_cast<int>(title.size()), title.data(),
               OneLine(text).c_str(), word);
  return preferred;
}

uint64_t ConsolePlatform::TickCount() {
  using namespace std::chrono;
  return static_cast<uint64_t>(
      duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

int64_t ConsolePlatform::Now() {
  using namespace std::chrono;
  return duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
}

bool ConsolePlatform::StartProcess(const std::string& program, const std::vector<std::string>& args,
                                   const std::string& workingFolder, int64_t* started) {
  std::vector<char*> argv;
  argv.push_back(const_cast<char*>(program.c_str()));
  for (const std::string& a : args) argv.push_back(const_cast<char*>(a.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  if (!workingFolder.empty()) posix_spawn_file_actions_addchdir_np(&actions, workingFolder.c_str());
  pid_t pid = 0;
  const bool spawned =
      posix_spawnp(&pid, program.c_str(), &actions, nullptr, argv.data(), environ) == 0;
  posix_spawn_file_actions_destroy(&actions);
  if (spawned && started) *started = pid;
  return spawned;
}

}  // namespace isolith
