// The headless run: one sample of a machine, told as a report.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/host.h"
#include "host/settings_store.h"

namespace embrix {

// What a run with --dump or --json prints; --json wins over --dump, and --cleanup over both, with a
// report that is text either way. Takes a baseline, lets 2 seconds of the host's clock go by, and
// reports the sample after them. Empty when there is nothing to print. Needs no main thread.
// `controlSuite` opens the settings that the program shares with its control, for a text report
// that tells what they hold; it may give null.
std::string dump(Host& host, const std::vector<std::string>& arguments,
                 const std::function<std::unique_ptr<SettingsStore>()>& controlSuite = {});

}  // namespace embrix
