#pragma once

#include "host/user_facts.h"

namespace embrix {

// The real user of this process, and the home folder: the environment's HOME where it is an
// absolute path, else the user database's, else "/".
UserFacts macUserFacts();

}  // namespace embrix
