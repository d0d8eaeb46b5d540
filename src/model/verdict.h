// Who heats this machine, decided from one frame and said in a sentence. Plain functions; any
// thread.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/app_group.h"

namespace embrix {

struct Verdict {
  enum class Kind {
    calm,     // nobody
    busy,     // an app, by many processes together
    culprit,  // one program of an app
  };

  Kind kind = Kind::calm;
  std::string headline;                // one line that names the cause
  std::string detail;                  // the figures
  std::string summary;                 // the shortest form
  std::optional<std::string> subject;  // whom it blames, for use in other sentences
  std::optional<std::string> name;     // the process or app
  std::optional<std::string> app;      // the app around `name`, when it has another name
  std::vector<ProcessRow> processes;   // the culprit's rows

  // `totalWatts` of the whole machine.
  static Verdict make(const std::vector<AppGroup>& groups, double totalWatts);

  bool operator==(const Verdict&) const = default;
};

}  // namespace embrix
