#include "surfaces/qt/icon_items.h"
#include "drawn_item.h"

#include <gtest/gtest.h>

#include <QFileIconProvider>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QQmlComponent>
#include <QQuickWindow>

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>

#include "fakes/scratch_folder.h"
#include "surfaces/app_icon_art.h"
#include "surfaces/qt/icon_cache.h"
#include "surfaces/qt/picture_painter.h"
#include "surfaces/qt/surface_engine.h"

namespace embrix {
namespace {

using Kind = ApplicationIcon::Kind;

constexpr const char* kPath = "/usr/share/applications/editor.desktop";

class IconTest : public testing::Test {
 protected:
  IconTest() {
    QIcon::setThemeSearchPaths({QString::fromStdString(folder_.path())});
    QIcon::setThemeName(QStringLiteral("hicolor"));
  }
  ~IconTest() override {
    QIcon::setThemeName(theme_);
    QIcon::setThemeSearchPaths(themeFolders_);
  }

  // The file of a picture in one colour.
  std::string picture(const std::string& name, const QColor& color, QSize size = {48, 48}) {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    const std::string path = folder_ / name;
    EXPECT_TRUE(image.save(QString::fromStdString(path)));
    return path;
  }
  IconCache::Lookup lookup() {
    return [this](const std::string& path) {
      ++lookups_;
      const auto found = icons_.find(path);
      return found == icons_.end() ? std::nullopt : std::optional(found->second);
    };
  }
  ScratchFolder folder_;
  QString theme_ = QIcon::themeName();
  QStringList themeFolders_ = QIcon::themeSearchPaths();
  std::map<std::string, ApplicationIcon> icons_;
  int lookups_ = 0;
};

// --- The cache ---

class IconCacheTest : public IconTest {
 protected:
  IconCacheTest() { cache_.setLookup(lookup()); }
  QIcon icon() { return cache_.icon(QString::fromLatin1(kPath)); }

  IconCache cache_;
};

TEST_F(IconCacheTest, APictureIsReadFromItsFile) {
  icons_[kPath] = {Kind::picture, picture("editor.png", Qt::red)};
  ASSERT_FALSE(icon().isNull());
  EXPECT_EQ(icon().pixmap(32).toImage().pixelColor(16, 16), QColor(Qt::red));
}

TEST_F(IconCacheTest, ANameIsLookedUpInTheTheme) {
  std::filesystem::create_directories(folder_ / "hicolor/48x48/apps");
  std::ofstream(folder_ / "hicolor/index.theme")
      << "[Icon Theme]\nName=Hicolor\nDirectories=48x48/apps\n[48x48/apps]\nSize=48\nType=Fixed\n";
  picture("hicolor/48x48/apps/org.example.editor.png", Qt::blue);
  icons_[kPath] = {Kind::named, "org.example.editor"};
  ASSERT_FALSE(icon().isNull());
  EXPECT_EQ(icon().pixmap(48).toImage().pixelColor(16, 16), QColor(Qt::blue));
}

TEST_F(IconCacheTest, ABundlesIconIsAskedOfTheSystem) {
  icons_[kPath] = {Kind::ofBundle, folder_.path()};
  const QIcon system = QFileIconProvider().icon(QFileInfo(QString::fromStdString(folder_.path())));
  EXPECT_EQ(icon().isNull(), system.pixmap(32).isNull());
  EXPECT_EQ(icon().pixmap(32).toImage(), system.pixmap(32).toImage());
}

TEST_F(IconCacheTest, APathIsLookedUpOnceAndNeverForgotten) {
  const std::string file = picture("editor.png", Qt::red);
  icons_[kPath] = {Kind::picture, file};
  icon();
  icons_.clear();
  std::filesystem::remove(file);
  EXPECT_EQ(icon().pixmap(32).toImage().pixelColor(16, 16), QColor(Qt::red));
  EXPECT_EQ(lookups_, 1);
}

TEST_F(IconCacheTest, WhatHasNoIconIsNotLookedUpAgain) {
  EXPECT_TRUE(icon().isNull());
  icons_[kPath] = {Kind::picture, picture("editor.png", Qt::red)};
  EXPECT_TRUE(icon().isNull());
  EXPECT_EQ(lookups_, 1);
}

TEST_F(IconCacheTest, APictureThatCannotBeDrawnIsNone) {
  std::ofstream(folder_ / "noise.png") << "no picture at all";
  const ApplicationIcon hostile[] = {
      {Kind::picture, folder_ / "noise.png"},
      {Kind::picture, folder_ / "missing.png"},
      {Kind::picture, folder_.path()},
      {Kind::picture, ""},
      {Kind::named, ""},
      {Kind::named, "a name that no theme knows"},
      {Kind::named, "\xff\xfe"},
  };
  int number = 0;
  for (const ApplicationIcon& wrong : hostile) {
    const std::string path = kPath + std::to_string(++number);
    icons_[path] = wrong;
    EXPECT_TRUE(cache_.icon(QString::fromStdString(path)).isNull()) << wrong.text;
  }
}

TEST_F(IconCacheTest, WithoutAnybodyToAskThereAreNone) {
  IconCache cache;
  EXPECT_TRUE(cache.icon(QString::fromLatin1(kPath)).isNull());
  icons_[kPath] = {Kind::picture, picture("editor.png", Qt::red)};
  cache.setLookup(lookup());
  EXPECT_FALSE(cache.icon(QString::fromLatin1(kPath)).isNull());
  EXPECT_TRUE(cache.icon({}).isNull());
  EXPECT_EQ(lookups_, 1) << "an empty path is nobody's";
}

// --- The icon of a group ---

class GroupIconTest : public IconTest {
 protected:
  GroupIconTest() {
    engine_.values().icons().setLookup(lookup());
    window_.resize(200, 200);
    window_.show();
  }
  QQuickItem& make(const char* path) {
    item_ = engine_.make(QStringLiteral("GroupIcon"),
                         {{QStringLiteral("bundlePath"), QString::fromUtf8(path)},
                          {QStringLiteral("symbol"), QStringLiteral("terminal")}});
    item_->setParentItem(window_.contentItem());
    item_->setSize({item_->implicitWidth(), item_->implicitHeight()});
    return *item_;
  }
  BundleIconItem& image() { return *item_->findChild<BundleIconItem*>(); }
  // What of the view is visible, by its class in views.
  std::string shown() {
    std::string result;
    for (const QQuickItem* child : item_->childItems()) {
      if (child->isVisible())
        result += child->inherits("embrix::BundleIconItem") ? "icon" : "symbol";
    }
    return result;
  }

  SurfaceEngine engine_;
  QQuickWindow window_;
  std::unique_ptr<QQuickItem> item_;
};

TEST_F(GroupIconTest, AnApplicationShowsItsIcon) {
  icons_[kPath] = {Kind::picture, picture("editor.png", Qt::red)};
  make(kPath);
  EXPECT_EQ(shown(), "icon");
  EXPECT_EQ(image().width(), 32);
  EXPECT_EQ(drawn(image()).pixelColor(16, 16), QColor(Qt::red));
}

TEST_F(GroupIconTest, WhatHasNoIconShowsItsSymbol) {
  for (const char* path : {"", kPath, "/opt/\xc3\x28"}) {
    make(path);
    EXPECT_EQ(shown(), "symbol") << path;
    EXPECT_EQ(drawn(image()).pixelColor(16, 16).alpha(), 0) << path;
  }
}

TEST_F(GroupIconTest, ARowThatBecomesAnothersShowsThatOnesIcon) {
  icons_[kPath] = {Kind::picture, picture("editor.png", Qt::red)};
  icons_["/other.desktop"] = {Kind::picture, picture("other.png", Qt::blue)};
  QQuickItem& icon = make(kPath);
  icon.setProperty("bundlePath", QStringLiteral("/other.desktop"));
  EXPECT_EQ(drawn(image()).pixelColor(16, 16), QColor(Qt::blue));
  icon.setProperty("bundlePath", QString());
  EXPECT_EQ(shown(), "symbol");
  icon.setProperty("bundlePath", QString::fromLatin1(kPath));
  EXPECT_EQ(shown(), "icon");
  EXPECT_EQ(lookups_, 2);
}

TEST_F(GroupIconTest, ASmallOrOblongPictureFillsTheSquareInItsProportions) {
  icons_[kPath] = {Kind::picture, picture("wide.png", Qt::red, {16, 8})};
  make(kPath);
  const QImage image = drawn(this->image());
  EXPECT_EQ(image.pixelColor(2, 16), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(29, 16), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(16, 4).alpha(), 0);
}

// --- The program's own ---

TEST(AppIconViewTest, TheProgramsIconFillsTheMiddle) {
  QImage expected(64, 64, QImage::Format_ARGB32_Premultiplied);
  expected.fill(Qt::transparent);
  QPainter painter(&expected);
  painter.scale(64 / IconArt::kUnits, 64 / IconArt::kUnits);
  PicturePainter::paint(painter, IconArt::draw());
  painter.end();

  AppIconItem icon;
  icon.setSize({128, 64});
  QImage image(128, 64, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter own(&image);
  icon.paint(&own);
  own.end();
  EXPECT_EQ(image.copy(32, 0, 64, 64), expected);
  EXPECT_EQ(image.pixelColor(10, 32).alpha(), 0);
  EXPECT_GT(image.pixelColor(64, 32).alpha(), 0);
}

TEST(AppIconViewTest, ViewsKnowIt) {
  SurfaceEngine engine;
  QQmlComponent view(&engine.qml());
  view.setData("import Embrix\nAppIconView { width: 40; height: 40 }", {});
  const std::unique_ptr<QObject> made(view.create());
  EXPECT_NE(qobject_cast<AppIconItem*>(made.get()), nullptr);
}

}  // namespace
}  // namespace embrix
