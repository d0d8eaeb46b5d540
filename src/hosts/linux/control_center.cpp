#include "hosts/linux/control_center.h"

#include <utility>

#include "hosts/linux/program_object.h"

namespace embrix {

namespace {

constexpr const char* kInterface = "app.embrix.Controls";
constexpr const char* kStateChanged = "StateChanged";

constexpr sd_bus_vtable kMembers[] = {SD_BUS_VTABLE_START(0), SD_BUS_SIGNAL("StateChanged", "", 0),
                                      SD_BUS_VTABLE_END};

}  // namespace

DesktopControls::DesktopControls(std::shared_ptr<BusConnection> session)
    : session_(std::move(session)) {
  session_->onDown([this] { object_.reset(); });
  session_->onUp([this](sd_bus* bus) {
    sd_bus_slot* slot = nullptr;
    sd_bus_add_object_vtable(bus, &slot, kProgramObject, kInterface, kMembers, nullptr);
    object_.reset(slot);
  });
}

void DesktopControls::reloadAllControls() {
  if (sd_bus* const bus = session_->bus()) {
    sd_bus_emit_signal(bus, kProgramObject, kInterface, kStateChanged, "");
  }
}

}  // namespace embrix
