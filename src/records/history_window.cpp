#include "records/history_window.h"

namespace embrix {

bool HistoryWindow::hasOtherPoints(const History& history) const {
  return history.removed() > next_ || history.removed() + history.points().size() < next_;
}

std::size_t HistoryWindow::earlierPoints(const History& history, double oldest) const {
  if (oldest >= oldest_ || first() <= history.removed()) return 0;
  const std::size_t before = first() - history.removed();
  for (std::size_t i = 0; i < before; ++i) {
    if (history.points()[i].time >= oldest) return before - i;
  }
  return 0;
}

}  // namespace embrix
