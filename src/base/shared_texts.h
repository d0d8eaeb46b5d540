// An immutable list of texts that many records hold at once: the arguments of a process stand in
// every row that it is part of, and in every frame of its life. A copy shares the list and costs
// one atomic increment. Safe to copy and to release on any thread.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace embrix {

class SharedTexts {
 public:
  using value_type = std::string;
  using size_type = std::size_t;
  using const_iterator = std::vector<std::string>::const_iterator;

  // The empty list owns nothing.
  SharedTexts() noexcept = default;
  SharedTexts(std::vector<std::string> texts) {
    if (!texts.empty()) {
      texts_ = std::make_shared<const std::vector<std::string>>(std::move(texts));
    }
  }
  SharedTexts(std::initializer_list<std::string> texts)
      : SharedTexts(std::vector<std::string>(texts)) {}

  const std::vector<std::string>& list() const noexcept {
    static const std::vector<std::string> kNone;
    return texts_ == nullptr ? kNone : *texts_;
  }
  const_iterator begin() const noexcept { return list().begin(); }
  const_iterator end() const noexcept { return list().end(); }
  const std::string* data() const noexcept { return list().data(); }
  const std::string& operator[](std::size_t place) const { return list()[place]; }
  const std::string& front() const { return list().front(); }
  std::size_t size() const noexcept { return list().size(); }
  bool empty() const noexcept { return texts_ == nullptr; }

  friend bool operator==(const SharedTexts& a, const SharedTexts& b) noexcept {
    return a.texts_ == b.texts_ || a.list() == b.list();
  }

 private:
  std::shared_ptr<const std::vector<std::string>> texts_;
};

}  // namespace embrix
