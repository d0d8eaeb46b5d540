#include "running/forgotten_row.h"

#include <limits>

namespace embrix {

namespace {

std::uint64_t saturatedSum(std::uint64_t a, std::uint64_t b) {
  const std::uint64_t sum = a + b;
  return sum < a ? std::numeric_limits<std::uint64_t>::max() : sum;
}

}  // namespace

std::uint64_t ForgottenRow::memoryBytes() const {
  std::uint64_t bytes = 0;
  for (const ProcessRow& process : processes) bytes = saturatedSum(bytes, process.memoryBytes);
  return bytes;
}

std::uint64_t ForgottenRow::memoryBytes(std::span<const ForgottenRow> rows) {
  std::uint64_t bytes = 0;
  for (const ForgottenRow& row : rows) bytes = saturatedSum(bytes, row.memoryBytes());
  return bytes;
}

}  // namespace embrix
