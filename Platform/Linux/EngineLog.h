// What the capture engine does, for its developers: the logging category "quillfade.x11", off unless
// QT_LOGGING_RULES="quillfade.x11.debug=true" switches it on. It writes to standard error and is unrelated to the
// product's own log.
#pragma once

#include <QLoggingCategory>

namespace platform::linux {

Q_DECLARE_LOGGING_CATEGORY(engineLog)

}  // namespace platform::linux
