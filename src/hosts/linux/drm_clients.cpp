#include "hosts/linux/drm_clients.h"

#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

#include "base/hash_map.h"

namespace embrix {

namespace {

constexpr std::size_t kSlices = 16;
// A client's account is about 2 KB: a few lines for each kind of memory and engine.
constexpr std::size_t kBufferSize = 16 * 1024;
// Handles kept open at most, for the program's other files' sake.
constexpr std::size_t kMostHandles = 160;
constexpr std::string_view kDevices = "/dev/dri/";

struct CloseDirectory {
  void operator()(DIR* stream) const { ::closedir(stream); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

Directory openDirectory(const std::string& path) {
  return Directory(::opendir(path.c_str()));
}

// The directory's entries that are numbers, ascending.
std::vector<std::int32_t> numbersIn(DIR* directory) {
  std::vector<std::int32_t> numbers;
  while (const dirent* entry = directory == nullptr ? nullptr : ::readdir(directory)) {
    const std::string_view name = entry->d_name;
    std::int32_t number = 0;
    const auto result = std::from_chars(name.data(), name.data() + name.size(), number);
    const bool isWhole = result.ec == std::errc() && result.ptr == name.data() + name.size();
    if (isWhole && number >= 0) numbers.push_back(number);
  }
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

bool isGraphicsHandle(DIR* handles, std::int32_t number) {
  std::array<char, 12> name{};
  std::to_chars(name.data(), name.data() + name.size() - 1, number);
  std::array<char, kDevices.size()> start;
  const ssize_t size = ::readlinkat(::dirfd(handles), name.data(), start.data(), start.size());
  return size == static_cast<ssize_t>(start.size()) &&
         std::string_view(start.data(), start.size()) == kDevices;
}

}  // namespace

DrmClients::DrmClients(const std::string& root)
    : proc_(belowRoot(root, "/proc")), buffer_(kBufferSize) {}

void DrmClients::lookAt(std::int32_t pid) {
  const std::string process = proc_ + "/" + std::to_string(pid);
  std::string name;
  const Directory descriptors = openDirectory(process + "/fd");
  for (const std::int32_t number : numbersIn(descriptors.get())) {
    if (handles_.size() >= kMostHandles) return;
    if (!isGraphicsHandle(descriptors.get(), number)) continue;
    Handle handle{.pid = pid,
                  .client = {},
                  .creator = {},
                  .fdinfo = HeldFile(process + "/fdinfo/" + std::to_string(number))};
    auto usage = read(handle);
    if (!usage) continue;
    handle.client = std::move(usage->id);
    const auto order = [](const Handle& a, const Handle& b) {
      return std::tie(a.pid, a.client) < std::tie(b.pid, b.client);
    };
    const auto place = std::lower_bound(handles_.begin(), handles_.end(), handle, order);
    if (place != handles_.end() && !order(handle, *place)) continue;
    if (name.empty()) name = readSystemLine(process + "/comm").value_or("");
    handle.creator = "pid " + std::to_string(pid) + ", " + name;
    handles_.insert(place, std::move(handle));
  }
}

std::optional<DrmClientUsage> DrmClients::read(Handle& handle) {
  const auto text = handle.fdinfo.read(buffer_);
  return text ? parseDrmFdinfo(*text) : std::nullopt;
}

void DrmClients::lookAtSome() {
  if (nextPID_ == pids_.size()) {
    pids_ = numbersIn(openDirectory(proc_).get());
    nextPID_ = 0;
  }
  std::size_t count = hasLookedAtAll_ ? (pids_.size() + kSlices - 1) / kSlices : pids_.size();
  hasLookedAtAll_ = true;
  for (; count > 0 && nextPID_ < pids_.size(); --count) lookAt(pids_[nextPID_++]);
}

std::vector<GpuClient> DrmClients::read() {
  lookAtSome();
  std::vector<Reading> readings;
  HashMap<std::string, std::size_t> holders;  // client to its place in readings
  std::size_t kept = 0;
  for (Handle& handle : handles_) {
    auto usage = read(handle);
    // The process is gone, or has closed the handle, or the number now is another client's.
    if (!usage || usage->id != handle.client) continue;
    const auto [holder, isNew] = holders.try_emplace(usage->id, readings.size());
    if (isNew) readings.emplace_back();
    readings[holder->second] = {kept, std::move(usage->engines)};  // handles ascend by pid
    if (&handle != &handles_[kept]) handles_[kept] = std::move(handle);
    ++kept;
  }
  handles_.erase(handles_.begin() + static_cast<std::ptrdiff_t>(kept), handles_.end());

  std::sort(readings.begin(), readings.end(),
            [](const Reading& a, const Reading& b) { return a.handle < b.handle; });
  std::vector<GpuClient> clients;
  for (Reading& reading : readings) {
    clients.push_back({handles_[reading.handle].creator, std::move(reading.engines)});
  }
  return clients;
}

}  // namespace embrix
