typedef NSInteger NSModalResponse, NSControlStateValue, NSWindowLevel;
typedef CGFloat NSFontWeight;
typedef NSString *NSAppearanceName, *NSPasteboardType, *NSToolbarIdentifier, *NSAttributedStringKey;
extern "C" void NSAccessibilityPostNotificationWithUserInfo(id element, NSString* notification,
                                                            NSDictionary* info);
