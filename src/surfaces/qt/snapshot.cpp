#include "surfaces/qt/snapshot.h"

#include <utility>

#include <QColorSpace>
#include <QDir>
#include <QEventLoop>
#include <QImage>
#include <QPainter>
#include <QTimer>

#include "surfaces/app_icon_art.h"
#include "surfaces/qt/picture_painter.h"
#include "surfaces/qt/popover_window.h"

namespace embrix {

namespace {

void wait(double seconds) {
  QEventLoop loop;
  QTimer::singleShot(static_cast<int>(seconds * 1000), &loop, &QEventLoop::quit);
  loop.exec();
}

bool write(QImage image, const QString& path) {
  if (image.isNull()) return false;
  if (image.colorSpace().isValid()) {
    image.convertToColorSpace(QColorSpace::SRgb);
  } else {
    image.setColorSpace(QColorSpace::SRgb);
  }
  return image.save(path, "PNG");
}

struct Appearance {
  EX::Appearance appearance;
  const char* word;
};

constexpr Appearance kAppearances[] = {{EX::Appearance::light, "light"},
                                       {EX::Appearance::dark, "dark"}};

bool renderPopover(SurfaceEngine& engine, PowerModel& model, Scheduler& scheduler,
                   const QString& path) {
  PopoverWindow popover(engine, model, scheduler, {}, PopoverWindow::Form::picture);
  popover.open(std::nullopt);
  wait(Snapshot::kWait);
  const bool isWritten = write(popover.window().grabWindow(), path);
  popover.close();
  return isWritten;
}

}  // namespace

bool Snapshot::render(SurfaceEngine& engine, PowerModel& model, Scheduler& scheduler,
                      const std::string& folder) {
  const QDir directory(toQString(folder));
  if (!directory.mkpath(QStringLiteral("."))) return false;
  engine.values().motion().setFrozen(true);
  bool isWritten = true;
  for (const auto& [appearance, word] : kAppearances) {
    engine.values().palette().setAppearance(appearance);
    const QString name = QStringLiteral("popover-%1.png").arg(QLatin1String(word));
    isWritten &= renderPopover(engine, model, scheduler, directory.filePath(name));
  }
  return isWritten;
}

bool Snapshot::renderIcon(const std::string& path) {
  constexpr int kEdge = static_cast<int>(IconArt::kUnits);
  QImage image(kEdge, kEdge, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  {
    QPainter painter(&image);
    PicturePainter::paint(painter, IconArt::draw());
  }
  return write(std::move(image), toQString(path));
}

}  // namespace embrix
