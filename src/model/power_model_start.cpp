// What happens once, before the first frame.

#include <utility>

#include "model/power_model.h"

namespace embrix {

namespace {

constexpr double kHistoryKept = 1800;  // seconds of history that survive a restart

}  // namespace

void PowerModel::start() {
  shared_ = this;
  loadRecords();
  seedBaseline();
  listen();
  notifications_.install([](NotificationRouter::Action action, const std::string& groupKey) {
    if (PowerModel* model = shared()) model->handle(action, groupKey);
  });
  askForFrame();
}

void PowerModel::loadRecords() {
  const Changes changes(*this);
  const HistoryStore& store = ports_.store;
  store.removeLeftovers();
  history_.change([&](History& history) {
    for (HistoryPoint& point : store.load(ports_.scheduler.wallTime() - kHistoryKept)) {
      history.append(std::move(point));
    }
  });
  // What an earlier day's file holds stands in the archive since its last save.
  auto ledger = store.loadLedger();
  if (ledger && ledger->day == ledger_->day) ledger_ = std::move(*ledger);
  if (auto archive = store.loadArchive()) archive_ = std::move(*archive);
  // Whether it goes on, the first frame on battery tells.
  if (auto session = store.loadDischarge()) discharge_ = std::move(session);
  if (auto baseline = store.loadBaseline()) baseline_ = std::move(*baseline);
}

void PowerModel::seedBaseline() {
  if (!baseline_->samples().empty()) return;
  baseline_.change([&](PowerBaseline& baseline) {
    for (const HistoryPoint& point : history_->points()) {
      baseline.add(point.totalWatts(), point.time);
    }
    return !baseline.samples().empty();
  });
}

void PowerModel::listen() {
  ports_.events.listen({.willSleep =
                            [] {
                              if (PowerModel* model = shared()) model->willSleep();
                            },
                        .didWake =
                            [] {
                              if (PowerModel* model = shared()) model->didWake();
                            },
                        .willTerminate =
                            [] {
                              if (PowerModel* model = shared()) model->restoreAllCalmed();
                            },
                        .openConsole =
                            [] {
                              if (PowerModel* model = shared()) model->openConsole();
                            }});
}

}  // namespace embrix
