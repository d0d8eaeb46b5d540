#include "hosts/linux/machine_facts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>

#include "hosts/linux/cpu_cores.h"
#include "hosts/linux/memory_source.h"
#include "hosts/linux/system_file.h"

namespace embrix {

namespace {

// What makers leave in firmware tables that they did not fill in.
constexpr std::array<std::string_view, 12> kPlaceholders = {
    "Default string",
    "System Product Name",
    "System Version",
    "To Be Filled By O.E.M.",
    "To be filled by O.E.M.",
    "Not Specified",
    "Not Applicable",
    "None",
    "N/A",
    "OEM",
    "O.E.M.",
    "Unknown",
};

std::optional<std::string> firmwareText(const std::string& root, std::string_view field) {
  auto text = readSystemLine(belowRoot(root, "/sys/class/dmi/id/") + std::string(field));
  if (!text) return std::nullopt;
  const bool isPlaceholder =
      std::find(kPlaceholders.begin(), kPlaceholders.end(), *text) != kPlaceholders.end();
  return isPlaceholder ? std::nullopt : text;
}

std::optional<std::string> boardModel(const std::string& root) {
  return readSystemLine(belowRoot(root, "/sys/firmware/devicetree/base/model"));
}

std::optional<std::string> productName(const std::string& root) {
  // This maker keeps a type number under the product's name, and the name under its version.
  if (firmwareText(root, "sys_vendor") == "LENOVO") {
    if (auto name = firmwareText(root, "product_version")) return name;
  }
  if (auto name = firmwareText(root, "product_name")) return name;
  if (auto name = firmwareText(root, "board_name")) return name;
  return boardModel(root);
}

std::optional<std::string> modelIdentifier(const std::string& root) {
  if (auto name = firmwareText(root, "product_name")) return name;
  // The most specific name of the board comes first in the list.
  return readSystemLine(belowRoot(root, "/sys/firmware/devicetree/base/compatible"));
}

std::optional<std::string> chip(const std::string& root) {
  // One processor's block is enough; it comes first.
  const auto text = readSystemFile(belowRoot(root, "/proc/cpuinfo"), 8192);
  if (!text) return std::nullopt;
  std::optional<std::string> name;
  forEachPiece(*text, '\n', [&](std::string_view line) {
    if (name || !line.starts_with("model name")) return;
    const auto colon = line.find(':');
    if (colon != std::string_view::npos) name = shortChipName(line.substr(colon + 1));
  });
  return name && !name->empty() ? name : std::nullopt;
}

// The kernel manages memory in blocks; those that are online cover what is fitted, the firmware's
// share included, which MemTotal leaves out.
std::uint64_t memoryBytes(const std::string& root) {
  const std::string directory = belowRoot(root, "/sys/devices/system/memory");
  std::uint64_t blocks = 0;
  for (const std::string& name : namesIn(directory)) {
    if (!name.starts_with("memory")) continue;
    if (readSystemLine(directory + "/" + name + "/state") == "online") ++blocks;
  }
  const std::string sizeText = readSystemLine(directory + "/block_size_bytes").value_or("");
  std::uint64_t size = 0;
  std::from_chars(sizeText.data(), sizeText.data() + sizeText.size(), size, 16);
  constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 56;
  if (blocks > 0 && size > 0 && size < kMostBytes / blocks) return blocks * size;
  return LinuxMemorySource(root).physicalBytes();
}

void readSystem(const std::string& root, MachineFacts& facts) {
  auto text = readSystemFile(belowRoot(root, "/etc/os-release"));
  if (!text) text = readSystemFile(belowRoot(root, "/usr/lib/os-release"));
  const auto name = text ? osReleaseValue(*text, "NAME") : std::nullopt;
  const auto numbers = text ? osReleaseValue(*text, "VERSION_ID") : std::nullopt;
  SystemVersion version;
  if (name && numbers) {
    facts.systemName = *name;
    version = parseSystemVersion(*numbers);
  } else {
    facts.systemName = "Linux";
    version = parseSystemVersion(
        readSystemLine(belowRoot(root, "/proc/sys/kernel/osrelease")).value_or(""));
  }
  facts.systemMajor = version.major;
  facts.systemMinor = version.minor;
  facts.systemPatch = version.patch;
}

void eraseAll(std::string& text, std::string_view part) {
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at)) {
    text.erase(at, part.size());
  }
}

}  // namespace

std::string shortChipName(std::string_view modelName) {
  std::string name(modelName.substr(0, modelName.find('@')));
  for (const std::string_view mark : {"(R)", "(r)", "(TM)", "(tm)"}) eraseAll(name, mark);
  std::string words;
  forEachPiece(name, ' ', [&](std::string_view word) {
    while (!word.empty() && word.front() == '\t') word.remove_prefix(1);
    if (word.empty() || word == "CPU") return;
    if (!words.empty()) words.push_back(' ');
    words.append(word);
  });
  return words;
}

SystemVersion parseSystemVersion(std::string_view text) {
  SystemVersion version;
  const char* at = text.data();
  const char* const end = at + text.size();
  for (int* const number : {&version.major, &version.minor, &version.patch}) {
    if (at == end || *at < '0' || *at > '9') break;
    const auto result = std::from_chars(at, end, *number);
    at = result.ptr;
    if (result.ec != std::errc() || at == end || *at != '.') break;
    ++at;
  }
  return version;
}

std::optional<std::string> osReleaseValue(std::string_view text, std::string_view key) {
  std::optional<std::string> found;
  forEachPiece(text, '\n', [&](std::string_view line) {
    if (!line.starts_with(key)) return;
    line.remove_prefix(key.size());
    if (line.empty() || line.front() != '=') return;
    line.remove_prefix(1);
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.remove_suffix(1);
    const bool isQuoted = line.size() >= 2 && (line.front() == '"' || line.front() == '\'') &&
                          line.back() == line.front();
    if (isQuoted) line = line.substr(1, line.size() - 2);
    // As a shell would have it, the last one counts.
    found = line.empty() ? std::nullopt : std::optional<std::string>(line);
  });
  return found;
}

MachineFacts linuxMachineFacts(const std::string& root) {
  MachineFacts facts;
  facts.productName = productName(root);
  facts.chip = chip(root);
  const auto cores = countCores(root);
  if (cores) facts.performanceCores = cores->performance;
  if (cores) facts.efficiencyCores = cores->efficiency;
  facts.memoryBytes = memoryBytes(root);
  facts.model = modelIdentifier(root);
  readSystem(root, facts);
  return facts;
}

}  // namespace embrix
