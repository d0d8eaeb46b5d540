// Where the model's frames come from.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "frame/frame.h"
#include "sampling/sampler.h"

namespace embrix {

// Makes the next frame; absent when there is none this time. It is handed a frame that nobody needs
// any more, for its storage. Called on a background thread, never twice at once.
using FrameSource = std::function<std::optional<Frame>(Frame spent)>;

// The frames of that machine, which must outlive every call.
inline FrameSource framesOf(Host& host, SamplerOptions options = {}) {
  return [sampler = std::make_shared<Sampler>(host, options)](Frame spent) {
    sampler->recycle(std::move(spent));
    return sampler->next();
  };
}

}  // namespace embrix
