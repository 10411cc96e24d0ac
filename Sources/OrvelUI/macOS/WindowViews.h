#pragma once

#import <AppKit/AppKit.h>

#include "OrvelUI/OnboardingModel.h"
#include "OrvelUI/SettingsModel.h"

/// The contents of the program's ordinary windows. They observe their models, which must outlive
/// them, and the user's appearance settings.
namespace OrvelUI {

NSView* makeSettingsView(SettingsModel& model);
NSView* makeOnboardingView(OnboardingModel& model);

}  // namespace OrvelUI
