// A pending question as a view reads it, and its answer. Main thread only.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QVariantMap>

#include "surfaces/confirmation.h"

namespace embrix {

class ConfirmationViewModel final : public QObject {
  Q_OBJECT
  QML_ANONYMOUS
  Q_PROPERTY(bool isPending READ isPending NOTIFY changed)
  // Of the pending question, or of the last one while its card goes.
  Q_PROPERTY(QString question READ question NOTIFY changed)
  Q_PROPERTY(QString message READ message NOTIFY changed)  // empty without one
  Q_PROPERTY(QString actionTitle READ actionTitle NOTIFY changed)

 public:
  ConfirmationViewModel(Confirmation& confirmation, QObject* parent);

  bool isPending() const { return confirmation_.request()->has_value(); }
  QString question() const { return question_; }
  QString message() const { return message_; }
  QString actionTitle() const { return actionTitle_; }

  Q_INVOKABLE void answer(bool confirmed) { confirmation_.answer(confirmed); }

 signals:
  void changed();

 private:
  void read(const std::optional<Confirmation::Request>& request);

  Confirmation& confirmation_;
  QString question_;
  QString message_;
  QString actionTitle_;
  Subscription subscription_;
};

}  // namespace embrix
