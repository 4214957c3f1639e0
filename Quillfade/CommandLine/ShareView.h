// What a program that is started to share the screen sees.
#pragma once

namespace quillfade {

enum class ShareView {
  unmirrored,  // everything except this application's own windows
  clean,       // without the annotation overlays, too
};

}  // namespace quillfade
