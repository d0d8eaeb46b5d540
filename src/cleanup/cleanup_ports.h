#pragma once

#include "host/command_runner.h"
#include "host/file_source.h"
#include "host/folder_source.h"
#include "host/host.h"
#include "host/trash.h"

namespace embrix {

// What the cleanup asks of the machine. All of it outlives whoever holds this.
struct CleanupPorts {
  FolderSource& folders;
  FileSource& files;
  CommandRunner& commands;
  Trash& trash;

  static CleanupPorts of(Host& host) {
    return {.folders = *host.folders,
            .files = *host.files,
            .commands = *host.commands,
            .trash = *host.trash};
  }
};

}  // namespace embrix
