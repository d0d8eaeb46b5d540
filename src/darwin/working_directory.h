// The record that `proc_pidinfo` gives for PROC_PIDVNODEPATHINFO. Any thread.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "darwin/byte_fields.h"

namespace embrix {

// Places within `proc_vnodepathinfo`.
namespace vnode_path_layout {
inline constexpr std::size_t kSize = 2352;
inline constexpr std::size_t kDirectoryOffset = 152;  // pvi_cdir.vip_path, text
inline constexpr std::size_t kPathCapacity = 1024;
}  // namespace vnode_path_layout

// The current working directory, any bytes. Absent when it is empty, and when the record is not of
// exactly the right size.
std::optional<std::string> decodeWorkingDirectory(Bytes record);

}  // namespace embrix
