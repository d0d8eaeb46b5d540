#include "surfaces/qt/typefaces.h"

#include <map>
#include <string>

#include <QFontDatabase>
#include <QGuiApplication>
#include <QScreen>
#include <QString>

namespace embrix {

namespace {

// The family under which the toolkit has the file; the system's own font stands in for one that
// cannot be read.
const QString& familyOf(const std::string& file) {
  static std::map<std::string, QString> known;
  const auto found = known.find(file);
  if (found != known.end()) return found->second;
  const int id = QFontDatabase::addApplicationFont(
      QStringLiteral(":/embrix/fonts/%1.ttf").arg(QString::fromStdString(file)));
  const QStringList families = QFontDatabase::applicationFontFamilies(id);
  return known.emplace(file, families.value(0)).first->second;
}

// The toolkit counts 72 points to so many pixels.
double pixelsPerInch() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? 96 : screen->logicalDotsPerInchY();
}

QFont build(const EXFont& wanted) {
  const EXFont::Cut cut = wanted.cut();
  QFont font(familyOf(cut.file));
  font.setPointSizeF(wanted.size * 72 / pixelsPerInch());
  font.setWeight(static_cast<QFont::Weight>(cut.weight));
  font.setHintingPreference(QFont::PreferNoHinting);
  return font;
}

}  // namespace

const QFont& Typefaces::make(const EXFont& font) {
  static std::map<std::string, QFont> made;
  const std::string key = font.key();
  const auto found = made.find(key);
  return found != made.end() ? found->second : made.emplace(key, build(font)).first->second;
}

}  // namespace embrix
