// Any bytes as a desktop entry and as its command line.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/json.h"
#include "hosts/linux/desktop_command.h"
#include "hosts/linux/desktop_entry.h"

namespace {

void checkExec(std::string_view exec) {
  const auto command = embrix::parseExec(exec);
  if (!command) return;
  if (command->argumentCount < 0) std::abort();
  // One of the two says what is started, and it is nothing that starts everything.
  if (command->program.empty() == command->flatpakID.empty()) std::abort();
  if (embrix::isInterpreter(command->program)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  checkExec(text);
  for (const std::string& whole : {text, "[Desktop Entry]\nType=Application\nName=A\n" + text}) {
    const auto entry = embrix::parseDesktopEntry(whole);
    if (!entry) continue;
    if (!embrix::isUtf8(entry->name) || (entry->name.empty() && !entry->isHidden)) std::abort();
    checkExec(entry->exec);
  }
  return 0;
}
