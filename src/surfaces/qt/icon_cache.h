// The icons of applications by the path of their bundle, or of what stands for it. Each is looked
// up once, also where there is none, and kept for the life of the program. Main thread only.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include <QHash>
#include <QIcon>
#include <QString>

#include "host/application_icons.h"

namespace embrix {

class IconCache {
 public:
  using Lookup = std::function<std::optional<ApplicationIcon>(const std::string& bundlePath)>;

  // Whom to ask for what is not known yet. Until then no path has an icon, which is not remembered.
  void setLookup(Lookup lookup) { lookup_ = std::move(lookup); }

  // Null where there is no picture to be had.
  QIcon icon(const QString& bundlePath);

 private:
  Lookup lookup_;
  QHash<QString, QIcon> known_;
};

}  // namespace embrix
