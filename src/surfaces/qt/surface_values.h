// What every view of one program shares: colours, motions, fonts, icons, and what is known of the
// user. There is one for each engine; views reach its parts as the singletons EX, Motion and
// EXFont. Main thread only.
#pragma once

#include <functional>
#include <optional>

#include <QFont>
#include <QObject>
#include <QQmlEngine>

#include "surfaces/qt/icon_cache.h"
#include "surfaces/qt/motion_values.h"
#include "surfaces/qt/palette_values.h"

namespace embrix {

// Fonts by kind.
class FontValues final : public QObject {
  Q_OBJECT
  QML_NAMED_ELEMENT(EXFont)
  QML_SINGLETON

 public:
  explicit FontValues(QObject* parent) : QObject(parent) {}
  static FontValues* create(QQmlEngine* engine, QJSEngine*);

  // Sizes in points; `tracking` is what is added between two letters, in points.
  Q_INVOKABLE static QFont display(double size, int weight, double tracking = 0);
  Q_INVOKABLE static QFont text(double size, int weight);
  // Text whose digits are all equally wide.
  Q_INVOKABLE static QFont digits(double size, int weight);
  Q_INVOKABLE static QFont mono(double size);
  // Small spaced capitals.
  Q_INVOKABLE static QFont eyebrow(double size);
  Q_INVOKABLE static QFont underlined(double size, int weight);
};

class SurfaceValues final : public QObject {
  Q_OBJECT

 public:
  // The engine's singletons are this object's parts from now on; it goes with the engine.
  explicit SurfaceValues(QQmlEngine& engine);

  // Those of that engine, or of the engine that made the item; null where there are none.
  static SurfaceValues* of(const QQmlEngine* engine);
  static SurfaceValues* of(const QObject* item);

  PaletteValues& palette() { return palette_; }
  MotionValues& motion() { return motion_; }
  FontValues& fonts() { return fonts_; }
  IconCache& icons() { return icons_; }

  // Seconds since the user's last input of any kind; absent while nobody knows.
  std::optional<double> idle() const { return idle_ ? idle_() : std::nullopt; }
  void setIdle(std::function<std::optional<double>()> idle) { idle_ = std::move(idle); }

 private:
  PaletteValues palette_{this};
  MotionValues motion_{this};
  FontValues fonts_{this};
  IconCache icons_;
  std::function<std::optional<double>()> idle_;
};

}  // namespace embrix
