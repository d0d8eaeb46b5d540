// A recording read from its start, line by line: it can be far larger than memory. One thread at a
// time.
#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <optional>
#include <string>

#include "hosts/replay/recording_format.h"

namespace embrix {

class RecordingReader {
 public:
  // The name stands in the problems.
  RecordingReader(std::unique_ptr<std::istream> bytes, std::string name);

  // Goes back to the start.
  void rewind();

  // The first line. Absent, with a problem, when it is no header of a recording.
  std::optional<RecordingHeader> header();

  // The next line after it. Absent at the end, and with a problem when the line is damaged or does
  // not number the tick that follows. A last line that was cut short counts as the end.
  std::optional<RecordedTick> tick();

  // A problem that the line read last turned out to have.
  void reject(const RecordingProblem& problem);

  // The first problem since the start, as a sentence without a full stop; empty while there is
  // none.
  const std::string& problem() const { return problem_; }

  // Whether the end was a line cut short.
  bool lastLineWasTorn() const { return lastLineWasTorn_; }

 private:
  bool readLine();
  bool fillBlock();

  std::unique_ptr<std::istream> bytes_;
  std::string name_;
  std::string block_;  // read ahead
  std::size_t blockAt_ = 0;
  std::string line_;
  bool lineHasEnd_ = false;
  std::uint64_t lineNumber_ = 0;
  std::optional<std::uint64_t> newestTick_;
  std::string problem_;
  bool lastLineWasTorn_ = false;
};

}  // namespace embrix
