#include "hosts/macos/assertion_source.h"

#include <IOKit/pwr_mgt/IOPMLib.h>

#include <optional>
#include <utility>

#include "hosts/macos/autorelease_pool.h"
#include "hosts/macos/cf_holder.h"
#include "hosts/macos/cf_property.h"

namespace embrix {

namespace {

// Absent unless it is a pid with a list of dictionaries.
std::optional<ProcessAssertions> assertionsOf(CFTypeRef key, CFTypeRef value) {
  const auto pid = integerOf(key);
  const CFArrayRef list = asArray(value);
  if (!pid || list == nullptr) return std::nullopt;
  ProcessAssertions process{.pid = static_cast<std::int32_t>(*pid), .assertions = {}};
  for (CFIndex i = 0; i < CFArrayGetCount(list); ++i) {
    const CFTypeRef assertion = CFArrayGetValueAtIndex(list, i);
    if (asDictionary(assertion) == nullptr) return std::nullopt;
    process.assertions.push_back(propertyMapOf(assertion));
  }
  return process;
}

}  // namespace

std::vector<ProcessAssertions> MacAssertionSource::read() {
  const AutoreleasePool pool;
  CfHolder<CFDictionaryRef> byProcess;
  if (IOPMCopyAssertionsByProcess(byProcess.out()) != kIOReturnSuccess) return {};
  const CFDictionaryRef table = asDictionary(byProcess.get());
  if (table == nullptr) return {};

  const auto count = static_cast<std::size_t>(CFDictionaryGetCount(table));
  std::vector<const void*> keys(count);
  std::vector<const void*> values(count);
  CFDictionaryGetKeysAndValues(table, keys.data(), values.data());
  std::vector<ProcessAssertions> processes;
  for (std::size_t i = 0; i < count; ++i) {
    auto process = assertionsOf(keys[i], values[i]);
    if (!process) return {};
    processes.push_back(std::move(*process));
  }
  return processes;
}

}  // namespace embrix
