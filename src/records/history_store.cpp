#include "records/history_store.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <span>
#include <system_error>

#include "base/path_text.h"
#include "base/whole_file.h"
#include "records/record_decoding.h"
#include "records/record_encoding.h"

namespace embrix {

namespace {

constexpr std::string_view kHistory = "history.json";
constexpr std::string_view kLedger = "today.json";
constexpr std::string_view kArchive = "archive.json";
constexpr std::string_view kDischarge = "discharge.json";
constexpr std::string_view kBaseline = "baseline.json";
constexpr std::array kAll = {kHistory, kLedger, kArchive, kDischarge, kBaseline};

// Several times what the files can grow to.
constexpr std::size_t kMostHistoryBytes = std::size_t{64} * 1024 * 1024;
constexpr std::size_t kMostBytes = std::size_t{16} * 1024 * 1024;

bool makeFolder(const std::string& directory) {
  if (directory.empty()) return false;
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  return !error;
}

bool write(const std::string& directory, std::string_view name,
           std::span<const std::string_view> pieces) {
  return makeFolder(directory) && writeFileAtomically(PathText::joined(directory, name), pieces);
}

bool write(const std::string& directory, std::string_view name, std::string_view text) {
  return write(directory, name, std::span(&text, 1));
}

// So that the next save takes no place of something that another program, or a person, may read.
void setAside(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return;
  std::filesystem::rename(path, path + std::string(HistoryStore::kDamagedEnding), error);
}

// The record that `decode` finds in the file. A file in which it finds none is set aside.
template <typename Decode>
auto read(const std::string& directory, std::string_view name, std::size_t mostBytes,
          Decode decode) {
  decltype(decode(std::string_view())) record;
  if (directory.empty()) return record;
  const std::string path = PathText::joined(directory, name);
  const auto text = readWholeFile(path, mostBytes);
  if (text) record = decode(*text);
  if (!record) setAside(path);
  return record;
}

}  // namespace

HistoryStore HistoryStore::standard(const UserFacts& user) {
  if (user.applicationSupportDirectory.empty()) return {};
  return {PathText::joined(user.applicationSupportDirectory, kFolder)};
}

bool HistoryStore::saveAll(const HistorySnapshot& points, const DayLedger& ledger,
                           const Archive& archive, const std::optional<DischargeSession>& discharge,
                           const PowerBaseline& baseline) const {
  if (!makeFolder(directory)) return false;
  const HistorySnapshot::Text pointsText = points.text();
  const std::string ledgerText = jsonOf(ledger);
  const std::string dischargeText = discharge ? jsonOf(*discharge) : std::string();
  const std::string baselineText = jsonOf(baseline);
  const auto pathOf = [this](std::string_view name) { return PathText::joined(directory, name); };
  std::vector<NewFile> files = {{pathOf(kHistory), pointsText.pieces},
                                {pathOf(kLedger), {ledgerText}},
                                {pathOf(kArchive), archive.text()}};
  if (discharge) files.push_back({pathOf(kDischarge), {dischargeText}});
  files.push_back({pathOf(kBaseline), {baselineText}});
  return writeFilesAtomically(directory, files);
}

bool HistoryStore::save(const HistorySnapshot& points) const {
  const HistorySnapshot::Text text = points.text();
  return write(directory, kHistory, text.pieces);
}

bool HistoryStore::saveLedger(const DayLedger& ledger) const {
  return write(directory, kLedger, jsonOf(ledger));
}

bool HistoryStore::saveArchive(const Archive& archive) const {
  return write(directory, kArchive, archive.text());
}

bool HistoryStore::saveDischarge(const DischargeSession& session) const {
  return write(directory, kDischarge, jsonOf(session));
}

bool HistoryStore::saveBaseline(const PowerBaseline& baseline) const {
  return write(directory, kBaseline, jsonOf(baseline));
}

std::vector<HistoryPoint> HistoryStore::load(double newerThan) const {
  return read(directory, kHistory, kMostHistoryBytes,
              [&](std::string_view json) { return historyOfJson(json, newerThan); })
      .value_or(std::vector<HistoryPoint>());
}

std::optional<DayLedger> HistoryStore::loadLedger() const {
  return read(directory, kLedger, kMostBytes, ledgerOfJson);
}

std::optional<Archive> HistoryStore::loadArchive() const {
  return read(directory, kArchive, kMostBytes, archiveOfJson);
}

std::optional<DischargeSession> HistoryStore::loadDischarge() const {
  return read(directory, kDischarge, kMostBytes, dischargeOfJson);
}

std::optional<PowerBaseline> HistoryStore::loadBaseline() const {
  return read(directory, kBaseline, kMostBytes, baselineOfJson);
}

void HistoryStore::removeLeftovers() const {
  if (directory.empty()) return;
  for (const std::string_view name : kAll) {
    removeHalfWritten(PathText::joined(directory, name));
  }
}

}  // namespace embrix
