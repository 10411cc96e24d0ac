// The account database. Scripted.h has its contents.
#pragma once

#import <Foundation/Foundation.h>

enum ODNodeType { kODNodeTypeLocalNodes = 0x2200, kODNodeTypeAuthentication = 0x2201 };
constexpr NSInteger kODErrorCredentialsInvalid = 5000;
#define kODRecordTypeUsers @"dsRecTypeStandard:Users"

@interface ODSession : NSObject
@property(class, readonly) ODSession* defaultSession;
@end

@interface ODRecord : NSObject
- (BOOL)verifyPassword:(NSString*)password error:(NSError**)error;
- (NSDictionary*)accountPoliciesAndReturnError:(NSError**)error;
- (NSArray*)valuesForAttribute:(NSString*)attribute error:(NSError**)error;
@end

@interface ODNode : NSObject
+ (instancetype)nodeWithSession:(ODSession*)session type:(ODNodeType)type error:(NSError**)error;
- (ODRecord*)recordWithRecordType:(NSString*)type
                             name:(NSString*)name
                       attributes:(id)attributes
                            error:(NSError**)error;
- (NSDictionary*)accountPoliciesAndReturnError:(NSError**)error;
@end
