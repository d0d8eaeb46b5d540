// Days of a machine, written down line by line and lived through in no time:
//
//   at 23:58:20            the clock is set (of that day)
//   clock +31536000        it is set ahead, or back, by so many seconds
//   battery 80% 50Wh       it runs on battery from the next frame on
//   adapter 90%            it runs on power
//   draws Safari 36, Mail 3.6
//   heat serious           the thermal state
//   alerts 3W 5min         the switch and thresholds of alerts
//   run 100                so many seconds pass, with a frame every ten
//   sleep 28800            it sleeps so long, and wakes
//   restart                the program ends and starts again
//
// What came of it is told in lines, too.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "worlds/model_world.h"

namespace embrix {

class DayScript {
 public:
  explicit DayScript(Records records);

  void play(std::string_view script);

  // The ledger, each day of the archive, the discharge and each alert with its time.
  std::vector<std::string> told() const;

  ModelWorld world;
  double clock = kMorning;  // of the newest frame

 private:
  void playLine(std::string_view line);
  void run(double seconds);
  void sleep(double seconds);
  void draw(std::string_view list);

  Frame next_;
  std::vector<std::string> alerts_;
};

}  // namespace embrix
