// Sorts the processes of an app into roles that a person understands, by their names alone. Pure.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "frame/process_row.h"

namespace embrix {

struct ProcessRole {
  std::string name;                   // "Web content", "Graphics"
  std::string symbol;                 // name of the role's symbol
  std::vector<ProcessRow> processes;  // largest watts first, else in the order given

  bool operator==(const ProcessRole&) const = default;
};

struct ProcessRoles {
  // The rows of the app of that name by role. Roles with more watts come first, then those with
  // more memory, then by name.
  static std::vector<ProcessRole> group(const std::vector<ProcessRow>& rows, std::string_view app);

  // The name of the role that a process of that name has in the app of that name.
  static std::string role(const SharedText& process, std::string_view app);

  // The symbol of the role with that name; any name has one.
  static std::string_view symbol(std::string_view role);
};

}  // namespace embrix
