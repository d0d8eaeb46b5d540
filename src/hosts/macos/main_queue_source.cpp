#include "hosts/macos/main_queue_source.h"

#include <dispatch/dispatch.h>

#include <utility>

namespace embrix {

namespace {

dispatch_source_type_t typeOf(MainQueueSource::Kind kind) {
  switch (kind) {
    case MainQueueSource::Kind::signal:
      return DISPATCH_SOURCE_TYPE_SIGNAL;
    case MainQueueSource::Kind::readable:
      return DISPATCH_SOURCE_TYPE_READ;
    case MainQueueSource::Kind::told:
      break;
  }
  return DISPATCH_SOURCE_TYPE_DATA_ADD;
}

void call(void* came) {
  (*static_cast<std::function<void()>*>(came))();
}

dispatch_source_t sourceOf(void* source) {
  return static_cast<dispatch_source_t>(source);
}

}  // namespace

MainQueueSource::MainQueueSource(Kind kind, int handle, std::function<void()> came)
    : came_(std::make_unique<std::function<void()>>(std::move(came))) {
  const dispatch_source_t source = ::dispatch_source_create(
      typeOf(kind), static_cast<uintptr_t>(handle), 0, ::dispatch_get_main_queue());
  if (source == nullptr) return;
  source_ = source;
  ::dispatch_set_context(source, came_.get());
  ::dispatch_source_set_event_handler_f(source, call);
  ::dispatch_resume(source);
}

MainQueueSource::~MainQueueSource() {
  if (source_ == nullptr) return;
  // The main queue is this thread's: a call that is on its way looks for this and is dropped.
  ::dispatch_source_cancel(sourceOf(source_));
  ::dispatch_release(sourceOf(source_));
}

void MainQueueSource::tell() const {
  if (source_ != nullptr) ::dispatch_source_merge_data(sourceOf(source_), 1);
}

}  // namespace embrix
