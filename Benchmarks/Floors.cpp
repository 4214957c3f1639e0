#include "Benchmarks/Floors.h"

#include <unistd.h>
#include <xcb/render.h>

#include <cstring>
#include <functional>
#include <thread>

#include "Benchmarks/Pace.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Tests/Support/ProcessState.h"

namespace bench {

namespace {

constexpr double timesASecond = 30;

struct Size {
  const char* name;
  std::uint16_t width;
  std::uint16_t height;
};
constexpr std::array<Size, 3> sizes{{{"1920x1080", 1920, 1080}, {"1280x720", 1280, 720}, {"520x340", 520, 340}}};

// The processor time that the process uses while the step is done at the pace.
std::vector<double> cost(pid_t process, const CostOptions& options, const std::function<void()>& step) {
  std::vector<double> costs;
  const Pace pace(timesASecond, step);
  for (int run = 0; run < options.runs; ++run) {
    const double before = support::processorSeconds(process);
    std::this_thread::sleep_for(std::chrono::duration<double>(options.seconds));
    costs.push_back((support::processorSeconds(process) - before) * 10 / options.seconds);
  }
  return costs;
}

Floor ofMemory(const Size& size, const CostOptions& options) {
  const std::size_t bytes = std::size_t{4} * size.width * size.height;
  const std::vector<std::byte> source(bytes, std::byte{1});
  std::vector<std::byte> target(bytes);
  return {std::string("memcpy ") + size.name,
          cost(getpid(), options, [&] { std::memcpy(target.data(), source.data(), bytes); })};
}

// From a pixmap to a window of the same format, composited by RENDER or copied by the core protocol.
Floor ofServer(const Size& size, const CostOptions& options, bool usesRender) {
  const support::XServer server({.width = 1920, .height = 1080, .arguments = {}});
  auto connection = std::move(*platform::linux::xcb::Connection::open(server.display()));
  support::XClient client(server.display());
  const auto window = client.createWindow({.frame = {0, 0, size.width, size.height}});
  client.sync();
  xcb_connection_t* c = connection->get();
  const auto format = connection->formatOfVisual(connection->rootVisual());
  const xcb_pixmap_t pixmap = connection->newId();
  const xcb_gcontext_t context = connection->newId();
  const xcb_render_picture_t source = connection->newId();
  const xcb_render_picture_t target = connection->newId();
  xcb_create_pixmap(c, connection->rootDepth(), pixmap, connection->root(), size.width, size.height);
  xcb_create_gc(c, context, pixmap, 0, nullptr);
  const xcb_rectangle_t everything{0, 0, size.width, size.height};
  xcb_poly_fill_rectangle(c, pixmap, context, 1, &everything);
  xcb_render_create_picture(c, source, pixmap, format, 0, nullptr);
  xcb_render_create_picture(c, target, window, format, 0, nullptr);
  const auto step = [&] {
    if (usesRender)
      xcb_render_composite(c, XCB_RENDER_PICT_OP_SRC, source, XCB_NONE, target, 0, 0, 0, 0, 0, 0, size.width,
                           size.height);
    else
      xcb_copy_area(c, pixmap, window, context, 0, 0, 0, 0, size.width, size.height);
    xcb_flush(c);
  };
  return {std::string(usesRender ? "RENDER composite " : "CopyArea ") + size.name,
          cost(server.processId(), options, step)};
}

}  // namespace

std::vector<Floor> measureFloors(const CostOptions& options) {
  std::vector<Floor> floors;
  for (const Size& size : sizes) {
    floors.push_back(ofMemory(size, options));
    floors.push_back(ofServer(size, options, true));
    floors.push_back(ofServer(size, options, false));
  }
  return floors;
}

}  // namespace bench
