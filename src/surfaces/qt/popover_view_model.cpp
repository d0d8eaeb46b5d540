#include "surfaces/qt/popover_view_model.h"

#include <utility>

namespace embrix {

namespace {

const std::vector<ServerTileContent>& tilesOf(const std::optional<ServersContent>& servers) {
  static const std::vector<ServerTileContent> kNone;
  return servers ? servers->tiles : kNone;
}

}  // namespace

PopoverViewModel::PopoverViewModel(PowerModel& model, DesktopActions desktop, QObject* parent)
    : QObject(parent), popover_(model, std::move(desktop)) {
  leftRunningRows_.show(popover_.leftRunning()->rows);
  awakeRows_.show(*popover_.awake());
  serverTiles_.show(tilesOf(*popover_.servers()));

  subscriptions_.push_back(
      popover_.hero().subscribe([this](const HeroContent&) { emit heroChanged(); }));
  subscriptions_.push_back(
      popover_.facts().subscribe([this](const FactsContent&) { emit factsChanged(); }));
  subscriptions_.push_back(popover_.leftRunning().subscribe([this](const auto& content) {
    leftRunningRows_.show(content.rows);
    emit leftRunningChanged();
  }));
  subscriptions_.push_back(
      popover_.awake().subscribe([this](const auto& rows) { awakeRows_.show(rows); }));
  subscriptions_.push_back(popover_.servers().subscribe([this](const auto& servers) {
    serverTiles_.show(tilesOf(servers));
    emit serversChanged();
  }));
  popover_.onFloatAway([this](const std::string& row, const std::string& text) {
    emit floatAway(toQString(row), toQString(text));
  });
}

QString PopoverViewModel::figure(double watts) {
  return toQString(HeroContent::figure(watts));
}

void PopoverViewModel::open(const QString& section) {
  const auto page = dashboardSectionOf(section.toStdString());
  if (page) popover_.open(*page);
}

void PopoverViewModel::calmOrRestoreCulprit() {
  popover_.calmOrRestoreCulprit();
}

void PopoverViewModel::chooseForCulprit(const QString& action) {
  popover_.chooseForCulprit(action.toStdString());
}

void PopoverViewModel::askToStopRow(const QString& id) {
  popover_.askToStopRow(id.toStdString());
}

void PopoverViewModel::askToStopAll() {
  popover_.askToStopAll();
}

void PopoverViewModel::chooseForRow(const QString& id, const QString& action) {
  popover_.chooseForRow(id.toStdString(), action.toStdString());
}

void PopoverViewModel::askToStopBlocker(const QString& id) {
  popover_.askToStopBlocker(id.toStdString());
}

void PopoverViewModel::openServer(const QString& id) {
  popover_.openServer(id.toStdString());
}

void PopoverViewModel::chooseForServer(const QString& id, const QString& action) {
  popover_.chooseForServer(id.toStdString(), action.toStdString());
}

void PopoverViewModel::chooseSetting(const QString& action) {
  popover_.chooseSetting(action.toStdString());
}

}  // namespace embrix
