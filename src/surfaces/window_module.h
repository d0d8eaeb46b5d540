// The door between the program and the module of its windows. The program loads that module only
// for a run with windows, so that a report carries no toolkit. Both are built together, by one
// compiler from one source, and may pass each other C++ objects; each has its own copy of what lies
// below, so nothing may be shared by way of global variables. Main thread only.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/application_icons.h"
#include "host/desktop_facts.h"
#include "host/session.h"
#include "model/power_model.h"

namespace embrix {

// What a run with windows is given to show. Everything outlives it.
struct WindowRun {
  PowerModel& model;
  EventLoop& loop;  // turned by the toolkit's own
  DesktopFacts& desktop;
  ApplicationIcons& icons;
  std::vector<std::string> arguments;         // of the program, its own name first
  bool isTestRun = false;                     // nothing moves
  std::function<void(std::string_view)> say;  // a line for whoever started the program
};

// What the module offers. Each starts the toolkit anew and ends it; one at a time.
struct WindowModule {
  // Turns the loop until the end. False when there is no screen to show anything on.
  bool (*run)(const WindowRun& run);

  // Writes the pictures of all surfaces, of a model that shows demo data, into the folder, which is
  // made if it is missing. Needs no screen. False when one could not be written.
  bool (*snapshot)(PowerModel& model, Scheduler& scheduler, const std::string& folder);

  // Writes the application's icon as a PNG. Needs no screen. False when it could not be written.
  bool (*renderIcon)(const std::string& path);
};

// The one name that the module exports, in C: a function without arguments that returns this.
inline constexpr const char* kWindowModuleSymbol = "embrixWindowModule";
using WindowModuleGetter = const WindowModule* (*)();

}  // namespace embrix
