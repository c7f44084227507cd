#include "output/transfer/PortNames.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <tuple>

namespace isolith {

namespace {

std::string Upper(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

// The number after `prefix` in `name`, or -1.
int NumberAfter(const std::string& name, const std::string& prefix) {
  if (name.size() <= prefix.size() || name.compare(0, prefix.size(), prefix) != 0) return -1;
  int n = -1;
  const char* first = name.data() + prefix.size();
  const char* last = name.data() + name.size();
  const auto [ptr, ec] = std::from_chars(first, last, n);
  return ec == std::errc() && ptr == last ? n : -1;
}

}  // namespace

std::vector<std::string> SerialDevices(const std::string& sysClassTty) {
  namespace fs = std::filesystem;
  // (kind, number, name): the kinds in COM order.
  std::vector<std::tuple<int, int, std::string>> found;
  const char* kinds[] = {"ttyUSB", "ttyACM", "ttyS"};
  std::error_code ec;
  for (fs::directory_iterator it(sysClassTty, ec), end; !ec && it != end; it.increment(ec)) {
    const std::string name = it->path().filename().string();
    for (int kind = 0; kind < 3; ++kind) {
      const int n = NumberAfter(name, kinds[kind]);
      std::error_code linkError;
      if (n >= 0 && fs::exists(it->path() / "device", linkError)) found.emplace_back(kind, n, name);
    }
  }
  std::sort(found.begin(), found.end());
  std::vector<std::string> devices;
  for (const auto& [kind, n, name] : found)
    if (devices.size() < kComPorts) devices.push_back("/dev/" + name);
  return devices;
}

int ComNumber(const std::string& port) {
  const int n = NumberAfter(Upper(port), "COM");
  return n >= 1 && n <= kComPorts ? n : 0;
}

std::string PortDevice(const std::string& port, const std::vector<std::string>& serialDevices) {
  if (!port.empty() && port[0] == '/') return port;
  const std::string name = Upper(port);
  if (const int lpt = NumberAfter(name, "LPT"); lpt >= 1 && lpt <= kLptPorts)
    return "/dev/lp" + std::to_string(lpt - 1);
  const int com = ComNumber(name);
  if (com >= 1 && com <= static_cast<int>(serialDevices.size())) return serialDevices[com - 1];
  return {};
}

}  // namespace isolith
