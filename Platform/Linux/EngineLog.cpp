#include "Platform/Linux/EngineLog.h"

namespace platform::linux {

Q_LOGGING_CATEGORY(engineLog, "quillfade.x11", QtInfoMsg)

}  // namespace platform::linux
