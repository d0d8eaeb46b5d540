#include "surfaces/qt/surface_values.h"

#include "surfaces/qt/typefaces.h"

namespace embrix {

QFont FontValues::display(double size, int weight, double tracking) {
  QFont font = Typefaces::make({.kind = EXFont::Kind::display, .size = size, .weight = weight});
  font.setLetterSpacing(QFont::AbsoluteSpacing, tracking);
  return font;
}

QFont FontValues::text(double size, int weight) {
  return Typefaces::make({.kind = EXFont::Kind::text, .size = size, .weight = weight});
}

QFont FontValues::digits(double size, int weight) {
  return Typefaces::make(
      {.kind = EXFont::Kind::text, .size = size, .weight = weight, .hasEqualDigits = true});
}

QFont FontValues::mono(double size) {
  return Typefaces::make({.kind = EXFont::Kind::mono, .size = size, .weight = 400});
}

QFont FontValues::eyebrow(double size) {
  constexpr double kTracking = 0.14;  // of the size
  QFont font = text(size, 700);
  font.setLetterSpacing(QFont::AbsoluteSpacing, kTracking * size);
  font.setCapitalization(QFont::AllUppercase);
  return font;
}

QFont FontValues::underlined(double size, int weight) {
  QFont font = text(size, weight);
  font.setUnderline(true);
  return font;
}

SurfaceValues::SurfaceValues(QQmlEngine& engine) : QObject(&engine) {
  for (QObject* part : {static_cast<QObject*>(&palette_), static_cast<QObject*>(&motion_),
                        static_cast<QObject*>(&fonts_)}) {
    QJSEngine::setObjectOwnership(part, QJSEngine::CppOwnership);
  }
}

SurfaceValues* SurfaceValues::of(const QQmlEngine* engine) {
  return engine == nullptr ? nullptr
                           : engine->findChild<SurfaceValues*>({}, Qt::FindDirectChildrenOnly);
}

SurfaceValues* SurfaceValues::of(const QObject* item) {
  return of(qmlEngine(item));
}

PaletteValues* PaletteValues::create(QQmlEngine* engine, QJSEngine*) {
  return &SurfaceValues::of(engine)->palette();
}

MotionValues* MotionValues::create(QQmlEngine* engine, QJSEngine*) {
  return &SurfaceValues::of(engine)->motion();
}

FontValues* FontValues::create(QQmlEngine* engine, QJSEngine*) {
  return &SurfaceValues::of(engine)->fonts();
}

}  // namespace embrix
