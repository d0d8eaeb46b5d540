// The system's log, for failures that concern whoever looks after the program and not its user.
#pragma once

#include <string_view>

namespace embrix {

class Log {
 public:
  // Under which the system's log knows the program.
  static constexpr const char* kSubsystem = "app.embrix";

  virtual ~Log() = default;

  // `category` is the type that speaks, such as "PowerModel"; both texts in UTF-8. A text tells
  // numbers and no names: logs are read by others. Main thread only.
  virtual void error(std::string_view category, std::string_view text) = 0;
};

}  // namespace embrix
