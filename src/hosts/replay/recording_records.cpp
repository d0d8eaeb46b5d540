#include "hosts/replay/recording_records.h"

namespace embrix {

CommandLine commandLine(const std::string& program, const std::vector<std::string>& arguments) {
  CommandLine line = {program};
  line.insert(line.end(), arguments.begin(), arguments.end());
  return line;
}

}  // namespace embrix
