// The toolkit that every test of this program runs in: no screen, no warning.

#include <gtest/gtest.h>

#include <QApplication>
#include <QQuickWindow>

#include <memory>
#include <string>
#include <vector>

namespace {

std::vector<std::string>& warnings() {
  static std::vector<std::string> all;
  return all;
}

void note(QtMsgType type, const QMessageLogContext&, const QString& text) {
  // There is no screen on which a window could have its place.
  if (text.startsWith("This plugin does not support")) return;
  if (type == QtWarningMsg || type == QtCriticalMsg) warnings().push_back(text.toStdString());
}

class Toolkit final : public testing::Environment {
 public:
  void SetUp() override {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "1");
    qInstallMessageHandler(note);
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    application_ = std::make_unique<QApplication>(count_, arguments_);
  }
  void TearDown() override { application_.reset(); }

 private:
  int count_ = 1;
  char name_[6] = "tests";
  char* arguments_[2] = {name_, nullptr};
  std::unique_ptr<QApplication> application_;
};

class NoWarnings final : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override { warnings().clear(); }
  void OnTestEnd(const testing::TestInfo&) override {
    for (const std::string& warning : warnings()) ADD_FAILURE() << "the toolkit warns: " << warning;
  }
};

[[maybe_unused]] const bool isInstalled = [] {
  testing::AddGlobalTestEnvironment(new Toolkit);  // the library owns both
  testing::UnitTest::GetInstance()->listeners().Append(new NoWarnings);
  return true;
}();

}  // namespace
