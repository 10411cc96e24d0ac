// The fingerprint sensor. Scripted.h has its answers.
#pragma once

#import <Foundation/Foundation.h>

enum LAPolicy : NSInteger { LAPolicyDeviceOwnerAuthenticationWithBiometrics = 1 };

@interface LAContext : NSObject
- (BOOL)canEvaluatePolicy:(LAPolicy)policy error:(NSError**)error;
/// Replies from a thread of its own.
- (void)evaluatePolicy:(LAPolicy)policy
       localizedReason:(NSString*)reason
                 reply:(void (^)(BOOL success, NSError* error))reply;
- (void)invalidate;
@end
