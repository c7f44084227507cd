#include "support/FakePlatform.h"

namespace isolith::test {

void FakePlatform::ShowMessage(std::string_view title, std::string_view text, MessageIcon icon) {
  messages.push_back({std::string(title), std::string(text), icon});
}

Answer FakePlatform::Ask(std::string_view title, std::string_view text, bool, Answer preferred) {
  Answer a = preferred;
  if (!answers.empty()) {
    a = answers.front();
    answers.pop_front();
  }
  questions.push_back({std::string(title), std::string(text), a});
  return a;
}

std::optional<std::string> FakePlatform::OpenFileDialog(FileRequest& request) {
  fileRequests.push_back(request);
  if (files.empty()) return std::nullopt;
  std::string f = files.front();
  files.pop_front();
  if (f.empty()) return std::nullopt;
  return f;
}

std::optional<std::string> FakePlatform::SaveFileDialog(FileRequest& request) {
  return OpenFileDialog(request);
}

bool FakePlatform::RunDialog(DialogForm& form) {
  dialogsRun.emplace_back(form.FormName());
  auto it = dialogs.find(std::string(form.FormName()));
  if (it != dialogs.end() && !it->second(form)) return false;
  return form.Accept(*this);
}

bool FakePlatform::StartProcess(const std::string& program, const std::vector<std::string>& args,
                                const std::string& workingFolder, int64_t* pid) {
  std::vector<std::string> line{program};
  line.insert(line.end(), args.begin(), args.end());
  processes.push_back(line);
  workingFolders.push_back(workingFolder);
  if (pid) *pid = 0;  // no process stands behind the record
  return true;
}

}  // namespace isolith::test
