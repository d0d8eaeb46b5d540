// The rules of the forgotten finder once more, slow and plain: maps by pid, linear searches, no
// shared work. It stands against the finder on tables that nobody would write by hand. Pids are
// unique in its input.
#pragma once

#include <algorithm>
#include <map>
#include <set>

#include "base/text.h"
#include "running/forgotten_finder.h"

namespace embrix {

class PlainForgottenFinder {
 public:
  PlainForgottenFinder(const std::vector<ProcessFacts>& facts, std::uint32_t user, std::string home)
      : home_(std::move(home)) {
    for (const ProcessFacts& process : facts) {
      if (survives(process, user)) table_[process.pid] = process;
    }
  }

  const std::map<std::int32_t, ProcessFacts>& survivors() const { return table_; }

  std::vector<ForgottenItem> find() const {
    std::map<std::int32_t, std::set<std::int32_t>> groups;
    for (const auto& [pid, process] : table_) groups[rootOf(process).pid].insert(pid);
    // Who heads a group stands in it and in no other.
    for (auto& [root, group] : groups) {
      for (const auto& [other, ignored] : groups) group.erase(other);
      group.insert(root);
    }
    std::vector<ForgottenItem> rows;
    for (const auto& [root, group] : groups) {
      const std::string name = Text::lowercased(table_.at(root).name);
      if (name != "claude" && name != "codex") fold(itemOf(table_.at(root), group), rows);
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const auto& a, const auto& b) { return a.uptime > b.uptime; });
    return rows;
  }

 private:
  static bool survives(const ProcessFacts& process, std::uint32_t user) {
    static const std::set<std::string> shells = {"zsh",   "bash", "fish",   "sh",
                                                 "login", "tmux", "screen", "ssh-agent"};
    if (process.uid != user || process.uptime < 3600) return false;
    if (shells.count(process.name.string()) > 0) return false;
    const bool isNamed = ForgottenFinder::describe(process).has_value();
    if (!process.path) return isNamed || !process.ports.empty();
    for (const char* folder : {"/System/", "/usr/", "/Library/Apple/", "/sbin/", "/bin/"}) {
      if (process.path->view().starts_with(folder)) return false;
    }
    if (isNamed) return true;
    return !process.ports.empty() && process.path->view().find(".app/") == std::string_view::npos;
  }

  const ProcessFacts& rootOf(const ProcessFacts& start) const {
    const ProcessFacts* current = &start;
    for (int budget = 16;; --budget) {
      const auto parent = table_.find(current->ppid);
      if (parent == table_.end() || parent->second.pid == current->pid) return *current;
      if (!climbs(*current, parent->second)) return *current;
      if (budget == 0) return *current;
      current = &parent->second;
    }
  }

  static bool climbs(const ProcessFacts& current, const ProcessFacts& parent) {
    static const std::set<std::string> runtimes = {"node", "bun", "deno"};
    if (!ForgottenFinder::describe(current)) return true;
    if (current.name == parent.name) return true;
    const std::string name = Text::lowercased(current.name);
    const std::string parentName = Text::lowercased(parent.name);
    if (parentName == "claude" || parentName == "codex") {
      return runtimes.count(name) > 0 || name.rfind("python", 0) == 0;
    }
    return runtimes.count(name) > 0 && runtimes.count(parentName) > 0;
  }

  ForgottenItem itemOf(const ProcessFacts& root, const std::set<std::int32_t>& group) const {
    ForgottenItem item;
    item.root = root;
    item.uptime = root.uptime;
    item.members = {root};
    for (const std::int32_t pid : group) {
      if (pid != root.pid) item.members.push_back(table_.at(pid));
    }
    item.title = root.name.string();
    item.symbol = "terminal";
    std::optional<SharedText> directory = root.directory;
    for (const ProcessFacts& process : item.members) {
      const auto description = ForgottenFinder::describe(process);
      if (!description) continue;
      item.title = description->title;
      item.symbol = description->symbol;
      if (process.directory) directory = process.directory;
      break;
    }
    item.project = ForgottenFinder::project(directory, home_);
    std::set<int> ports;
    for (const ProcessFacts& process : item.members) {
      ports.insert(process.ports.begin(), process.ports.end());
    }
    item.ports.assign(ports.begin(), ports.end());
    return item;
  }

  static void fold(ForgottenItem item, std::vector<ForgottenItem>& rows) {
    for (ForgottenItem& row : rows) {
      if (row.title + "|" + row.project.value_or("") !=
          item.title + "|" + item.project.value_or("")) {
        continue;
      }
      std::set<int> ports(row.ports.begin(), row.ports.end());
      ports.insert(item.ports.begin(), item.ports.end());
      row.ports.assign(ports.begin(), ports.end());
      row.members.insert(row.members.end(), item.members.begin(), item.members.end());
      row.uptime = std::max(row.uptime, item.uptime);
      return;
    }
    rows.push_back(std::move(item));
  }

  std::string home_;
  std::map<std::int32_t, ProcessFacts> table_;
};

}  // namespace embrix
