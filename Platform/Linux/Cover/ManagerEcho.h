// Tells when the window manager has handled all that happened so far.
//
// A window of its own asks to be moved. Managers answer such requests, and they handle events in order.
// Threads: main thread, on the main connection; its events come through `handle`. Requests are buffered.
// Ownership: what is still asked when it goes is never answered.
// Failure: a manager that does not answer counts as having handled everything after a tenth of a second.
#pragma once

#include <xcb/xcb.h>

#include <map>
#include <memory>

#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/RunLoop.h"

namespace platform::linux::cover {

class ManagerEcho {
 public:
  ManagerEcho(xcb::Connection& connection, RunLoop& runLoop) : connection_(connection), runLoop_(runLoop) {}
  ~ManagerEcho();
  ManagerEcho(const ManagerEcho&) = delete;
  ManagerEcho& operator=(const ManagerEcho&) = delete;

  void ask(Job answered);
  void handle(const xcb_generic_event_t& event);

 private:
  struct Question {
    Job answered;
    std::shared_ptr<DelayedTask> patience;
  };
  void end(xcb_window_t window);

  xcb::Connection& connection_;
  RunLoop& runLoop_;
  std::map<xcb_window_t, Question> questions_;
};

}  // namespace platform::linux::cover
