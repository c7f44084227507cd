#include "commands/ConfigFolder.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "params/SettingsFile.h"

namespace isolith {

namespace fs = std::filesystem;

std::string WithSeparator(std::string folder) {
  if (!folder.empty() && folder.back() != '/') folder += '/';
  return folder;
}

std::string ExecutableFolder() {
  std::error_code ec;
  const fs::path exe = fs::read_symlink("/proc/self/exe", ec);
  if (ec) return {};
  return WithSeparator(exe.parent_path().string());
}

std::string UserConfigFolder() {
  const char* xdg = std::getenv("XDG_CONFIG_HOME");
  if (xdg != nullptr && *xdg == '/') return WithSeparator(xdg) + "isolith/";
  const char* home = std::getenv("HOME");
  if (home != nullptr && *home != '\0') return WithSeparator(home) + ".config/isolith/";
  return {};
}

bool FolderWritable(const std::string& folder) {
  std::error_code ec;
  return !folder.empty() && fs::is_directory(folder, ec) &&
         access(folder.c_str(), W_OK | X_OK) == 0;
}

namespace {

bool MakeFolder(const std::string& folder, std::string& error) {
  std::error_code ec;
  fs::create_directories(folder, ec);
  if (FolderWritable(folder)) return true;
  error = "Cannot use the folder " + folder + (ec ? ": " + ec.message() : ": not writable");
  return false;
}

}  // namespace

std::string ChooseConfigFolder(const std::string& programFolder, const std::string& requested,
                               std::string& error) {
  if (!requested.empty()) {
    const std::string folder = WithSeparator(requested);
    return MakeFolder(folder, error) ? folder : std::string();
  }
  if (FolderWritable(programFolder)) return WithSeparator(programFolder);
  const std::string user = UserConfigFolder();
  if (user.empty()) {
    error = "No configuration folder: the program folder is not writable and HOME is not set";
    return {};
  }
  return MakeFolder(user, error) ? user : std::string();
}

std::string StarterToolFile(const std::string& programFolder) {
  if (programFolder.empty()) return {};
  for (const std::string& candidate :
       {programFolder + kToolFileName, programFolder + "../share/isolith/" + kToolFileName}) {
    std::error_code ec;
    if (fs::is_regular_file(candidate, ec)) return candidate;
  }
  return {};
}

bool InstallStarterTools(const std::string& programFolder, const std::string& configFolder) {
  if (configFolder.empty()) return false;
  std::error_code ec;
  const std::string target = WithSeparator(configFolder) + kToolFileName;
  if (fs::exists(target, ec)) return false;
  const std::string source = StarterToolFile(programFolder);
  if (source.empty()) return false;
  std::ifstream in(source, std::ios::binary);
  if (!in) return false;
  const std::string content((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) return false;
  return WriteFileAtomically(target, content);
}

}  // namespace isolith
