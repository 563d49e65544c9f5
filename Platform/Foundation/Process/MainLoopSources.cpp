#include "Foundation/Process/MainLoopSources.h"

#include <algorithm>
#include <cmath>

#include <poll.h>

namespace platform {
namespace {

/// For poll(2): never earlier than asked for; -1 for no end.
int milliseconds(double seconds) {
  constexpr double longest = 86400;
  if (std::isinf(seconds)) return -1;
  return static_cast<int>(std::ceil(std::clamp(seconds, 0.0, longest) * 1000));
}

}  // namespace

void MainLoopSources::await(int wake, double seconds) {
  std::vector<std::shared_ptr<MainLoopSource>> sources;
  std::vector<pollfd> waiting{{.fd = wake, .events = POLLIN, .revents = 0}};
  std::vector<double> ends;
  std::erase_if(sources_, [](const auto& source) { return source.expired(); });
  for (const auto& known : std::vector(sources_)) {
    auto source = known.lock();
    const auto wait = source->wait();
    const int events = POLLIN | (wait.forWriting ? POLLOUT : 0);
    waiting.push_back({.fd = wait.descriptor, .events = static_cast<short>(events), .revents = 0});
    ends.push_back(wait.seconds);
    seconds = std::min(seconds, wait.seconds);
    sources.push_back(std::move(source));
  }
  const bool isTimeOver = ::poll(waiting.data(), waiting.size(), milliseconds(seconds)) == 0;
  for (std::size_t i = 0; i < sources.size(); ++i) {
    if (waiting[i + 1].revents != 0 || (isTimeOver && ends[i] <= seconds)) sources[i]->proceed();
  }
}

}  // namespace platform
