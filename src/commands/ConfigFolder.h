// Where the program's own files live: the folder of the executable, or the user's
// configuration folder when the program is installed where it cannot write.
#pragma once

#include <string>

namespace isolith {

inline constexpr const char* kToolFileName = "Isolith.too";

// The folder of the running executable, with its final separator; empty when unknown.
std::string ExecutableFolder();

// `folder` with a final "/" (unchanged when it has one or is empty).
std::string WithSeparator(std::string folder);

// $XDG_CONFIG_HOME/isolith/, else $HOME/.config/isolith/; empty when neither is set.
std::string UserConfigFolder();

// Whether the folder exists and this process may create files in it.
bool FolderWritable(const std::string& folder);

// The folder for "Isolith.ini", "Isolith.too" and "Isolith.ppf", with its final separator:
// `requested` when given (created when missing), else the program folder when writable, else
// the user's configuration folder (created when missing). Empty with `error` set when the
// folder cannot be made.
std::string ChooseConfigFolder(const std::string& programFolder, const std::string& requested,
                               std::string& error);

// Where the starter tool library is found: beside the executable (a build folder), else in
// ../share/isolith/ from it (an installed program). Empty when neither holds one.
std::string StarterToolFile(const std::string& programFolder);

// A configuration folder without a tool library gets a copy of the starter one, so that a first
// run can calculate; an existing file is never replaced. True when a copy was made.
bool InstallStarterTools(const std::string& programFolder, const std::string& configFolder);

}  // namespace isolith
