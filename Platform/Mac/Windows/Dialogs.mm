#include "Platform/Mac/Windows/Dialogs.h"

#import <AppKit/AppKit.h>

#include "Platform/Mac/Foundation/Bridge.h"
#include "Platform/Mac/Toolkit/Appearance.h"

namespace platform::mac {
namespace {

static_assert(alertFirstButtonReturn == NSAlertFirstButtonReturn);

NSAttributedString* credits(const AboutPanel& panel) {
  return [[NSAttributedString alloc]
      initWithString:nsString(panel.credits)
          attributes:attributes([NSFont systemFontOfSize:panel.creditsFontSize], nsColor(panel.creditsColor))];
}

}  // namespace

int Dialogs::runModal(const Alert& alert) {
  NSAlert* shown = [[NSAlert alloc] init];
  shown.messageText = nsString(alert.messageText);
  shown.informativeText = nsString(alert.informativeText);
  for (const std::string& button : alert.buttons) [shown addButtonWithTitle:nsString(button)];
  return static_cast<int>([shown runModal]);
}

void Dialogs::orderFrontAboutPanel(const AboutPanel& panel) {
  [[NSApplication sharedApplication] orderFrontStandardAboutPanelWithOptions:@{
    NSAboutPanelOptionApplicationName : nsString(panel.applicationName),
    NSAboutPanelOptionApplicationVersion : nsString(panel.applicationVersion),
    NSAboutPanelOptionVersion : nsString(panel.version),
    NSAboutPanelOptionCredits : credits(panel),
  }];
}

}  // namespace platform::mac
