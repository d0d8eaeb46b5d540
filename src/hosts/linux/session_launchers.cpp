#include "hosts/linux/session_launchers.h"

#include <algorithm>
#include <array>

namespace embrix {

namespace {

// Sorted. Names longer than 15 bytes stand as the kernel cuts them.
constexpr std::array<std::string_view, 32> kLaunchers = {
    "(systemd)",
    "agetty",
    "bwrap",
    "containerd-shim",
    "cron",
    "crond",
    "gdm-session-wor",
    "gdm-wayland-ses",
    "gdm-x-session",
    "gnome-session-b",
    "gnome-shell",
    "greetd",
    "init",
    "kded5",
    "kdeinit5",
    "krunner",
    "ksmserver",
    "lightdm",
    "login",
    "plasma_session",
    "plasmashell",
    "sddm",
    "sddm-helper",
    "sshd",
    "sshd-session",
    "startplasma-way",
    "startplasma-x11",
    "su",
    "sway",
    "systemd",
    "tini",
    "xfce4-session",
};
static_assert(std::is_sorted(kLaunchers.begin(), kLaunchers.end()));

}  // namespace

bool isSessionLauncher(std::string_view commandName) {
  return std::binary_search(kLaunchers.begin(), kLaunchers.end(), commandName);
}

}  // namespace embrix
