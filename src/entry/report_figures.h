// The figures that both reports show.
#pragma once

#include <optional>

#include "frame/frame.h"

namespace embrix {

// The sum over all groups, watts.
double processWatts(const Frame& frame);

// What the battery says that the whole machine draws, watts; absent without a battery or a figure.
std::optional<double> systemWatts(const Frame& frame);

// Processes below a hundredth of a watt are left out of a report.
bool isWorthALine(const ProcessRow& row);

}  // namespace embrix
