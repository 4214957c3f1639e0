#include "Platform/Mac/Windows/Dialogs.h"

#import <AppKit/AppKit.h>

#include "Platform/Mac/Foundation/Bridge.h"
#include "Platform/Mac/Toolkit/Appearance.h"

namespace platform::mac::windows {
namespace {

static_assert(alertFirstButtonReturn == NSAlertFirstButtonReturn);

NSAttributedString* credits(const AboutPanel& panel) {
  return [[NSAttributedString alloc] initWithString:foundation::nsString(panel.credits)
                                         attributes:toolkit::attributes([NSFont systemFontOfSize:panel.creditsFontSize],
                                                                        toolkit::nsColor(panel.creditsColor))];
}

}  // namespace

int Dialogs::runModal(const Alert& alert) {
  NSAlert* shown = [[NSAlert alloc] init];
  shown.messageText = foundation::nsString(alert.messageText);
  shown.informativeText = foundation::nsString(alert.informativeText);
  for (const std::string& button : alert.buttons) [shown addButtonWithTitle:foundation::nsString(button)];
  return static_cast<int>([shown runModal]);
}

void Dialogs::orderFrontAboutPanel(const AboutPanel& panel) {
  [[NSApplication sharedApplication] orderFrontStandardAboutPanelWithOptions:@{
    NSAboutPanelOptionApplicationName : foundation::nsString(panel.applicationName),
    NSAboutPanelOptionApplicationVersion : foundation::nsString(panel.applicationVersion),
    NSAboutPanelOptionVersion : foundation::nsString(panel.version),
    NSAboutPanelOptionCredits : credits(panel),
  }];
}

}  // namespace platform::mac::windows
