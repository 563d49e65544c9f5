#include "Desktop/ServiceManager.h"

#include "Foundation/Process/Environment.h"

#include <cstddef>
#include <cstring>
#include <string>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace platform {

void notifyServiceManager(std::string_view state) {
  const std::string path = Environment::current().variable("NOTIFY_SOCKET");
  sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
  if (path.empty() || path.size() >= sizeof address.sun_path) return;
  std::memcpy(address.sun_path, path.data(), path.size());
  if (path.front() == '@') address.sun_path[0] = '\0';  // of the abstract namespace
  const int socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (socket < 0) return;
  ::sendto(socket, state.data(), state.size(), MSG_NOSIGNAL,
           reinterpret_cast<const sockaddr*>(&address),
           static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path.size()));
  ::close(socket);
}

}  // namespace platform
