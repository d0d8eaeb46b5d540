// What the program does to learn who serves what, by itself: scan_sockets [SCANS].
//
// Reads the process table of the live machine and scans the user's processes, once and then so many
// times more. Prints the number of processes that listen; with SCANS also the median microseconds
// of a scan since which nothing new listens, and of one since which something does, which has the
// descriptors of those looked through again that have run since. bench/scan_peers runs it beside
// other programs that tell the same.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "host/host.h"
#include "host/native_host.h"
#include "running/system_folders.h"
#include "sampling/process_details_reader.h"
#include "sampling/process_reader.h"
#include "sampling/user_process_scan.h"

namespace embrix {
namespace {

class Scanner {
 public:
  void readProcesses() { samples_ = &processes_.read(); }

  std::size_t scan() {
    const auto noDevice = [](const std::string&) { return std::nullopt; };
    return UserProcessScan::run(*samples_, host_.user, systemFolders_, details_, noDevice,
                                host_.clock->wallTime())
        .servers.size();
  }

  double scanMicroseconds() {
    const auto start = std::chrono::steady_clock::now();
    scan();
    const std::chrono::duration<double, std::micro> gone = std::chrono::steady_clock::now() - start;
    return gone.count();
  }

 private:
  Host host_ = nativeHost();
  SystemFolders systemFolders_ = SystemFolders::forHost(host_.name);
  ProcessReader processes_{*host_.processes};
  ProcessDetailsReader details_{*host_.processDetails};
  const std::vector<ProcessSample>* samples_ = nullptr;
};

// Listens on some port of 127.0.0.1 for as long as it lives.
class Listener {
 public:
  Listener() : descriptor_(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool listens =
        ::bind(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        ::listen(descriptor_, 1) == 0;
    if (!listens) std::exit(1);
  }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  ~Listener() { ::close(descriptor_); }

 private:
  int descriptor_;
};

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

void measure(Scanner& scanner, int scans) {
  std::vector<double> quiet;
  std::vector<double> busy;
  for (int i = 0; i < scans; ++i) {
    const Listener listener;
    busy.push_back(scanner.scanMicroseconds());
    quiet.push_back(scanner.scanMicroseconds());
  }
  std::printf("%.0f %.0f\n", median(quiet), median(busy));
}

}  // namespace
}  // namespace embrix

int main(int argc, char** argv) {
  const int scans = argc > 1 ? std::atoi(argv[1]) : 0;
  embrix::Scanner scanner;
  scanner.readProcesses();
  std::printf("%zu\n", scanner.scan());
  if (scans > 0) embrix::measure(scanner, scans);
  return 0;
}
