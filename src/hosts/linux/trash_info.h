// The file that the freedesktop.org Trash standard (version 1.0) keeps beside everything in a
// Trash: where the thing was, and when it went.
#pragma once

#include <string>

namespace embrix {

struct TrashInfo {
  // Absolute in the home folder's Trash; in a volume's own, from the volume's folder on, without a
  // slash at its front. Any bytes but NUL.
  std::string path;
  double deleted = 0;  // seconds since 1970; the file holds local time

  // The file's bytes.
  std::string text() const;
};

}  // namespace embrix
