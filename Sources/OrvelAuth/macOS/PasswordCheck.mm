#import <OpenDirectory/OpenDirectory.h>

#include "OrvelAuth/OpenDirectoryPasswordVerifier.h"
#include "OrvelAuth/macOS/DirectoryRecord.h"
#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelAuth {

PasswordResult OpenDirectoryPasswordVerifier::verifyNow(const OrvelSystem::Password& password,
                                                        const std::string& userName) {
    @autoreleasepool {
        ODRecord* record = DirectoryRecord::find(kODNodeTypeLocalNodes, userName, nil);
        if (!record) record = DirectoryRecord::find(kODNodeTypeAuthentication, userName, nil);
        if (!record) return PasswordUnavailable{"no account record for " + userName};
        // This is the only copy outside the password's own memory. Cocoa provides no way to wipe
        // it.
        NSString* const text = [[NSString alloc] initWithBytes:password.view().data()
                                                        length:password.view().size()
                                                      encoding:NSUTF8StringEncoding];
        if (!text) return PasswordUnavailable{"the password is no text"};
        NSError* error = nil;
        if ([record verifyPassword:text error:&error]) return PasswordAccepted{};
        if (error && error.code == kODErrorCredentialsInvalid) return PasswordRejected{};
        return PasswordUnavailable{OrvelSystem::Cocoa::string(error.localizedDescription)};
    }
}

}  // namespace OrvelAuth
