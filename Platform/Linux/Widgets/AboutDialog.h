// The About panel's appearance.
#pragma once

#include <QDialog>
#include <memory>

#include "Platform/Dialogs.h"

namespace platform::linux::widgets {

// Not shown yet. Its text can be selected; Escape closes it.
[[nodiscard]] std::unique_ptr<QDialog> makeAboutDialog(const AboutPanel& panel);

}  // namespace platform::linux::widgets
