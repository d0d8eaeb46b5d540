#include "hosts/qt/menu_bar_place.h"

namespace embrix {

bool hasMenuBarPlace() {
  return true;
}

}  // namespace embrix
