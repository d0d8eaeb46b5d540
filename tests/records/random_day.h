// Frames of a day in which nearly everything happens: groups that come and go, sleep, clocks that
// are set by a second or by a year, both ways.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

#include "base/shared_text.h"

namespace embrix {

class RandomDay {
 public:
  explicit RandomDay(std::uint64_t seed) : random_(seed) {}

  static constexpr double kYear = 31'536'000;

  double now = 1'750'000'000;

  // True once in so many calls.
  bool once(int in) { return below(in) == 0; }
  int below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random_); }
  double between(double least, double most) {
    return std::uniform_real_distribution<double>(least, most)(random_);
  }
  template <typename Value>
  Value oneOf(std::initializer_list<Value> values) {
    return values.begin()[below(static_cast<int>(values.size()))];
  }

  // To the next frame's time; tells by how much the clock moved.
  double step() {
    double seconds = between(1.5, 2.5);
    switch (below(60)) {
      case 0:
        seconds = 0;
        break;  // two frames of one time
      case 1:
        seconds = -0.0005;
        break;  // a clock that is slewed
      case 2:
        seconds = between(-20, -1);
        break;  // set back a little
      case 3:
        seconds = between(30, 900);
        break;  // a nap
      case 4:
        seconds = between(3600, 40'000);
        break;
      case 5:
        seconds = once(2) ? kYear : -kYear;
        break;
      case 6:
        seconds = 30;
        break;
      case 7:
        seconds = 10;
        break;
      default:
        break;
    }
    // Quarters of a second: sums of them are exact, so that bounds are met to the bit.
    if (once(2)) seconds = std::round(seconds * 4) / 4;
    now += seconds;
    return seconds;
  }

  struct Group {
    SharedText key;
    double watts;
  };

  // Largest first, as a frame has them.
  std::vector<Group> groups(int most = 8) {
    for (int i = 0; i < 2; ++i) {
      if (once(6)) present_[static_cast<std::size_t>(below(kKinds))].flip();
    }
    std::vector<Group> made;
    for (std::size_t i = 0; i < kKinds && made.size() < static_cast<std::size_t>(most); ++i) {
      if (!present_[i] || once(9)) continue;
      made.push_back({SharedText("group " + std::to_string(i)), watts()});
    }
    std::stable_sort(made.begin(), made.end(),
                     [](const Group& a, const Group& b) { return a.watts > b.watts; });
    return made;
  }

  double watts() {
    switch (below(40)) {
      case 0:
        return 0;
      case 1:
        return 3;  // a usual threshold
      case 2:
        return 0.05;
      case 3:
        return 0.02;
      case 4:
        return between(1000, 1e6);
      default:
        return between(0.01, 12);
    }
  }

 private:
  static constexpr int kKinds = 12;
  std::mt19937_64 random_;
  std::vector<bool> present_ = std::vector<bool>(kKinds, false);
};

}  // namespace embrix
