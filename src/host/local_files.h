#pragma once

#include "host/file_source.h"

namespace embrix {

// The files of the machine that the program runs on.
class LocalFiles final : public FileSource {
 public:
  std::optional<std::string> read(const std::string& path) override;
};

}  // namespace embrix
