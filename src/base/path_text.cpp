#include "base/path_text.h"

#include <algorithm>

namespace embrix {

namespace {

std::string_view withoutSlashes(std::string_view path) {
  const std::size_t last = path.find_last_not_of('/');
  if (last == std::string_view::npos) return path.substr(0, std::min<std::size_t>(path.size(), 1));
  return path.substr(0, last + 1);
}

}  // namespace

std::string_view PathText::name(std::string_view path) {
  const std::string_view plain = withoutSlashes(path);
  return plain == "/" ? std::string_view() : plain.substr(plain.rfind('/') + 1);
}

std::string_view PathText::parent(std::string_view path) {
  const std::string_view plain = withoutSlashes(path);
  const std::size_t slash = plain.rfind('/');
  if (slash == std::string_view::npos) return {};
  return withoutSlashes(plain.substr(0, slash + 1));
}

bool PathText::isAtOrBelow(std::string_view path, std::string_view folder) {
  const std::string_view plain = withoutSlashes(folder);
  return !plain.empty() && (withoutSlashes(path) == plain || isBelow(path, folder));
}

bool PathText::isBelow(std::string_view path, std::string_view folder) {
  return !below(path, folder).empty();
}

std::string_view PathText::below(std::string_view path, std::string_view folder) {
  const std::string_view plain = withoutSlashes(path);
  std::string_view above = withoutSlashes(folder);
  if (above.empty() || !plain.starts_with(above)) return {};
  if (above == "/") above = {};
  const std::string_view rest = plain.substr(above.size());
  if (!rest.starts_with('/')) return {};
  const std::size_t start = rest.find_first_not_of('/');
  return start == std::string_view::npos ? std::string_view() : rest.substr(start);
}

std::string PathText::joined(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.ends_with('/')) path.push_back('/');
  return path.append(name);
}

}  // namespace embrix
