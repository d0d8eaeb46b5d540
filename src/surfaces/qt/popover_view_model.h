// The popover as its view reads it: maps and lists of ready-made values, and what may be done. It
// decides nothing; the Popover behind it does. Main thread only.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QVariant>

#include "surfaces/popover.h"
#include "surfaces/qt/confirmation_view_model.h"
#include "surfaces/qt/row_model.h"

namespace embrix {

class PopoverViewModel final : public QObject {
  Q_OBJECT
  QML_ANONYMOUS
  Q_PROPERTY(QVariant hero READ hero NOTIFY heroChanged)
  Q_PROPERTY(QVariant facts READ facts NOTIFY factsChanged)
  Q_PROPERTY(QVariant leftRunning READ leftRunning NOTIFY leftRunningChanged)
  Q_PROPERTY(QVariant servers READ servers NOTIFY serversChanged)  // null without a server
  Q_PROPERTY(QAbstractItemModel* leftRunningRows READ leftRunningRows CONSTANT)
  Q_PROPERTY(QAbstractItemModel* awakeRows READ awakeRows CONSTANT)
  Q_PROPERTY(QAbstractItemModel* serverTiles READ serverTiles CONSTANT)
  Q_PROPERTY(QVariant settingsMenu READ settingsMenu CONSTANT)
  Q_PROPERTY(embrix::ConfirmationViewModel* confirmation READ confirmation CONSTANT)

 public:
  PopoverViewModel(PowerModel& model, DesktopActions desktop, QObject* parent = nullptr);

  QVariant hero() const { return toVariant(*popover_.hero()); }
  QVariant facts() const { return toVariant(*popover_.facts()); }
  QVariant leftRunning() const { return toVariant(*popover_.leftRunning()); }
  QVariant servers() const { return toVariant(*popover_.servers()); }
  QAbstractItemModel* leftRunningRows() { return &leftRunningRows_; }
  QAbstractItemModel* awakeRows() { return &awakeRows_; }
  QAbstractItemModel* serverTiles() { return &serverTiles_; }
  QVariant settingsMenu() const { return toVariant(Popover::settingsMenu()); }
  ConfirmationViewModel* confirmation() { return &confirmation_; }

  // How the hero's figure is written, also on its way to another.
  Q_INVOKABLE static QString figure(double watts);

  Q_INVOKABLE void dismiss() { popover_.dismiss(); }
  // The page by its word.
  Q_INVOKABLE void open(const QString& section);
  Q_INVOKABLE void calmOrRestoreCulprit();
  Q_INVOKABLE void chooseForCulprit(const QString& action);
  Q_INVOKABLE void askToStopRow(const QString& id);
  Q_INVOKABLE void askToStopAll();
  Q_INVOKABLE void chooseForRow(const QString& id, const QString& action);
  Q_INVOKABLE void askToStopBlocker(const QString& id);
  Q_INVOKABLE void openServer(const QString& id);
  Q_INVOKABLE void chooseForServer(const QString& id, const QString& action);
  Q_INVOKABLE void chooseSetting(const QString& action);

 signals:
  void heroChanged();
  void factsChanged();
  void leftRunningChanged();
  void serversChanged();
  // A row that was stopped lets this rise.
  void floatAway(const QString& row, const QString& text);

 private:
  Popover popover_;
  ConfirmationViewModel confirmation_{popover_.confirmation(), this};
  RowModel leftRunningRows_{this};
  RowModel awakeRows_{this};
  RowModel serverTiles_{this};
  std::vector<Subscription> subscriptions_;
};

}  // namespace embrix
