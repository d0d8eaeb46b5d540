#pragma once

#include <cstdint>
#include <string>

namespace embrix {

// Whose program this is.
struct UserFacts {
  std::uint32_t uid = 0;      // real user
  std::string homeDirectory;  // absolute, no slash at its end

  bool operator==(const UserFacts&) const = default;
};

}  // namespace embrix
