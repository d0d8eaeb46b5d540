// A folder of its own for one test, gone with everything in it at the end.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace embrix {

class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "embrix-test.XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no scratch folder");
    path_ = pattern;
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }

  const std::string& path() const { return path_; }
  std::string operator/(std::string_view name) const { return path_ + "/" + std::string(name); }

  void write(std::string_view name, std::string_view bytes) const {
    std::ofstream(*this / name, std::ios::binary) << bytes;
  }
  std::string read(std::string_view name) const {
    std::ifstream file(*this / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  bool has(std::string_view name) const {
    return std::filesystem::exists(std::filesystem::symlink_status(*this / name));
  }
  // Names of everything in it, in no order.
  std::vector<std::string> names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

 private:
  std::string path_;
};

}  // namespace embrix
