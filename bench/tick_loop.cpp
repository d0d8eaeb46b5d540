// The program's own refresh for the comparison with other monitors: tick_loop SECONDS takes a tick
// of the live machine each so many seconds, from the process table to the finished frame, until it
// is killed.

#include <cstdlib>
#include <optional>
#include <utility>

#include "host/host.h"
#include "host/native_host.h"
#include "sampling/sampler.h"

int main(int argc, char** argv) {
  const double seconds = argc > 1 ? std::atof(argv[1]) : 2;
  embrix::Host host = embrix::nativeHost();
  embrix::Sampler sampler(host);
  std::optional<embrix::Frame> shown;
  while (true) {
    std::optional<embrix::Frame> frame = sampler.next();
    if (shown) sampler.recycle(std::move(*shown));
    shown = std::move(frame);
    host.clock->sleep(seconds);
  }
}
