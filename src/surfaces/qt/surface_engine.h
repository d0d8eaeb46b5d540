// The engine that makes the views of one run, with the values that they share. Main thread only.
#pragma once

#include <memory>

#include <QObject>
#include <QQmlEngine>
#include <QQuickItem>
#include <QString>
#include <QVariantMap>

#include "surfaces/qt/surface_values.h"

namespace embrix {

class SurfaceEngine {
 public:
  SurfaceEngine();
  SurfaceEngine(const SurfaceEngine&) = delete;
  SurfaceEngine& operator=(const SurfaceEngine&) = delete;

  SurfaceValues& values() { return values_; }
  QQmlEngine& qml() { return engine_; }

  // The view of that name, with those of its properties set. Null, with the toolkit's own warning,
  // when the view is faulty.
  std::unique_ptr<QQuickItem> make(const QString& view, const QVariantMap& properties);

 private:
  QQmlEngine engine_;
  SurfaceValues& values_;
};

}  // namespace embrix
