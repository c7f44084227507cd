// What every harness shares: the fuzzer's bytes as text, and the size limit of the calculating
// harnesses, which stand for a person's board rather than for a reader's worst case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace isolith::fuzz {

inline std::string_view Text(const uint8_t* data, size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace isolith::fuzz
