#include "base/shared_text.h"

#include <cstring>
#include <new>

namespace embrix {

SharedText::SharedText(std::string_view text) {
  if (text.empty()) return;
  void* memory = ::operator new(sizeof(Block) + text.size());
  block_ = new (memory) Block{1, text.size(), hashOf(text)};
  std::memcpy(static_cast<char*>(memory) + sizeof(Block), text.data(), text.size());
}

void SharedText::free() noexcept {
  block_->~Block();
  ::operator delete(block_);
}

}  // namespace embrix
