// Immutable text that many records hold at once: the name, path and id of a process stand in every
// frame of its life. A copy shares the characters and costs one atomic increment; the hash is made
// once. Safe to copy and to release on any thread.
#pragma once

#include <atomic>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace embrix {

class SharedText {
 public:
  // The empty text owns nothing.
  SharedText() noexcept = default;
  SharedText(std::string_view text);
  SharedText(const std::string& text) : SharedText(std::string_view(text)) {}
  SharedText(const char* text) : SharedText(std::string_view(text)) {}
  SharedText(const SharedText& other) noexcept : block_(other.block_) {
    if (block_ != nullptr) block_->owners.fetch_add(1, std::memory_order_relaxed);
  }
  SharedText(SharedText&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
  SharedText& operator=(const SharedText& other) noexcept {
    if (block_ != other.block_) SharedText(other).swap(*this);
    return *this;
  }
  SharedText& operator=(SharedText&& other) noexcept {
    SharedText(std::move(other)).swap(*this);
    return *this;
  }
  ~SharedText() {
    if (block_ != nullptr && block_->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) free();
  }

  void swap(SharedText& other) noexcept { std::swap(block_, other.block_); }

  std::string_view view() const noexcept {
    return block_ == nullptr ? std::string_view() : std::string_view(characters(), block_->size);
  }
  operator std::string_view() const noexcept { return view(); }
  std::string string() const { return std::string(view()); }
  bool empty() const noexcept { return block_ == nullptr; }
  std::size_t size() const noexcept { return block_ == nullptr ? 0 : block_->size; }

  // The same number as hashOf(view()), without walking the characters again.
  std::size_t hash() const noexcept { return block_ == nullptr ? hashOf({}) : block_->hash; }
  static std::size_t hashOf(std::string_view text) noexcept {
    return std::hash<std::string_view>{}(text);
  }

  friend bool operator==(const SharedText& a, const SharedText& b) noexcept {
    return a.block_ == b.block_ || (a.hash() == b.hash() && a.view() == b.view());
  }
  friend bool operator==(const SharedText& a, std::string_view b) noexcept { return a.view() == b; }
  friend bool operator==(const SharedText& a, const char* b) noexcept { return a.view() == b; }
  friend bool operator==(const SharedText& a, const std::string& b) noexcept {
    return a.view() == b;
  }
  friend std::strong_ordering operator<=>(const SharedText& a, const SharedText& b) noexcept {
    return a.view() <=> b.view();
  }

 private:
  struct Block {
    std::atomic<std::uint32_t> owners;
    std::size_t size;
    std::size_t hash;
  };
  const char* characters() const noexcept { return reinterpret_cast<const char*>(block_ + 1); }
  void free() noexcept;

  Block* block_ = nullptr;
};

}  // namespace embrix

template <>
struct std::hash<embrix::SharedText> {
  std::size_t operator()(const embrix::SharedText& text) const noexcept { return text.hash(); }
};
