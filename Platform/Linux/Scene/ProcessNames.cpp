#include "Platform/Linux/Scene/ProcessNames.h"

#include <xcb/res.h>

#include <fstream>

namespace platform::linux::scene {

namespace {

bool hasClientIds(xcb::Connection& connection) {
  const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection.get(), &xcb_res_id);
  if (extension == nullptr || extension->present == 0) return false;
  const auto version =
      xcb::awaitReply(connection.get(), xcb_res_query_version_reply, xcb_res_query_version(connection.get(), 1, 2));
  return version && (version->server_major > 1 || version->server_minor >= 2);
}

std::optional<std::uint32_t> processOf(const xcb_res_query_client_ids_reply_t& reply) {
  for (auto ids = xcb_res_query_client_ids_ids_iterator(&reply); ids.rem > 0; xcb_res_client_id_value_next(&ids)) {
    const bool isProcess = (ids.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0;
    if (isProcess && xcb_res_client_id_value_value_length(ids.data) >= 1) {
      return *xcb_res_client_id_value_value(ids.data);
    }
  }
  return std::nullopt;
}

}  // namespace

ProcessNames::ProcessNames(xcb::Connection& connection)
    : connection_(connection), serverKnows_(hasClientIds(connection)) {}

std::vector<std::string> ProcessNames::ask(const std::vector<Question>& questions) {
  std::vector<std::optional<std::uint32_t>> processes;
  if (serverKnows_) {
    std::vector<xcb_res_query_client_ids_cookie_t> cookies;
    for (const Question& question : questions) {
      const xcb_res_client_id_spec_t spec{question.window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
      cookies.push_back(xcb_res_query_client_ids(connection_.get(), 1, &spec));
    }
    for (const auto cookie : cookies) {
      const auto reply = xcb::awaitReply(connection_.get(), xcb_res_query_client_ids_reply, cookie);
      processes.push_back(reply ? processOf(*reply) : std::nullopt);
    }
  } else {
    for (const Question& question : questions) processes.push_back(question.claimedProcess);
  }
  std::vector<std::string> names;
  for (const auto& process : processes) names.push_back(process ? processName(*process) : std::string());
  return names;
}

std::string processName(std::uint32_t id) {
  std::ifstream file("/proc/" + std::to_string(id) + "/comm");
  std::string name;
  std::getline(file, name);
  return name;
}

}  // namespace platform::linux::scene
