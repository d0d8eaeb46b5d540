#include "entry/window_library.h"

#include <dlfcn.h>

#include <filesystem>

#include <fmt/format.h>

#include "base/text.h"

namespace embrix {

std::variant<const WindowModule*, std::string> WindowLibrary::load(const std::string& programPath) {
  const auto path = std::filesystem::path(programPath).parent_path() / kFileName;
  void* const library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  void* const symbol = library == nullptr ? nullptr : ::dlsym(library, kWindowModuleSymbol);
  if (symbol == nullptr) {
    const char* const reason = ::dlerror();
    return fmt::format(
        "the windows cannot be loaded ({}); --dump, --json, --background and --watch "
        "need none",
        Text::escapeForTerminal(reason == nullptr ? "no reason given" : reason));
  }
  return reinterpret_cast<WindowModuleGetter>(symbol)();
}

}  // namespace embrix
