#import <Collaboration/Collaboration.h>
#import <Foundation/Foundation.h>

#include "OrvelSystem/AccountIdentity.h"
#include "OrvelSystem/macOS/Cocoa.h"

namespace OrvelSystem {

std::string AccountIdentity::userName() {
    return Cocoa::string(NSUserName());
}

std::string AccountIdentity::fullName() {
    auto name = Cocoa::string(NSFullUserName());
    return name.empty() ? userName() : name;
}

std::shared_ptr<const Picture> AccountIdentity::picture() {
    @autoreleasepool {
        CBIdentity* const identity =
            [CBIdentity identityWithName:NSUserName()
                               authority:CBIdentityAuthority.defaultIdentityAuthority];
        return Cocoa::picture(identity.image, pictureSize);
    }
}

}  // namespace OrvelSystem
