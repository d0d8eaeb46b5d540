// A home folder on the disk as a developer has it, with every spot of the catalogue in it and
// everything that can be said of one: old, in use, obsolete, superseded, shared, empty, too small.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include <fmt/format.h>

#include "fakes/scratch_folder.h"

namespace embrix {

class DeveloperHome {
 public:
  static constexpr double kNow = 1'780'000'000;  // 2026-05-28 20:26:40 UTC
  static constexpr std::int64_t kDay = 86'400;
  static constexpr std::string_view kUdid = "D03F9286-CB36-433E-ADE0-A67768864F77";

  DeveloperHome() {
    makeXcode();
    makeSimulators();
    makeGradle();
    makePackageManagers();
  }

  std::string path() const { return home_.string(); }
  std::string operator/(const std::string& name) const { return (home_ / name).string(); }
  std::string outside(const std::string& name) const { return scratch_ / name; }

  // A file of so many megabytes, half a one for none, which the disk really holds.
  void file(const std::string& name, int megabytes) const {
    const off_t bytes = megabytes == 0 ? 500'000 : off_t{megabytes} * 1'000'000;
    const std::filesystem::path path = home_ / name;
    std::filesystem::create_directories(path.parent_path());
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    const bool isMade = file >= 0 && ::posix_fallocate(file, 0, bytes) == 0;
    ::close(file);
    if (!isMade) throw std::runtime_error("no room for a test's file");
  }
  void text(const std::string& name, const std::string& content) const {
    std::filesystem::create_directories((home_ / name).parent_path());
    std::ofstream(home_ / name) << content;
  }
  void age(const std::string& name, std::int64_t days) const {
    const timespec times[2] = {
        {.tv_sec = 0, .tv_nsec = UTIME_OMIT},
        {.tv_sec = static_cast<std::int64_t>(kNow) - days * kDay, .tv_nsec = 5}};
    ::utimensat(AT_FDCWD, (home_ / name).c_str(), times, AT_SYMLINK_NOFOLLOW);
  }

  // Everything in it, and the way to it. Nothing where the user may not give anything away: then it
  // is the user's own.
  void giveTo(uid_t user) const {
    ::chmod(scratch_.path().c_str(), 0755);
    ::lchown(home_.c_str(), user, user);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home_)) {
      ::lchown(entry.path().c_str(), user, user);
    }
  }

  // What the simulator tool says.
  static std::string simulators() {
    return fmt::format(
        R"json({{"devices":{{"com.apple.CoreSimulator.SimRuntime.iOS-17-5":[
            {{"udid":"{}","isAvailable":false,"name":"iPhone 15"}}]}}}})json",
        kUdid);
  }

 private:
  void project(const std::string& folder, const std::string& workspace, const std::string& date,
               int megabytes) const {
    const std::string place = "Library/Developer/Xcode/DerivedData/" + folder;
    file(place + "/Build/app.o", megabytes);
    text(place + "/info.plist",
         "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>"
         "<key>LastAccessedDate</key><date>" +
             date + "</date><key>WorkspacePath</key><string>" + *this / workspace +
             "</string></dict></plist>");
  }

  void makeXcode() const {
    namespace fs = std::filesystem;
    fs::create_directories(home_ / "Code/tidepool/ios/App.xcworkspace");
    fs::create_directories(home_ / "Code/Lighthouse.xcodeproj");
    fs::create_directories(home_ / "Code/Sunday.xcodeproj");
    project("App-abc", "Code/tidepool/ios/App.xcworkspace", "2026-05-25T12:00:00Z", 40);
    project("Lighthouse-def", "Code/Lighthouse.xcodeproj", "2026-04-01T12:00:00Z", 30);
    project("Sunday-ghi", "Code/Sunday.xcodeproj", "2026-05-28T19:00:00Z", 20);
    project("Lost-jkl", "Code/Lost.xcodeproj", "2026-05-27T12:00:00Z", 10);
    project("Small-mno", "Code/Sunday.xcodeproj", "2024-01-01T12:00:00Z", 0);
    const std::string derived = "Library/Developer/Xcode/DerivedData/";
    file(derived + "ModuleCache.noindex/a.pcm", 5);
    age(derived + "ModuleCache.noindex", 100);
    file(derived + "Odd\nname/x", 4);
    age(derived + "Odd\nname", 1);
    // Looks like much and is nothing.
    text(derived + "Sparse/x", "");
    fs::resize_file(home_ / (derived + "Sparse/x"), 50'000'000);

    const std::string support = "Library/Developer/Xcode/iOS DeviceSupport/";
    file(support + "iPhone15,2 17.4.1 (21E236)/Symbols/x", 12);
    age(support + "iPhone15,2 17.4.1 (21E236)", 20);
    file(support + "iPhone15,2 17.10 (21F79)/Symbols/x", 11);
    age(support + "iPhone15,2 17.10 (21F79)", 2);
    file(support + "16.0/Symbols/x", 10);
    age(support + "16.0", 400);
    file(support + "Xcode Cache/x", 9);
    const std::string watch = "Library/Developer/Xcode/watchOS DeviceSupport/";
    file(watch + "Watch7,2 11.6/x", 8);
    age(watch + "Watch7,2 11.6", 0);

    file("Library/Developer/Xcode/Archives/2025-01-01/App.xcarchive/x", 25);
    age("Library/Developer/Xcode/Archives/2025-01-01", 200);
    age("Library/Developer/Xcode/Archives", 250);
  }

  void makeSimulators() const {
    const std::string device = fmt::format("Library/Developer/CoreSimulator/Devices/{}", kUdid);
    file(device + "/data/x", 15);
    age(device, 40);
    file("Library/Developer/CoreSimulator/Caches/dyld/x", 6);
    age("Library/Developer/CoreSimulator/Caches/dyld", 35);
    age("Library/Developer/CoreSimulator/Caches", 70);
  }

  void makeGradle() const {
    const std::string gradle = ".gradle/caches/";
    file(gradle + "modules-2/files-2.1/a.jar", 7);
    // One file under three names.
    std::filesystem::create_hard_link(home_ / (gradle + "modules-2/files-2.1/a.jar"),
                                      home_ / (gradle + "modules-2/files-2.1/b.jar"));
    std::filesystem::create_hard_link(home_ / (gradle + "modules-2/files-2.1/a.jar"),
                                      home_ / "Code/kept.jar");
    age(gradle + "modules-2/files-2.1", 14);
    age(gradle + "modules-2", 90);
    file(gradle + "8.7/x", 3);
    age(gradle + "8.7/x", 500);
    age(gradle + "8.7", 500);
    std::filesystem::create_directories(home_ / (gradle + "build-cache-1"));
  }

  void makePackageManagers() const {
    namespace fs = std::filesystem;
    file(".npm/_cacache/content-v2/x", 9);
    age(".npm/_cacache/content-v2", 5);
    age(".npm/_cacache", 60);
    file(".local/share/pnpm/store/v3/files/x", 8);
    age(".local/share/pnpm/store/v3", 31);
    age(".local/share/pnpm/store", 31);
    fs::create_directories(home_ / ".cache/yarn");
    file(".cache/org.swift.swiftpm/repositories/x", 2);
    age(".cache/org.swift.swiftpm/repositories", 29);
    age(".cache/org.swift.swiftpm", 45);
    file("Library/Caches/CocoaPods/Pods/x", 1);
    age("Library/Caches/CocoaPods/Pods", 1);
    age("Library/Caches/CocoaPods", 1);
    // A link that stays at home, and one that leads away.
    file("big/brew/downloads/x", 16);
    age("big/brew/downloads", 64);
    age("big/brew", 64);
    fs::create_symlink(home_ / "big/brew", home_ / ".cache/Homebrew");
    fs::create_directories(scratch_ / "disk/pip");
    std::ofstream(scratch_ / "disk/pip/x") << std::string(3'000'000, 'x');
    fs::create_symlink(scratch_ / "disk/pip", home_ / ".cache/pip");
    // On a Mac it would be here.
    file("Library/Caches/pip/x", 9);
  }

  ScratchFolder scratch_;
  std::filesystem::path home_ = std::filesystem::canonical(scratch_.path()) / "ada";
};

}  // namespace embrix
