#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/user_facts.h"

namespace embrix {

// The real user and the home folder: `homeVariable` (the environment's HOME) where it is an
// absolute path, else the user database's, else "/". Slashes at its end are removed.
UserFacts userFacts(std::uint32_t uid, const std::optional<std::string>& homeVariable,
                    const std::optional<std::string>& databaseHome);

// Those of this process.
UserFacts linuxUserFacts();

}  // namespace embrix
