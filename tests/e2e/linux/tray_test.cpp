// The built program in the tray of a desktop, on a screen in memory: its item is registered by the
// status-notifier protocol, has an image, and opens and closes the popover.

#include <systemd/sd-bus.h>
#include <unistd.h>

#include <atomic>
#include <future>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "base/descriptor.h"
#include "private_bus.h"
#include "program.h"

namespace embrix {
namespace {

constexpr const char* kWatcher = "org.kde.StatusNotifierWatcher";
constexpr const char* kItem = "org.kde.StatusNotifierItem";

// A display that nobody sees. It tells its number once it is up.
class Screen {
 public:
  Screen()
      : server_({"/bin/sh", "-c", "exec Xvfb -displayfd 1 -screen 0 1280x1024x24 2>/dev/null"}) {
    display_ = ":" + server_.readLine().value_or("");
  }
  const std::string& display() const { return display_; }

  // Whether a window of that size stands on it.
  bool shows(const std::string& size) const {
    const Outcome tree =
        outcomeOf({"/bin/sh", "-c", "xwininfo -root -tree"}, {"DISPLAY=" + display_});
    std::size_t at = 0;
    while ((at = tree.output.find("0x", at)) != std::string::npos) {
      const std::size_t end = tree.output.find('\n', at);
      const std::string line = tree.output.substr(at, end - at);
      at = end;
      if (line.find(size) == std::string::npos) continue;
      const std::string id = line.substr(0, line.find(' '));
      const Outcome window =
          outcomeOf({"/bin/sh", "-c", "xwininfo -id " + id}, {"DISPLAY=" + display_});
      if (window.output.find("IsViewable") != std::string::npos) return true;
    }
    return false;
  }

 private:
  RunningProgram server_;
  std::string display_;
};

// The desktop's side of the protocol, in a thread of its own.
class Tray {
 public:
  explicit Tray(const std::string& address) {
    const bool isUp = sd_bus_new(&bus_) >= 0 && sd_bus_set_address(bus_, address.c_str()) >= 0 &&
                      sd_bus_set_bus_client(bus_, 1) >= 0 && sd_bus_start(bus_) >= 0 &&
                      sd_bus_add_object_vtable(bus_, nullptr, "/StatusNotifierWatcher", kWatcher,
                                               kTable, this) >= 0 &&
                      sd_bus_request_name(bus_, kWatcher, 0) >= 0;
    if (!isUp) throw std::runtime_error("no tray on the bus");
    thread_ = std::thread([this] { serve(); });
  }
  ~Tray() {
    isStopping_ = true;
    thread_.join();
    sd_bus_close_unref(bus_);
  }
  Tray(const Tray&) = delete;
  Tray& operator=(const Tray&) = delete;

  // Waits for a program to come; its name on the bus.
  std::string item() { return item_.get_future().get(); }

 private:
  static int registerItem(sd_bus_message* call, void* data, sd_bus_error*) {
    auto* self = static_cast<Tray*>(data);
    const char* service = nullptr;
    sd_bus_message_read(call, "s", &service);
    // A program names itself, or the path that its item has on its own connection.
    const std::string name =
        service != nullptr && *service != '/' ? service : sd_bus_message_get_sender(call);
    if (!self->hasItem_.exchange(true)) self->item_.set_value(name);
    return sd_bus_reply_method_return(call, "");
  }
  static int registerHost(sd_bus_message* call, void*, sd_bus_error*) {
    return sd_bus_reply_method_return(call, "");
  }
  static int isHere(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                    sd_bus_error*) {
    return sd_bus_message_append(reply, "b", 1);
  }
  static int version(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                     sd_bus_error*) {
    return sd_bus_message_append(reply, "i", 0);
  }

  void serve() {
    while (!isStopping_) {
      if (sd_bus_process(bus_, nullptr) == 0) sd_bus_wait(bus_, 1000);  // microseconds
    }
  }

  static const sd_bus_vtable kTable[];

  sd_bus* bus_ = nullptr;
  std::promise<std::string> item_;
  std::atomic<bool> hasItem_ = false;
  std::atomic<bool> isStopping_ = false;
  std::thread thread_;
};

const sd_bus_vtable Tray::kTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("RegisterStatusNotifierItem", "s", "", registerItem, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("RegisterStatusNotifierHost", "s", "", registerHost, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_PROPERTY("IsStatusNotifierHostRegistered", "b", isHere, 0, 0),
    SD_BUS_PROPERTY("ProtocolVersion", "i", version, 0, 0),
    SD_BUS_VTABLE_END};

class TrayTest : public ProgramTest {
 protected:
  TrayTest() {
    sd_bus_new(&desktop_);
    sd_bus_set_address(desktop_, bus_.address().c_str());
    sd_bus_set_bus_client(desktop_, 1);
    sd_bus_start(desktop_);
  }
  ~TrayTest() override { sd_bus_close_unref(desktop_); }

  std::vector<std::string> desktop() const {
    return worldWith(
        {"DISPLAY=" + screen_.display(), "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM=xcb",
         "DBUS_SESSION_BUS_ADDRESS=" + bus_.address(),
         "LSAN_OPTIONS=symbolize=0:print_suppressions=0:suppressions=" EMBRIX_TOOLKIT_LEAKS});
  }

  // Edges of the images that the item shows, in pixels.
  std::vector<int> images(const std::string& item) {
    std::vector<int> edges;
    sd_bus_message* reply = nullptr;
    if (sd_bus_get_property(desktop_, item.c_str(), "/StatusNotifierItem", kItem, "IconPixmap",
                            nullptr, &reply, "a(iiay)") < 0) {
      return edges;
    }
    sd_bus_message_enter_container(reply, 'a', "(iiay)");
    while (sd_bus_message_enter_container(reply, 'r', "iiay") > 0) {
      int width = 0;
      int height = 0;
      const void* bytes = nullptr;
      std::size_t size = 0;
      sd_bus_message_read(reply, "ii", &width, &height);
      sd_bus_message_read_array(reply, 'y', &bytes, &size);
      if (size == static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4) {
        edges.push_back(height);
      }
      sd_bus_message_exit_container(reply);
    }
    sd_bus_message_unref(reply);
    return edges;
  }

  void click(const std::string& item) {
    ASSERT_GE(sd_bus_call_method(desktop_, item.c_str(), "/StatusNotifierItem", kItem, "Activate",
                                 nullptr, nullptr, "ii", 640, 10),
              0);
  }

  PrivateBus bus_;
  Screen screen_;
  sd_bus* desktop_ = nullptr;
};

TEST_F(TrayTest, TheFlameOpensAndClosesThePopover) {
  Tray tray(bus_.address());
  RunningProgram program({EMBRIX_PROGRAM, "--ui-testing"}, desktop());
  const std::string item = tray.item();
  EXPECT_FALSE(images(item).empty());
  EXPECT_FALSE(screen_.shows(" 380x"));
  click(item);
  while (!screen_.shows(" 380x")) ASSERT_EQ(::kill(program.pid(), 0), 0);
  click(item);
  while (screen_.shows(" 380x")) ASSERT_EQ(::kill(program.pid(), 0), 0);
  program.signal(SIGTERM);
  const Outcome outcome = program.end();
  EXPECT_EQ(outcome.exitStatus, 0);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.complaints, "");
}

TEST_F(TrayTest, ATrayThatComesLateGetsTheFlameAndTheWindowMayGo) {
  RunningProgram program({EMBRIX_PROGRAM, "--ui-testing"}, desktop());
  while (!screen_.shows(" 380x")) ASSERT_EQ(::kill(program.pid(), 0), 0);
  Tray tray(bus_.address());
  const std::string item = tray.item();
  EXPECT_FALSE(images(item).empty());
  EXPECT_TRUE(screen_.shows(" 380x"));
  click(item);
  while (screen_.shows(" 380x")) ASSERT_EQ(::kill(program.pid(), 0), 0);
  ::usleep(500'000);  // a click that comes at once is taken for the one that closed it
  click(item);
  while (!screen_.shows(" 380x")) ASSERT_EQ(::kill(program.pid(), 0), 0);
  program.signal(SIGTERM);
  const Outcome outcome = program.end();
  EXPECT_EQ(outcome.exitStatus, 0);
  EXPECT_NE(outcome.complaints.find("no place for menu bar items"), std::string::npos);
}

}  // namespace
}  // namespace embrix
