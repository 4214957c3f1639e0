// What a program that is started to share the screen sees of it.
#pragma once

namespace quillfade {

enum class ShareView {
  unmirrored,  // everything but this application's own windows
  clean,       // without the annotation overlays either
};

}  // namespace quillfade
