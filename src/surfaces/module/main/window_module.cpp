// The module of the windows: everything that only a run with windows needs, with the toolkit.

#include "surfaces/window_module.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include <QApplication>
#include <QQuickWindow>
#include <QSysInfo>

#include "hosts/qt/toolkit_loop.h"
#include "surfaces/module/menu_bar_run.h"
#include "surfaces/qt/snapshot.h"

namespace embrix {

namespace {

// What the toolkit says where nothing is wrong: of a session without a folder of its own for
// sockets, and of a picture's window, which has no place on a screen.
constexpr std::string_view kIdleTalk[] = {"QStandardPaths: XDG_RUNTIME_DIR not set",
                                          "This plugin does not support"};

QtMessageHandler toolkitsHandler = nullptr;

void passOn(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  const std::string said = text.toStdString();
  for (const std::string_view idle : kIdleTalk) {
    if (std::string_view(said).substr(0, idle.size()) == idle) return;
  }
  toolkitsHandler(type, context, text);
}

// A toolkit for one run. It wants the arguments of a main function for as long as it lives.
class Toolkit {
 public:
  Toolkit() {
    if (toolkitsHandler == nullptr) toolkitsHandler = qInstallMessageHandler(passOn);
    // The surfaces are small and mostly still: drawn by the processor they cost less memory, and
    // less power, than waking the graphics chip does.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QCoreApplication::setApplicationName(QStringLiteral("Embrix"));
    QGuiApplication::setDesktopFileName(QStringLiteral("app.embrix.Embrix"));
    application_ = std::make_unique<QApplication>(count_, arguments_);
    // The menu bar item stays when the last window goes.
    QGuiApplication::setQuitOnLastWindowClosed(false);
  }

 private:
  std::string name_ = "embrix";
  int count_ = 1;
  char* arguments_[2] = {name_.data(), nullptr};
  std::unique_ptr<QApplication> application_;
};

// Pictures need no screen, and are as fine as on the best of them.
void drawOffScreen() {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  if (!qEnvironmentVariableIsSet("QT_SCALE_FACTOR")) qputenv("QT_SCALE_FACTOR", "2");
}

// The toolkit ends the program when it finds no screen.
bool hasScreen() {
  if (QSysInfo::kernelType() != QLatin1String("linux")) return true;
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    if (!qEnvironmentVariableIsEmpty(name)) return true;
  }
  return false;
}

bool run(const WindowRun& run) {
  if (!hasScreen()) return false;
  const Toolkit toolkit;
  MenuBarRun(run).run();
  return true;
}

bool snapshot(PowerModel& model, Scheduler& scheduler, const std::string& folder) {
  drawOffScreen();
  const Toolkit toolkit;
  SurfaceEngine engine;
  return Snapshot::render(engine, model, scheduler, folder);
}

bool renderIcon(const std::string& path) {
  return Snapshot::renderIcon(path);
}

}  // namespace

}  // namespace embrix

extern "C" __attribute__((visibility("default"))) const embrix::WindowModule* embrixWindowModule() {
  static constexpr embrix::WindowModule kModule = {
      .run = embrix::run, .snapshot = embrix::snapshot, .renderIcon = embrix::renderIcon};
  return &kModule;
}
