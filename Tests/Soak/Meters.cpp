#include "Tests/Soak/Meters.h"

#include <unistd.h>
#include <xcb/res.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

#include "Tests/Support/Reply.h"

namespace soak {

std::int64_t residentKibibytes(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/statm");
  std::int64_t total = 0;
  std::int64_t resident = 0;
  file >> total >> resident;
  return resident * sysconf(_SC_PAGESIZE) / 1024;
}

std::int64_t openDescriptors(pid_t process) {
  std::error_code error;
  const std::filesystem::directory_iterator entries("/proc/" + std::to_string(process) + "/fd", error);
  return error ? 0 : std::distance(begin(entries), end(entries));
}

std::int64_t serverResources(xcb_connection_t* connection, pid_t process) {
  const xcb_res_client_id_spec_t everybody{0, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
  const auto clients = support::waitForReply(connection, xcb_res_query_client_ids_reply,
                                             xcb_res_query_client_ids(connection, 1, &everybody));
  std::int64_t count = 0;
  if (!clients) return count;
  for (auto id = xcb_res_query_client_ids_ids_iterator(clients.get()); id.rem > 0; xcb_res_client_id_value_next(&id)) {
    if (xcb_res_client_id_value_value_length(id.data) < 1) continue;
    if (*xcb_res_client_id_value_value(id.data) != static_cast<std::uint32_t>(process)) continue;
    const auto resources = support::waitForReply(connection, xcb_res_query_client_resources_reply,
                                                 xcb_res_query_client_resources(connection, id.data->spec.client));
    if (!resources) continue;
    for (auto type = xcb_res_query_client_resources_types_iterator(resources.get()); type.rem > 0;
         xcb_res_type_next(&type))
      count += type.data->count;
  }
  return count;
}

}  // namespace soak
