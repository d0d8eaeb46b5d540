// Services of the I/O registry and their properties.
#pragma once

#include <IOKit/IOKitLib.h>

#include <optional>
#include <string>
#include <vector>

#include "host/property.h"
#include "hosts/macos/io_holder.h"

namespace embrix {

// The first service of that class; empty when there is none.
IoHolder firstService(const char* className);

// All services of that class.
std::vector<IoHolder> allServices(const char* className);

// The entries below it in the plane of services.
std::vector<IoHolder> childrenOf(io_registry_entry_t entry);

// Absent when they cannot be read.
std::optional<PropertyMap> propertiesOf(io_registry_entry_t entry);

// A Property without a value when there is none of that name.
Property propertyOf(io_registry_entry_t entry, const char* name);

// The bytes up to the first NUL of a property that holds data. Absent when the path leads nowhere,
// the property is missing or holds something else, and when nothing is left.
std::optional<std::string> dataTextAt(const char* registryPath, const char* name);

}  // namespace embrix
