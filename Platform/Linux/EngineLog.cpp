#include "Platform/Linux/EngineLog.h"

namespace platform::x11 {

Q_LOGGING_CATEGORY(engineLog, "quillfade.x11", QtInfoMsg)

}  // namespace platform::x11
