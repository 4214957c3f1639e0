#include "Quillfade/Cover/MirrorView.h"

namespace quillfade {
namespace {

constexpr platform::TextStyle statusStyle{{15, platform::FontWeight::medium}, platform::colors::white.withAlpha(0.65)};

}  // namespace

MirrorView::MirrorView(platform::Views& views, const std::string& status)
    : views_(views), displayLayer_(views.makeDisplayLayer()), statusLabel_(views.makeLabel(status)) {}

std::shared_ptr<MirrorView> MirrorView::make(platform::Views& views, bool outline, const std::string& status) {
  const std::shared_ptr<MirrorView> made{new MirrorView(views, status)};
  made->view_ = views.makeView({}, made);
  made->view_->setLayerBackground(platform::colors::black);
  made->displayLayer_->setVideoGravity(platform::VideoGravity::resize);
  made->view_->addSublayer(made->displayLayer_);

  made->statusLabel_->setStyle(statusStyle);
  made->view_->addSubview(made->statusLabel_);
  made->view_->centerSubview(*made->statusLabel_);

  if (outline) {
    made->borderView_ = views.makeView({});
    made->borderView_->setResizeMask(followsWindowSize);
    made->borderView_->setLayerBorder(outlineWidth, outlineColor);
    made->view_->addSubview(made->borderView_);
  }
  return made;
}

void MirrorView::setStatus(const std::string& text) {
  statusLabel_->setText(text);
  statusLabel_->setHidden(false);
}

void MirrorView::hideStatus() { statusLabel_->setHidden(true); }

void MirrorView::layout() {
  views_.withoutImplicitAnimations([this] {
    displayLayer_->setFrame(view_->bounds());
    if (borderView_) borderView_->setFrame(view_->bounds());
  });
}

}  // namespace quillfade
