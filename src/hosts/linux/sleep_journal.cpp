#include "hosts/linux/sleep_journal.h"

#include <systemd/sd-journal.h>

#include <algorithm>
#include <memory>

namespace embrix {

namespace {

struct CloseJournal {
  void operator()(sd_journal* journal) const { sd_journal_close(journal); }
};
using Journal = std::unique_ptr<sd_journal, CloseJournal>;

// The journal is indexed by whole fields: these are found without reading anything else. Matches of
// one field are alternatives, fields must match together, a disjunction stands between two groups
// of them. Fields that begin with "_" are the journal's own words: nobody else can claim them.
constexpr std::string_view kKernelMessages[] = {
    "MESSAGE=PM: suspend entry (s2idle)",
    "MESSAGE=PM: suspend entry (deep)",
    "MESSAGE=PM: suspend entry (shallow)",
    "MESSAGE=PM: suspend exit",
    "MESSAGE=PM: hibernation: hibernation entry",
    "MESSAGE=PM: hibernation: hibernation exit",
    "MESSAGE=PM: hibernation entry",
    "MESSAGE=PM: hibernation exit",
};
constexpr std::string_view kByTheKernel = "_TRANSPORT=kernel";
constexpr std::string_view kByRoot = "_UID=0";

Journal openJournal(const std::string& root) {
  sd_journal* journal = nullptr;
  const bool isRoot = root.find_first_not_of('/') == std::string::npos;
  const int opened = isRoot ? sd_journal_open(&journal, SD_JOURNAL_LOCAL_ONLY | SD_JOURNAL_SYSTEM)
                            : sd_journal_open_directory(&journal, root.c_str(), SD_JOURNAL_OS_ROOT);
  return Journal(opened < 0 ? nullptr : journal);
}

bool addMatch(sd_journal* journal, std::string_view match) {
  return sd_journal_add_match(journal, match.data(), match.size()) >= 0;
}

bool addMatches(sd_journal* journal) {
  bool isAdded = addMatch(journal, kByRoot);
  for (const std::string_view id : {kSleepStartID, kSleepStopID}) {
    isAdded = isAdded && addMatch(journal, std::string("MESSAGE_ID=").append(id));
  }
  isAdded = isAdded && sd_journal_add_disjunction(journal) >= 0;
  isAdded = isAdded && addMatch(journal, kByTheKernel);
  for (const std::string_view message : kKernelMessages) {
    isAdded = isAdded && addMatch(journal, message);
  }
  return isAdded;
}

// Empty when the entry has no such field.
std::string fieldOf(sd_journal* journal, const char* name) {
  const void* data = nullptr;
  std::size_t size = 0;
  if (sd_journal_get_data(journal, name, &data, &size) < 0) return {};
  const std::string_view field(static_cast<const char*>(data), size);
  const auto equals = field.find('=');
  return equals == std::string_view::npos ? std::string() : std::string(field.substr(equals + 1));
}

}  // namespace

std::vector<JournalEntry> readSleepEntries(const std::string& root, std::size_t limit) {
  std::vector<JournalEntry> entries;
  const Journal journal = openJournal(root);
  if (!journal || !addMatches(journal.get())) return entries;
  if (sd_journal_seek_tail(journal.get()) < 0) return entries;
  while (entries.size() < limit && sd_journal_previous(journal.get()) > 0) {
    std::uint64_t microseconds = 0;
    if (sd_journal_get_realtime_usec(journal.get(), &microseconds) < 0) continue;
    entries.push_back({static_cast<std::int64_t>(microseconds),
                       fieldOf(journal.get(), "MESSAGE_ID"), fieldOf(journal.get(), "MESSAGE")});
  }
  std::reverse(entries.begin(), entries.end());
  return entries;
}

}  // namespace embrix
