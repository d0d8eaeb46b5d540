// A user client of a graphics processor, from its two registry properties. Any thread.
#pragma once

#include "host/gpu_source.h"
#include "host/property.h"

namespace embrix {

// `creator` is the property IOUserClientCreator, `usage` the property AppUsage, each a Property
// without a value when the client has none. A property of another kind counts as missing, and so
// does a list with something other than a map in it.
GpuClient gpuClient(const Property& creator, const Property& usage);

}  // namespace embrix
