#include "Tests/Linux/EngineSupport.h"

namespace platform::linux {

Composition::Composition(const std::string& display, const xcb::PixelRect& source, std::vector<xcb_window_t> excluded,
                         std::vector<std::uint32_t> ownClients)
    : connection_(connectTo(display)),
      source_(source),
      pixmap_(connection_->newId()),
      target_(makeTarget(*connection_, pixmap_, source)),
      scene_(*connection_),
      compositor_(*connection_, scene_, source,
                  {std::move(excluded), std::move(ownClients), connection_->resourceMask()}),
      painted_(*connection_) {}

xcb_render_picture_t Composition::makeTarget(xcb::Connection& connection, xcb_pixmap_t pixmap,
                                             const xcb::PixelRect& source) {
  xcb_create_pixmap(connection.get(), connection.rootDepth(), pixmap, connection.root(),
                    static_cast<std::uint16_t>(source.width), static_cast<std::uint16_t>(source.height));
  const xcb_render_picture_t target = connection.newId();
  xcb_render_create_picture(connection.get(), target, pixmap, connection.formatOfVisual(connection.rootVisual()), 0,
                            nullptr);
  // A colour that no test uses, so that unpainted pixels show.
  const xcb_rectangle_t everything{0, 0, static_cast<std::uint16_t>(source.width),
                                   static_cast<std::uint16_t>(source.height)};
  xcb_render_fill_rectangles(connection.get(), XCB_RENDER_PICT_OP_SRC, target, {0xffff, 0x1111, 0xdddd, 0xffff}, 1,
                             &everything);
  return target;
}

void Composition::catchUp(int mostEvents) {
  // Each round may send questions; the next round handles the replies.
  for (int round = 0; round < 3; ++round) {
    if (!connection_->synchronize(10'000)) throw std::runtime_error("The X server does not answer.");
    for (int taken = 0; taken < mostEvents; ++taken) {
      const xcb::Event event = connection_->nextEvent();
      if (!event) break;
      scene_.handle(*event);
      compositor_.handle(*event);
    }
    scene_.collectReplies();
    compositor_.collectReplies();
  }
}

bool Composition::update(int mostEvents) {
  catchUp(mostEvents);
  if (compositor_.changes() == compositor::Compositor::Changes::possible) {
    compositor_.examine();
    catchUp();
  }
  if (compositor_.changes() == compositor::Compositor::Changes::none) return false;
  compositor_.paintTo({.picture = target_, .clear = clear_}, painted_);
  return true;
}

support::Picture Composition::picture() {
  const auto reply = xcb::awaitReply(
      connection_->get(), xcb_get_image_reply,
      xcb_get_image(connection_->get(), XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap_, 0, 0,
                    static_cast<std::uint16_t>(source_.width), static_cast<std::uint16_t>(source_.height), ~0U));
  if (!reply) throw std::runtime_error("The picture cannot be read.");
  const auto* data = reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(reply.get()));
  std::vector<std::uint32_t> pixels(data, data + xcb_get_image_data_length(reply.get()) / 4);
  for (std::uint32_t& pixel : pixels) pixel &= 0xffffffU;
  return {source_.width, source_.height, std::move(pixels)};
}

std::vector<xcb::PixelRect> Composition::painted() {
  const auto reply = xcb::awaitReply(connection_->get(), xcb_xfixes_fetch_region_reply,
                                     xcb_xfixes_fetch_region(connection_->get(), painted_.id()));
  std::vector<xcb::PixelRect> rects;
  const xcb_rectangle_t* rectangles = xcb_xfixes_fetch_region_rectangles(reply.get());
  for (int index = 0; index < xcb_xfixes_fetch_region_rectangles_length(reply.get()); ++index)
    rects.push_back({rectangles[index].x, rectangles[index].y, rectangles[index].width, rectangles[index].height});
  return rects;
}

}  // namespace platform::linux
