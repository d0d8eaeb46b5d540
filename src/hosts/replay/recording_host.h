// A machine that is listened to: every question goes on to the live host, and the answer goes into
// a recording on its way back.
#pragma once

#include <memory>

#include "hosts/replay/recording_writer.h"

namespace embrix {

// The recording is complete when every source of the returned host is gone. The writer's problem()
// is to be asked after that, so the caller keeps a share of the writer.
Host recordingHost(Host live, std::shared_ptr<RecordingWriter> writer);

}  // namespace embrix
