#include "model/process_identity.h"

#include <charconv>
#include <string_view>

namespace embrix {

std::optional<ProcessIdentity> identityOf(const ProcessRow& row) {
  const std::string_view id = row.id;
  const std::size_t hyphen = id.rfind('-');
  if (hyphen == std::string_view::npos) return std::nullopt;
  ProcessIdentity identity{.pid = row.pid};
  const char* const end = id.data() + id.size();
  const auto [rest, error] = std::from_chars(id.data() + hyphen + 1, end, identity.startTime);
  if (error != std::errc() || rest != end) return std::nullopt;
  return identity;
}

}  // namespace embrix
