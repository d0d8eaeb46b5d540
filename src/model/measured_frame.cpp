#include "model/measured_frame.h"

#include <cmath>
#include <optional>

namespace embrix {

namespace {

// The same bound serves all figures: percents, degrees, wakeups and watt-hours are far below it.
bool isMeasured(double figure) {
  return std::abs(figure) <= MeasuredFrame::kMostWatts;  // NaN is not
}

void keepMeasured(double& figure) {
  if (!isMeasured(figure)) figure = 0;
}

void keepMeasured(std::optional<double>& figure) {
  if (figure && !isMeasured(*figure)) figure.reset();
}

void keepMeasured(ProcessRow& row) {
  keepMeasured(row.watts);
  keepMeasured(row.cpuPercent);
  keepMeasured(row.wakeupsPerSecond);
  keepMeasured(row.gpuWatts);
}

void keepSum(double& sum, const AppGroup& group, double ProcessRow::*figure) {
  if (isMeasured(sum)) return;
  sum = 0;
  for (const ProcessRow& row : group.processes) sum += row.*figure;
}

void keepMeasured(AppGroup& group) {
  for (ProcessRow& row : group.processes) keepMeasured(row);
  keepSum(group.watts, group, &ProcessRow::watts);
  keepSum(group.cpuPercent, group, &ProcessRow::cpuPercent);
  keepSum(group.wakeupsPerSecond, group, &ProcessRow::wakeupsPerSecond);
}

void keepMeasured(BatteryReading& battery) {
  keepMeasured(battery.systemWatts);
  keepMeasured(battery.remainingWh);
  keepMeasured(battery.fullWh);
}

}  // namespace

void MeasuredFrame::keepOnly(Frame& frame, double now) {
  const bool hasDate = frame.date >= 0 && frame.date <= kLatestDate;
  if (!hasDate) frame.date = now;
  for (AppGroup& group : frame.groups) keepMeasured(group);
  if (frame.battery) keepMeasured(*frame.battery);
  keepMeasured(frame.temperature);
  keepMeasured(frame.gpuUtilization);
}

}  // namespace embrix
