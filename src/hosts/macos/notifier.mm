#include "hosts/macos/notifier.h"

#import <Foundation/Foundation.h>
#import <UserNotifications/UserNotifications.h>

#include <utility>

#include "base/text.h"
#include "hosts/macos/foundation_text.h"

#if !__has_feature(objc_arc)
#error "This file leaves the release of objects to the compiler."
#endif

namespace {

NSString* const kGroup = @"group";

}  // namespace

@interface EmbrixNotificationDelegate : NSObject <UNUserNotificationCenterDelegate>
@end

@implementation EmbrixNotificationDelegate {
 @public
  embrix::Notifier::Respond respond;  // main thread only
}

- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions))handler {
  handler(UNNotificationPresentationOptionBanner | UNNotificationPresentationOptionSound);
}

- (void)userNotificationCenter:(UNUserNotificationCenter*)center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)(void))handler {
  NSString* const action = response.actionIdentifier;
  const bool isDefault = [action isEqualToString:UNNotificationDefaultActionIdentifier];
  const embrix::NotificationResponse told = {
      .action = isDefault ? embrix::kDefaultAction : embrix::plainText(action).value_or(""),
      .group = embrix::plainText(response.notification.request.content.userInfo[kGroup])};
  dispatch_async(dispatch_get_main_queue(), ^{
    if (self->respond) self->respond(told);
    handler();
  });
}

@end

namespace embrix {

namespace {

// Nil in a program that is no application: the centre would end it.
UNUserNotificationCenter* notificationCenter() {
  if (NSBundle.mainBundle.bundleIdentifier == nil) return nil;
  return UNUserNotificationCenter.currentNotificationCenter;
}

NSString* shown(const std::string& text) {
  return foundationText(Text::repaired(text));
}

UNNotificationCategory* categoryOf(const NotificationCategory& category) {
  NSMutableArray<UNNotificationAction*>* const actions =
      [NSMutableArray arrayWithCapacity:category.actions.size()];
  for (const NotificationAction& action : category.actions) {
    const UNNotificationActionOptions options = action.isDestructive
                                                    ? UNNotificationActionOptionDestructive
                                                    : UNNotificationActionOptionNone;
    [actions addObject:[UNNotificationAction actionWithIdentifier:shown(action.identifier)
                                                            title:shown(action.title)
                                                          options:options]];
  }
  return [UNNotificationCategory categoryWithIdentifier:shown(category.identifier)
                                                actions:actions
                                      intentIdentifiers:@[]
                                                options:UNNotificationCategoryOptionNone];
}

}  // namespace

MacNotifier::MacNotifier() {
  @autoreleasepool {
    UNUserNotificationCenter* const center = notificationCenter();
    if (center == nil) return;
    EmbrixNotificationDelegate* const delegate = [[EmbrixNotificationDelegate alloc] init];
    delegate_ = CfHolder<CFTypeRef>((__bridge_retained CFTypeRef)delegate);
    center.delegate = delegate;
  }
}

MacNotifier::~MacNotifier() {
  if (!delegate_) return;
  @autoreleasepool {
    EmbrixNotificationDelegate* const delegate =
        (__bridge EmbrixNotificationDelegate*)delegate_.get();
    delegate->respond = nullptr;
    notificationCenter().delegate = nil;
  }
}

void MacNotifier::install(std::vector<NotificationCategory> categories, Respond respond) {
  if (!delegate_) return;
  @autoreleasepool {
    EmbrixNotificationDelegate* const delegate =
        (__bridge EmbrixNotificationDelegate*)delegate_.get();
    delegate->respond = std::move(respond);
    NSMutableSet<UNNotificationCategory*>* const all = [NSMutableSet set];
    for (const NotificationCategory& category : categories) [all addObject:categoryOf(category)];
    [notificationCenter() setNotificationCategories:all];
  }
}

void MacNotifier::post(const Notification& notification) {
  if (!delegate_) return;
  @autoreleasepool {
    UNMutableNotificationContent* const content = [[UNMutableNotificationContent alloc] init];
    content.title = shown(notification.title);
    content.body = shown(notification.body);
    content.sound = UNNotificationSound.defaultSound;
    if (notification.group) content.userInfo = @{kGroup : shown(*notification.group)};
    if (notification.category) content.categoryIdentifier = shown(*notification.category);
    UNNotificationRequest* const request =
        [UNNotificationRequest requestWithIdentifier:shown(notification.identifier)
                                             content:content
                                             trigger:nil];
    [notificationCenter() addNotificationRequest:request withCompletionHandler:nil];
  }
}

}  // namespace embrix
