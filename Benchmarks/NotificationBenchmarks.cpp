#include "AppExtensions/NotificationViewController.h"
#include "Foundation/Process/VirtualEnvironment.h"

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velloro {
namespace {

// From a payload to its picture, 320 points wide at two pixels a point, beside the ring in it
// alone.

constexpr double scale = 2;
constexpr const char* program = VELLORO_PROGRAM;

std::string outputOf(const std::string& arguments) {
  FILE* const pipe = popen((std::string("'") + program + "' " + arguments).c_str(), "r");
  std::string output;
  char buffer[4096];
  while (const std::size_t count = fread(buffer, 1, sizeof buffer, pipe)) {
    output.append(buffer, count);
  }
  if (pclose(pipe) != 0) throw std::runtime_error("the program fails: " + arguments);
  return output;
}

UNNotification notificationFrom(const std::string& json) {
  const PropertyList content = PropertyList::fromJSON(json);
  return {.date = Date::now(),
          .request = {.identifier = "r",
                      .content = {.categoryIdentifier = *content["categoryIdentifier"].text(),
                                  .title = *content["title"].text(),
                                  .body = *content["body"].text(),
                                  .userInfo = content["userInfo"]}}};
}

void warm(benchmark::State& state) {
  VirtualEnvironment environment;
  const std::string json = outputOf("notification sample partial");
  UIWindow window(scale);
  for (auto _ : state) {
    const auto controller = NotificationViewController::make({.scale = scale});
    controller->didReceive(notificationFrom(json));
    window.setContentView(controller->view());
    window.displayIfNeeded();
  }
}
BENCHMARK(warm)->Name("notification/velloro");

void warmRing(benchmark::State& state) {
  VirtualEnvironment environment;
  const auto controller = NotificationViewController::make({.scale = scale});
  controller->didReceive(notificationFrom(outputOf("notification sample partial")));
  const auto& ring = controller->view()->checkableTaskView();
  UIWindow window(scale);
  window.setContentView(ring);
  for (auto _ : state) {
    ring->setNeedsDisplay();
    window.displayIfNeeded();
  }
}
BENCHMARK(warmRing)->Name("notification/ring_alone");

/// From the start of a process to the picture in a file.
void run(benchmark::State& state, const std::vector<std::string>& arguments) {
  VirtualEnvironment environment;
  const std::string folder = environment.directories().temporary.string();
  const std::string payload = folder + "/n.json";
  (void)outputOf("notification sample partial > '" + payload + "'");
  std::vector<std::string> words = {program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  for (std::string& word : words) {
    if (word == "PAYLOAD") word = payload;
    if (word == "PICTURE") word = folder + "/n.png";
  }
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  posix_spawn_file_actions_t silent;
  posix_spawn_file_actions_init(&silent);
  posix_spawn_file_actions_addopen(&silent, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  for (auto _ : state) {
    pid_t child = 0;
    int status = -1;
    if (posix_spawn(&child, program, &silent, nullptr, argv.data(), environ) == 0) {
      waitpid(child, &status, 0);
    }
    if (status != 0) {
      state.SkipWithError("the program fails");
      break;
    }
  }
  posix_spawn_file_actions_destroy(&silent);
}

void cold(benchmark::State& state) {
  run(state, {"notification", "show", "PAYLOAD", "--png", "PICTURE"});
}
BENCHMARK(cold)->Name("notification_process/velloro")->UseRealTime();

void coldRing(benchmark::State& state) {
  run(state, {"ring", "--theme", "blue", "--progress", "0.375", "--segments", "8", "--icon",
              "water_glass", "--caption", "8", "--sign", "almostBestStreak", "--top-sign",
              "willBreakStreak", "--size", "96", "--png", "PICTURE"});
}
BENCHMARK(coldRing)->Name("notification_process/ring_alone")->UseRealTime();

void coldNothing(benchmark::State& state) {
  run(state, {"--version"});
}
BENCHMARK(coldNothing)->Name("notification_process/start_alone")->UseRealTime();

}  // namespace
}  // namespace velloro
