// The file that a recording goes into. A recording holds command lines and paths, so the file is
// for its owner's eyes alone. One thread at a time.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <variant>

#include "hosts/replay/recording_format.h"

namespace embrix {

class RecordingWriter {
 public:
  // Makes the file with mode 0600, or empties the regular file that is there and gives it that
  // mode. A symbolic link, a folder, a device or a pipe at the path is left alone and is a problem;
  // so is whatever the system refuses. The folder must exist.
  static std::variant<std::shared_ptr<RecordingWriter>, RecordingProblem> open(
      const std::string& path);

  RecordingWriter(const RecordingWriter&) = delete;
  RecordingWriter& operator=(const RecordingWriter&) = delete;
  ~RecordingWriter();

  // Adds the line and its end in one write. After a problem nothing more is written.
  void append(std::string line);

  // The first problem there was, as one sentence without a full stop; empty while there is none.
  const std::string& problem() const { return problem_; }

 private:
  RecordingWriter(int descriptor, std::string path);

  const int descriptor_;
  const std::string path_;  // fit to be printed
  std::string problem_;
};

}  // namespace embrix
