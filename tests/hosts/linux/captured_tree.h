// A folder that stands in for a file system such as /proc: files, links and nothing else. Removed
// with its owner.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace embrix {

class CapturedTree {
 public:
  CapturedTree() {
    std::string pattern = (std::filesystem::temp_directory_path() / "embrix-tree-XXXXXX").string();
    root_ = ::mkdtemp(pattern.data());
  }
  CapturedTree(const CapturedTree&) = delete;
  CapturedTree& operator=(const CapturedTree&) = delete;
  ~CapturedTree() {
    std::error_code ignored;
    std::filesystem::remove_all(root_, ignored);
  }

  std::string root() const { return root_.string(); }

  void write(const std::string& path, std::string_view content) {
    std::filesystem::create_directories((root_ / path).parent_path());
    std::ofstream(root_ / path, std::ios::binary | std::ios::trunc) << content;
  }
  void link(const std::string& path, const std::string& target) {
    std::filesystem::create_directories((root_ / path).parent_path());
    std::filesystem::remove(root_ / path);
    std::filesystem::create_symlink(target, root_ / path);
  }
  void remove(const std::string& path) { std::filesystem::remove_all(root_ / path); }

 private:
  std::filesystem::path root_;
};

}  // namespace embrix
