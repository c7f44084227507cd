// Runs a fuzz harness once on each file of the folders (or files) it is given, in name order,
// without the fuzzing engine: the seed corpora and the kept reproducers of earlier findings
// become ordinary tests of every build. A crash or a sanitizer report fails the run; a hang is
// stopped by the test's time-out.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  std::vector<fs::path> files;
  for (int i = 1; i < argc; ++i) {
    std::error_code ec;
    if (fs::is_directory(argv[i], ec)) {
      for (const auto& entry : fs::directory_iterator(argv[i], ec))
        if (entry.is_regular_file()) files.push_back(entry.path());
    } else {
      files.emplace_back(argv[i]);
    }
  }
  std::sort(files.begin(), files.end());
  for (const fs::path& file : files) {
    std::ifstream in(file, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::printf("%s\n", file.filename().c_str());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
  }
  std::printf("%zu inputs\n", files.size());
  return 0;
}
