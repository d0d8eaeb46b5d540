// Content records as views read them: a record becomes a map of its fields, a list a list, an
// absent value null. Texts come from other programs and are repaired on the way. Plain functions;
// any thread.
#pragma once

#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include <QString>
#include <QVariant>

#include "surfaces/mascot_features.h"
#include "surfaces/palette.h"

namespace embrix {

// Ill-formed UTF-8 becomes replacement characters.
inline QString toQString(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline QVariant toVariant(bool value) {
  return value;
}
inline QVariant toVariant(int value) {
  return value;
}
inline QVariant toVariant(double value) {
  return value;
}
inline QVariant toVariant(const std::string& text) {
  return toQString(text);
}
inline QVariant toVariant(EX::Hue hue) {
  return toQString(EX::name(hue));
}
inline QVariant toVariant(MascotMood mood) {
  return static_cast<int>(mood);
}

template <typename Record>
concept HasFields = requires {
  Record::fields();
};

template <HasFields Record>
QVariant toVariant(const Record& record);
template <typename Value>
QVariant toVariant(const std::optional<Value>& value);

template <typename Value>
QVariant toVariant(const std::vector<Value>& values) {
  QVariantList list;
  list.reserve(static_cast<qsizetype>(values.size()));
  for (const Value& value : values) list.push_back(toVariant(value));
  return list;
}

template <typename Value>
QVariant toVariant(const std::optional<Value>& value) {
  return value ? toVariant(*value) : QVariant::fromValue(nullptr);
}

template <HasFields Record>
QVariant toVariant(const Record& record) {
  QVariantMap map;
  std::apply(
      [&](const auto&... fields) {
        (map.insert(QString::fromUtf8(fields.name), toVariant(record.*fields.member)), ...);
      },
      Record::fields());
  return map;
}

}  // namespace embrix
