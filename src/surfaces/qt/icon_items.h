// Paints icons: the program's own, and those of other applications. Main thread only.
#pragma once

#include <QIcon>
#include <QQuickPaintedItem>
#include <QString>

namespace embrix {

// The program's icon, drawn by code, in the middle of the item and as large as fits.
class AppIconItem : public QQuickPaintedItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(AppIconView)

 public:
  explicit AppIconItem(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;
};

// The icon of another application; nothing where there is none to be had.
class BundleIconItem : public QQuickPaintedItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(BundleIcon)
  // As AppInfo has it; empty for what is no application.
  Q_PROPERTY(QString bundlePath READ bundlePath WRITE setBundlePath NOTIFY changed)
  Q_PROPERTY(bool isFound READ isFound NOTIFY changed)

 public:
  explicit BundleIconItem(QQuickItem* parent = nullptr);

  const QString& bundlePath() const { return bundlePath_; }
  void setBundlePath(const QString& bundlePath);
  bool isFound() const { return !icon_.isNull(); }

  void paint(QPainter* painter) override;

 signals:
  void changed();

 protected:
  void componentComplete() override;

 private:
  void find();

  QString bundlePath_;
  QIcon icon_;
};

}  // namespace embrix
