#include "hosts/replay/recording_reader.h"

#include <utility>

#include <fmt/format.h>

#include "base/text.h"

namespace embrix {

namespace {

constexpr std::size_t kBlockSize = 64 * 1024;

}  // namespace

RecordingReader::RecordingReader(std::unique_ptr<std::istream> bytes, std::string name)
    : bytes_(std::move(bytes)), name_(Text::escapeForTerminal(name)) {}

void RecordingReader::rewind() {
  bytes_->clear();
  bytes_->seekg(0);
  block_.clear();
  blockAt_ = 0;
  lineNumber_ = 0;
  newestTick_.reset();
  problem_.clear();
  lastLineWasTorn_ = false;
}

void RecordingReader::reject(const RecordingProblem& problem) {
  if (problem_.empty()) problem_ = fmt::format("{}, line {}: {}", name_, lineNumber_, problem.text);
}

std::optional<RecordingHeader> RecordingReader::header() {
  if (!readLine()) {
    if (problem_.empty()) problem_ = fmt::format("cannot replay {}: it is empty", name_);
    return std::nullopt;
  }
  auto read = decodeHeader(line_);
  if (auto* header = std::get_if<RecordingHeader>(&read)) return std::move(*header);
  reject(std::get<RecordingProblem>(read));
  return std::nullopt;
}

std::optional<RecordedTick> RecordingReader::tick() {
  if (!readLine()) return std::nullopt;
  auto read = decodeTick(line_);
  if (const auto* problem = std::get_if<RecordingProblem>(&read)) {
    lastLineWasTorn_ = !lineHasEnd_ && !isJsonLine(line_);
    if (!lastLineWasTorn_) reject(*problem);
    return std::nullopt;
  }
  auto& tick = std::get<RecordedTick>(read);
  const bool follows =
      newestTick_ ? tick.number - 1 == *newestTick_ && tick.number != 0 : tick.number <= 1;
  if (!follows) {
    reject({newestTick_ ? fmt::format("tick {} does not follow tick {}", tick.number, *newestTick_)
                        : fmt::format("tick {} cannot be the first", tick.number)});
    return std::nullopt;
  }
  newestTick_ = tick.number;
  return std::move(tick);
}

// False at the end and with a problem.
bool RecordingReader::readLine() {
  if (!problem_.empty()) return false;
  line_.clear();
  ++lineNumber_;
  while (true) {
    if (blockAt_ == block_.size() && !fillBlock()) {
      lineHasEnd_ = false;
      return problem_.empty() && !line_.empty();
    }
    const std::size_t end = block_.find('\n', blockAt_);
    lineHasEnd_ = end != std::string::npos;
    const std::size_t length = (lineHasEnd_ ? end : block_.size()) - blockAt_;
    if (line_.size() + length > kLongestRecordingLine) {
      reject({fmt::format("is longer than {} MiB", kLongestRecordingLine >> 20)});
      return false;
    }
    line_.append(block_, blockAt_, length);
    blockAt_ += length + (lineHasEnd_ ? 1 : 0);
    if (lineHasEnd_) return true;
  }
}

bool RecordingReader::fillBlock() {
  block_.resize(kBlockSize);
  blockAt_ = 0;
  bytes_->read(block_.data(), static_cast<std::streamsize>(block_.size()));
  block_.resize(static_cast<std::size_t>(bytes_->gcount()));
  if (bytes_->bad()) reject({"cannot be read"});
  return !block_.empty() && problem_.empty();
}

}  // namespace embrix
