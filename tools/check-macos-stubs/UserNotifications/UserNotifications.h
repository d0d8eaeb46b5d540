// What the program uses of the platform's framework of this name, for folders of headers that come
// without it. Its form is public documentation; it is compiled against and never linked.
#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_OPTIONS(NSUInteger, UNNotificationActionOptions) {
  UNNotificationActionOptionAuthenticationRequired = (1 << 0),
  UNNotificationActionOptionDestructive = (1 << 1),
  UNNotificationActionOptionForeground = (1 << 2),
};
static const UNNotificationActionOptions UNNotificationActionOptionNone = 0;

typedef NS_OPTIONS(NSUInteger, UNNotificationCategoryOptions) {
  UNNotificationCategoryOptionCustomDismissAction = (1 << 0),
};
static const UNNotificationCategoryOptions UNNotificationCategoryOptionNone = 0;

typedef NS_OPTIONS(NSUInteger, UNNotificationPresentationOptions) {
  UNNotificationPresentationOptionBadge = (1 << 0),
  UNNotificationPresentationOptionSound = (1 << 1),
  UNNotificationPresentationOptionList = (1 << 3),
  UNNotificationPresentationOptionBanner = (1 << 4),
};

extern NSString* const UNNotificationDefaultActionIdentifier;
extern NSString* const UNNotificationDismissActionIdentifier;

@interface UNNotificationAction : NSObject
+ (instancetype)actionWithIdentifier:(NSString*)identifier
                               title:(NSString*)title
                             options:(UNNotificationActionOptions)options;
@end

@interface UNNotificationCategory : NSObject
+ (instancetype)categoryWithIdentifier:(NSString*)identifier
                               actions:(NSArray<UNNotificationAction*>*)actions
                     intentIdentifiers:(NSArray<NSString*>*)intentIdentifiers
                               options:(UNNotificationCategoryOptions)options;
@end

@interface UNNotificationSound : NSObject
@property(class, NS_NONATOMIC_IOSONLY, copy, readonly) UNNotificationSound* defaultSound;
@end

@interface UNNotificationContent : NSObject
@property(NS_NONATOMIC_IOSONLY, copy, readonly) NSDictionary* userInfo;
@end

@interface UNMutableNotificationContent : UNNotificationContent
@property(NS_NONATOMIC_IOSONLY, copy) NSString* title;
@property(NS_NONATOMIC_IOSONLY, copy) NSString* body;
@property(NS_NONATOMIC_IOSONLY, copy, nullable) UNNotificationSound* sound;
@property(NS_NONATOMIC_IOSONLY, copy) NSDictionary* userInfo;
@property(NS_NONATOMIC_IOSONLY, copy) NSString* categoryIdentifier;
@end

@class UNNotificationTrigger;

@interface UNNotificationRequest : NSObject
@property(NS_NONATOMIC_IOSONLY, readonly, copy) UNNotificationContent* content;
+ (instancetype)requestWithIdentifier:(NSString*)identifier
                              content:(UNNotificationContent*)content
                              trigger:(nullable UNNotificationTrigger*)trigger;
@end

@interface UNNotification : NSObject
@property(NS_NONATOMIC_IOSONLY, readonly, copy) UNNotificationRequest* request;
@end

@interface UNNotificationResponse : NSObject
@property(NS_NONATOMIC_IOSONLY, readonly, copy) UNNotification* notification;
@property(NS_NONATOMIC_IOSONLY, readonly, copy) NSString* actionIdentifier;
@end

@class UNUserNotificationCenter;

@protocol UNUserNotificationCenterDelegate <NSObject>
@optional
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
       willPresentNotification:(UNNotification*)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions options))handler;
- (void)userNotificationCenter:(UNUserNotificationCenter*)center
    didReceiveNotificationResponse:(UNNotificationResponse*)response
             withCompletionHandler:(void (^)(void))handler;
@end

@interface UNUserNotificationCenter : NSObject
@property(NS_NONATOMIC_IOSONLY, weak, nullable) id<UNUserNotificationCenterDelegate> delegate;
+ (UNUserNotificationCenter*)currentNotificationCenter;
- (void)setNotificationCategories:(NSSet<UNNotificationCategory*>*)categories;
- (void)addNotificationRequest:(UNNotificationRequest*)request
         withCompletionHandler:(nullable void (^)(NSError* _Nullable error))handler;
@end

NS_ASSUME_NONNULL_END
