#include "surfaces/qt/flame_images.h"

#include <cmath>

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QTransform>

#include "surfaces/qt/content_values.h"
#include "surfaces/qt/palette_values.h"
#include "surfaces/qt/picture_painter.h"
#include "surfaces/qt/typefaces.h"

namespace embrix {

namespace {

// What trays ask for, and twice that.
constexpr int kHeights[] = {16, 22, 24, 32, 44, 48, 64};

// The watts change all day long, and each is an image.
constexpr std::size_t kMostIcons = 256;

constexpr double kSemibold = 1.3;

// A template is drawn in one colour that its bar replaces. A tray that replaces nothing shows it as
// it is: light, in a dark rim that keeps it readable on a light bar.
const QColor kTemplateInk = Qt::white;
const QColor kTemplateRim = QColor(0, 0, 0, 150);

std::string keyOf(const MenuBarLabel::Content& label) {
  const auto& [level, frame] = label.flame;
  const std::string flame =
      frame ? MenuBarIcon::key(level, *frame) : std::string(loadLevelWord(level));
  return label.watts ? flame + " " + *label.watts : flame;
}

// The number alone where there is no room for its unit.
QString shortWatts(const std::string& watts) {
  return toQString(std::string_view(watts).substr(0, watts.find(' ')));
}

constexpr double kRim = 1.6;  // around the figures, pixels

struct Words {
  QPainterPath path;  // its foot at y 0, its start at x 0
  double width = 0;   // as a line of text, the same for digits of any kind

  // Made smaller where it is wider than that.
  Words within(double most) const {
    if (width <= most) return *this;
    const double scale = most / width;
    return {QTransform::fromScale(scale, scale).map(path), most};
  }
};

Words wordsOf(const QString& text, double height) {
  QFont font = Typefaces::make(
      {.kind = EXFont::Kind::text, .size = 24, .weight = 700, .hasEqualDigits = true});
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(height))));
  Words words;
  words.path.addText(0, 0, font, text);
  words.width = QFontMetricsF(font).horizontalAdvance(text);
  return words;
}

class Canvas {
 public:
  Canvas(QPixmap& pixmap, const MenuBarLabel::Content& label)
      : painter_(&pixmap), label_(label), color_(MenuBarIcon::color(label.flame.level)) {
    painter_.setRenderHint(QPainter::Antialiasing);
  }

  // The flame in that square, on its base.
  void flame(const QRectF& square) {
    const auto flicker =
        label_.flame.frame ? MenuBarIcon::flicker(*label_.flame.frame) : MenuBarIcon::Flicker{};
    const double point = square.height() / MenuBarIcon::kPointSize;
    const Rect place = MenuBarIcon::place({flicker.heightScale, flicker.offset * point},
                                          square.width(), square.height());
    painter_.save();
    painter_.translate(square.x() + place.x, square.y() + place.y);
    painter_.scale(place.width / square.width(), place.height / square.height());
    const auto symbol = MenuBarIcon::symbol(label_.flame.level);
    if (!color_) {
      PicturePainter::paintSymbol(painter_, symbol, square.width(), kTemplateRim, kSemibold * 2);
    }
    PicturePainter::paintSymbol(painter_, symbol, square.width(), ink(), kSemibold);
    painter_.restore();
  }

  // Stands with its middle at x and its foot at y.
  void text(const Words& words, double x, double y) {
    const QPainterPath path = words.path.translated(x - words.width / 2, y);
    painter_.strokePath(path, QPen(kTemplateRim, kRim, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter_.fillPath(path, kTemplateInk);
  }

 private:
  QColor ink() const { return color_ ? toQColor(*color_) : kTemplateInk; }

  QPainter painter_;
  const MenuBarLabel::Content& label_;
  std::optional<Color> color_;
};

}  // namespace

QPixmap FlameImages::draw(const MenuBarLabel::Content& label, int height) const {
  const double edge = height;
  const bool isWide = shape_ == Shape::bar && label.watts;
  Words words;
  if (label.watts) {
    words = isWide ? wordsOf(toQString(*label.watts), edge * 0.62)
                   : wordsOf(shortWatts(*label.watts), edge * 0.5).within(edge - 2 * kRim);
  }
  const double gap = edge * 0.2;
  const double width = isWide ? edge + gap + words.width + kRim : edge;

  QPixmap pixmap(static_cast<int>(std::ceil(width)), height);
  pixmap.fill(Qt::transparent);
  Canvas canvas(pixmap, label);
  if (isWide) {
    canvas.flame({0, 0, edge, edge});
    canvas.text(words, edge + gap + words.width / 2, edge * 0.72);
  } else if (label.watts) {
    const double flame = edge * 0.56;
    canvas.flame({(edge - flame) / 2, 0, flame, flame});
    canvas.text(words, edge / 2, edge - edge * 0.04);
  } else {
    canvas.flame({edge * 0.05, edge * 0.05, edge * 0.9, edge * 0.9});
  }
  return pixmap;
}

const QIcon& FlameImages::icon(const MenuBarLabel::Content& label) {
  const std::string key = keyOf(label);
  const auto found = icons_.find(key);
  if (found != icons_.end()) return found->second;
  if (icons_.size() >= kMostIcons) icons_.clear();
  QIcon icon;
  for (const int height : kHeights) icon.addPixmap(draw(label, height));
  icon.setIsMask(!MenuBarIcon::color(label.flame.level));
  return icons_.emplace(key, std::move(icon)).first->second;
}

}  // namespace embrix
