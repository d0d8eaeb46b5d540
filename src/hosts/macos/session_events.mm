#include "hosts/macos/session_events.h"

#import <AppKit/AppKit.h>

#if !__has_feature(objc_arc)
#error "This file leaves the release of objects to the compiler."
#endif

namespace embrix {

namespace {

// What the application's code in other languages posts, with no object.
NSNotificationName const kOpenConsole = @"app.embrix.openConsole";

void call(const std::function<void()>& callback) {
  if (callback) callback();
}

CfHolder<CFTypeRef> observe(NSNotificationCenter* center, NSNotificationName name,
                            void (^heard)(void)) {
  const id observer = [center addObserverForName:name
                                          object:nil
                                           queue:NSOperationQueue.mainQueue
                                      usingBlock:^(NSNotification*) {
                                        heard();
                                      }];
  return CfHolder<CFTypeRef>((__bridge_retained CFTypeRef)observer);
}

}  // namespace

MacSessionEvents::MacSessionEvents(MacEventLoop& loop) {
  loop.onEnd([this] { call(listener_.willTerminate); });
  MacEventLoop* const ended = &loop;
  @autoreleasepool {
    NSNotificationCenter* const workspace = NSWorkspace.sharedWorkspace.notificationCenter;
    observers_.push_back(observe(workspace, NSWorkspaceWillSleepNotification, ^{
      call(listener_.willSleep);
    }));
    observers_.push_back(observe(workspace, NSWorkspaceDidWakeNotification, ^{
      call(listener_.didWake);
    }));
    observers_.push_back(
        observe(NSNotificationCenter.defaultCenter, NSApplicationWillTerminateNotification, ^{
          ended->end();
        }));
    observers_.push_back(observe(NSNotificationCenter.defaultCenter, kOpenConsole, ^{
      call(listener_.openConsole);
    }));
  }
}

MacSessionEvents::~MacSessionEvents() {
  @autoreleasepool {
    NSNotificationCenter* const workspace = NSWorkspace.sharedWorkspace.notificationCenter;
    for (const auto& observer : observers_) {
      const id registered = (__bridge id)observer.get();
      [workspace removeObserver:registered];
      [NSNotificationCenter.defaultCenter removeObserver:registered];
    }
  }
}

}  // namespace embrix
