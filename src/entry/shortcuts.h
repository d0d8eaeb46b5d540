// The program's actions for shortcuts, scripts and assistants. Each waits for a frame of the
// running model, acts on it and answers in one sentence. Main thread only.
#pragma once

#include <string>
#include <vector>

#include "host/action_service.h"

namespace embrix {

struct Shortcuts {
  // How long an action waits for the first frame: it may be what started the program. Seconds.
  static constexpr double kLongestWait = 6;

  // The one reason why an action fails: no model runs, or it has no frame in time.
  static ActionError notReady();

  static void getHottestApp(ActionReply reply);   // a text
  static void getSystemPower(ActionReply reply);  // watts, to a tenth
  static void calmHottestApp(ActionReply reply);
  static void stopHottestApp(ActionReply reply);
  static void openConsole(const ActionReply& reply);  // never fails

  // All of them, as they are offered to other programs.
  static std::vector<PublishedAction> actions();
};

// What the desktop suggests to say. The stop is not among them, so a voice can't stop anything.
struct EmbrixShortcuts {
  struct Suggestion {
    std::string action;  // name of the published action
    std::string phrase;  // the application's name follows it, after a blank
    std::string shortTitle;
    std::string systemImage;  // name of a symbol

    bool operator==(const Suggestion&) const = default;
  };

  static std::vector<Suggestion> suggestions();
};

}  // namespace embrix
