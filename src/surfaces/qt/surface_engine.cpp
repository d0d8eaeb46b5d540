#include "surfaces/qt/surface_engine.h"

#include <QtQml/qqmlextensionplugin.h>
#include <QQmlComponent>

// The registration that the build writes for the classes of this library. A static library's own is
// left out by the linker unless somebody asks for it.
void qml_register_types_Embrix();

// The macro stands in no namespace.
static void loadFonts() {
  Q_INIT_RESOURCE(fonts);
}

namespace embrix {

namespace {

SurfaceValues& valuesOf(QQmlEngine& engine) {
  // The engine owns them.
  return *new SurfaceValues(engine);  // NOLINT(cppcoreguidelines-owning-memory)
}

}  // namespace

SurfaceEngine::SurfaceEngine() : values_(valuesOf(engine_)) {
  loadFonts();
  qml_register_types_Embrix();
  engine_.addImportPath(QStringLiteral("qrc:/"));
}

std::unique_ptr<QQuickItem> SurfaceEngine::make(const QString& view,
                                                const QVariantMap& properties) {
  QQmlComponent component(&engine_, QUrl(QStringLiteral("qrc:/Embrix/%1.qml").arg(view)));
  std::unique_ptr<QObject> made;
  if (component.isReady()) made.reset(component.createWithInitialProperties(properties));
  for (const QQmlError& error : component.errors()) qWarning("%s", qPrintable(error.toString()));
  auto* item = qobject_cast<QQuickItem*>(made.get());
  if (item == nullptr) return nullptr;
  made.release();
  QQmlEngine::setObjectOwnership(item, QQmlEngine::CppOwnership);
  return std::unique_ptr<QQuickItem>(item);
}

}  // namespace embrix
