// A program that captures the whole screen thirty times a second into shared memory, as recorders do, for a given
// number of seconds. Prints how many pictures it took.

#include <sys/mman.h>
#include <unistd.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <thread>

int main(int argc, char** argv) {
  const std::chrono::seconds length(argc > 1 ? std::atoi(argv[1]) : 10);
  const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(xcb_connect(nullptr, nullptr),
                                                                                &xcb_disconnect);
  xcb_connection_t* c = connection.get();
  if (xcb_connection_has_error(c) != 0) return EXIT_FAILURE;
  const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(c)).data;
  const std::size_t size = std::size_t{4} * screen->width_in_pixels * screen->height_in_pixels;
  const int memory = memfd_create("picture", MFD_CLOEXEC);
  if (memory < 0 || ftruncate(memory, static_cast<off_t>(size)) != 0) return EXIT_FAILURE;
  std::free(xcb_shm_query_version_reply(c, xcb_shm_query_version(c), nullptr));
  const xcb_shm_seg_t segment = xcb_generate_id(c);
  xcb_shm_attach_fd(c, segment, memory, 0);

  constexpr std::chrono::nanoseconds interval{1'000'000'000 / 30};
  const auto start = std::chrono::steady_clock::now();
  int pictures = 0;
  for (auto next = start; next < start + length; next += interval) {
    std::this_thread::sleep_until(next);
    auto* reply =
        xcb_shm_get_image_reply(c,
                                xcb_shm_get_image(c, screen->root, 0, 0, screen->width_in_pixels,
                                                  screen->height_in_pixels, ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP, segment, 0),
                                nullptr);
    if (reply == nullptr) return EXIT_FAILURE;
    std::free(reply);
    ++pictures;
  }
  std::cout << pictures << '\n';
}
