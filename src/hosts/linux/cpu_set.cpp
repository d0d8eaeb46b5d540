#include "hosts/linux/cpu_set.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

namespace embrix {

namespace {

constexpr std::size_t kBits = 8 * sizeof(unsigned long);
constexpr std::size_t kMostCpus = 8192;

}  // namespace

CpuSet CpuSet::of(const std::vector<int>& numbers) {
  CpuSet set;
  set.words_.resize(kMostCpus / kBits);
  for (const int number : numbers) {
    const auto bit = static_cast<std::size_t>(number);
    if (number >= 0 && bit < kMostCpus) set.words_[bit / kBits] |= 1UL << bit % kBits;
  }
  set.trim();
  return set;
}

CpuSet CpuSet::everywhere() {
  CpuSet set;
  set.words_.assign(kMostCpus / kBits, ~0UL);
  return set;
}

std::optional<CpuSet> CpuSet::ofThread(std::int32_t thread) {
  CpuSet set;
  set.words_.resize(kMostCpus / kBits);
  // The call itself, which says how much it wrote; the library's expects a set of one size.
  const long size = ::syscall(SYS_sched_getaffinity, thread, kMostCpus / 8, set.words_.data());
  if (size < 0) return std::nullopt;
  set.trim();
  return set;
}

int CpuSet::applyTo(std::int32_t thread) const {
  const std::size_t size = words_.size() * sizeof(unsigned long);
  return ::syscall(SYS_sched_setaffinity, thread, size, words_.data()) == 0 ? 0 : errno;
}

std::vector<int> CpuSet::numbers() const {
  std::vector<int> numbers;
  for (std::size_t bit = 0; bit < words_.size() * kBits; ++bit) {
    if ((words_[bit / kBits] >> bit % kBits & 1) != 0) numbers.push_back(static_cast<int>(bit));
  }
  return numbers;
}

bool CpuSet::isWithin(const CpuSet& other) const {
  return (*this & other) == *this;
}

CpuSet CpuSet::operator&(const CpuSet& other) const {
  CpuSet both;
  both.words_.resize(std::min(words_.size(), other.words_.size()));
  for (std::size_t i = 0; i < both.words_.size(); ++i) {
    both.words_[i] = words_[i] & other.words_[i];
  }
  both.trim();
  return both;
}

void CpuSet::trim() {
  while (!words_.empty() && words_.back() == 0) words_.pop_back();
}

}  // namespace embrix
