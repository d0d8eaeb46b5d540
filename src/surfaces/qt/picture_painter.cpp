#include "surfaces/qt/picture_painter.h"

#include <QPainterPath>
#include <QPen>
#include <QTransform>

#include "surfaces/qt/palette_values.h"

namespace embrix {

namespace {

QPointF toQPoint(const Point& point) {
  return {point.x, point.y};
}

QPen roundPen(const QColor& color, double width) {
  return QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

}  // namespace

QPainterPath PicturePainter::toQPath(const Path& path) {
  QPainterPath result;
  for (const Path::Element& element : path.elements()) {
    switch (element.kind) {
      case Path::Element::Kind::move:
        result.moveTo(toQPoint(element.to));
        break;
      case Path::Element::Kind::line:
        result.lineTo(toQPoint(element.to));
        break;
      case Path::Element::Kind::curve:
        result.cubicTo(toQPoint(element.control1), toQPoint(element.control2),
                       toQPoint(element.to));
        break;
      case Path::Element::Kind::close:
        result.closeSubpath();
        break;
    }
  }
  return result;
}

void PicturePainter::paint(QPainter& painter, const Picture& picture) {
  painter.setRenderHint(QPainter::Antialiasing);
  const QTransform outer = painter.transform();
  for (const Shape& shape : picture.shapes) {
    const Transform& t = shape.transform;
    painter.setTransform(QTransform(t.a, t.b, t.c, t.d, t.dx, t.dy) * outer);
    const QPainterPath path = toQPath(shape.path);
    if (shape.fill) painter.fillPath(path, toQColor(*shape.fill));
    if (shape.stroke) painter.strokePath(path, roundPen(toQColor(*shape.stroke), shape.lineWidth));
  }
  painter.setTransform(outer);
}

void PicturePainter::paintSymbol(QPainter& painter, std::string_view name, double size,
                                 const QColor& color, double weight) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.scale(size / Symbol::kUnits, size / Symbol::kUnits);
  for (const Symbol::Part& part : Symbol::parts(name)) {
    const QPainterPath path = toQPath(part.path);
    if (part.lineWidth > 0) {
      painter.strokePath(path, roundPen(color, part.lineWidth * weight));
    } else {
      painter.fillPath(path, color);
    }
  }
  painter.restore();
}

}  // namespace embrix
