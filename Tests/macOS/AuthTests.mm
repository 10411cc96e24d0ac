#include <string>
#include <vector>

#import <Foundation/Foundation.h>
#import <OpenDirectory/OpenDirectory.h>
#include <gmock/gmock.h>

#include "OrvelAuth/AccountLockoutPolicy.h"
#include "OrvelAuth/Biometrics.h"
#include "OrvelAuth/OpenDirectoryPasswordVerifier.h"
#include "OrvelSystem/macOS/DispatchMainLoop.h"

#include "Support/Scripted.h"

namespace OrvelAuth {
namespace {

using OrvelSystem::Password;
using Scripted::Account;
using testing::Optional;

NSError* error(NSInteger code) {
    return [NSError errorWithDomain:@"com.apple.OpenDirectory"
                               code:code
                           userInfo:@{NSLocalizedDescriptionKey : @"refused"}];
}

PasswordResult check(std::string_view password) {
    return OpenDirectoryPasswordVerifier::verifyNow(Password(password), "ann");
}

TEST(PasswordCheck, OnlyInvalidCredentialsAreAWrongPassword) {
    const PasswordResult unavailable = PasswordUnavailable{"refused"};
    struct Row {
        NSError* refusal;
        PasswordResult result;
    };
    for (const auto& [refusal, result] : std::vector<Row>{{error(5000), PasswordRejected{}},
                                                          {error(5301), unavailable},
                                                          {error(0), unavailable},
                                                          {nil, PasswordUnavailable{""}}}) {
        Scripted::nodes = {
            {kODNodeTypeLocalNodes,
             {.accounts = {{.name = "ann", .password = "pässword", .refusal = refusal}}}}};
        EXPECT_EQ(check("pässword"), PasswordResult(PasswordAccepted{}));
        EXPECT_EQ(check("password"), result);
        EXPECT_EQ(check(""), result);
    }
}

TEST(PasswordCheck, AnAccountOfTheNetworkIsFoundAfterTheLocalOnes) {
    const PasswordResult missing = PasswordUnavailable{"no account record for ann"};
    Scripted::nodes = {};
    EXPECT_EQ(check("a"), missing);
    Scripted::nodes[kODNodeTypeLocalNodes] = {.accounts = {{.name = "bob", .password = "a"}}};
    EXPECT_EQ(check("a"), missing);
    Scripted::nodes[kODNodeTypeAuthentication] = {.accounts = {{.name = "ann", .password = "b"}}};
    EXPECT_EQ(check("b"), PasswordResult(PasswordAccepted{}));
    Scripted::nodes[kODNodeTypeLocalNodes] = {.accounts = {{.name = "ann", .password = "a"}}};
    EXPECT_EQ(check("a"), PasswordResult(PasswordAccepted{}));
}

TEST(AccountLockoutPolicy, TheFailuresAreReadFromDataAndFromText) {
    NSString* const list = @"<?xml version=\"1.0\"?><plist version=\"1.0\"><dict>"
                           @"<key>failedLoginCount</key><integer>4</integer></dict></plist>";
    NSData* const data = [list dataUsingEncoding:NSUTF8StringEncoding];
    for (NSArray* values in @[ @[ data ], @[ list, @"ignored" ] ]) {
        Scripted::nodes = {{kODNodeTypeLocalNodes,
                            {.accounts = {{.name = "ann",
                                           .policies = @{@"maxFailedLoginAttempts" : @4},
                                           .policyData = values}}}}};
        EXPECT_THAT(AccountLockoutPolicy::currentFailures("ann"), Optional(4));
        EXPECT_TRUE(AccountLockoutPolicy::isLocked("ann"));
    }
    for (NSArray* values in @[ @[], @[ @4 ], @[ @"no list" ] ]) {
        Scripted::nodes[kODNodeTypeLocalNodes].accounts[0].policyData = values;
        EXPECT_EQ(AccountLockoutPolicy::currentFailures("ann"), std::nullopt);
        EXPECT_FALSE(AccountLockoutPolicy::isLocked("ann"));
    }
}

OrvelSystem::Task<void> prompt(OrvelSystem::MainLoop& loop,
                               std::optional<BiometricResult>& result) {
    result = co_await Biometrics::evaluate(Biometrics::makeContext(loop), "unlock");
}

TEST(Biometrics, EachReplyOfTheSensorHasItsResult) {
    struct Row {
        bool success;
        std::optional<int> code;
        BiometricResult result;
    };
    for (const auto& [success, code, expected] :
         std::vector<Row>{{true, {}, BiometricSuccess{}},
                          {false, -2, BiometricCancelled{}},
                          {false, -8, BiometricLockout{}},
                          {false, -6, BiometricUnavailable{}},
                          {false, -1, BiometricFailed{-1}},
                          {false, {}, BiometricFailed{0}}}) {
        OrvelSystem::DispatchMainLoop loop;
        Scripted::sensor = {.success = success, .errorCode = code};
        std::optional<BiometricResult> result;
        spawn(loop, prompt(loop, result));
        Scripted::runUntil([&] { return result.has_value(); });
        EXPECT_EQ(result, expected);
    }
    Scripted::sensor.isAvailable = false;
    EXPECT_FALSE(Biometrics::isAvailable());
}

}  // namespace
}  // namespace OrvelAuth
