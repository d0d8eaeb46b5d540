// EMBRIX_SANITIZED is defined where a sanitizer checks the build. It opens files of its own while
// it checks, and takes their failing for a fault of the program.
#pragma once

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define EMBRIX_SANITIZED
#endif
#endif
