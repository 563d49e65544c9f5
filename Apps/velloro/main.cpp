#include "DataManager/DataManager.h"
#include "Foundation/Process/ProcessEnd.h"
#include "Foundation/Process/Terminal.h"
#include "Foundation/Values/Error.h"
#include "Health/HealthManager.h"
#include "Host/NotificationUpdates.h"
#include "Host/TaskWriter.h"
#include "OxLog/LogManager.h"
#include "Settings/SettingsStorage.h"
#include "velloro/Agent/AgentCommand.h"
#include "velloro/Calendar/DayCommand.h"
#include "velloro/Calendar/PeriodCommand.h"
#include "velloro/Exchange/BackupCommand.h"
#include "velloro/Exchange/ExportCommand.h"
#include "velloro/Exchange/ImportCommand.h"
#include "velloro/Health/HealthCommand.h"
#include "velloro/Log/HistoryCommand.h"
#include "velloro/Log/LogCommand.h"
#include "velloro/Notifications/NotificationCommand.h"
#include "velloro/Notifications/RemindCommand.h"
#include "velloro/Notifications/ReminderCommand.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/GlobalOptions.h"
#include "velloro/Output/HelpfulError.h"
#include "velloro/Pictures/IconsCommand.h"
#include "velloro/Pictures/RingCommand.h"
#include "velloro/Pictures/ThemesCommand.h"
#include "velloro/Planning/PlanCommand.h"
#include "velloro/Settings/SettingsCommand.h"
#include "velloro/Statistics/AdviceCommands.h"
#include "velloro/Statistics/StatisticsCommands.h"
#include "velloro/Store/DemoCommand.h"
#include "velloro/Store/StoreCommand.h"
#include "velloro/Store/WatchCommand.h"
#include "velloro/Tasks/StatusCommand.h"
#include "velloro/Tasks/TaskCommand.h"
#include "velloro/Tasks/TitleCommand.h"
#include "velloro/Tasks/TypesCommand.h"
#include "velloro/Timers/TimerCommand.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

namespace velloro {
namespace {

constexpr int success = 0;
constexpr int failed = 1;
constexpr int badUsage = 2;

int complain(std::string_view reason, int exitCode) {
  const std::string line = "velloro: " + terminalText(reason) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
  return exitCode;
}

int advise(std::string_view help) {
  const std::string line = "help: " + terminalText(help) + "\n";
  if (!help.empty()) std::fwrite(line.data(), 1, line.size(), stderr);
  return failed;
}

/// A reminder is shown by the extension that the notification centre starts for it.
const char* usualProcess(const std::string& command) {
  const bool shows =
      command == "velloro notification show" || command == "velloro notification act";
  return shows ? "notification" : "app";
}

/// However a command ends, its store is closed and its log written.
struct Ending {
  Ending() = default;
  Ending(const Ending&) = delete;
  Ending& operator=(const Ending&) = delete;
  ~Ending() {
    DataManager::closeShared();
    LogManager::shared().flush();
  }
};

/// What was printed has arrived, or the person is told.
int closeOutput() {
  errno = 0;
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return success;
  return complain(PosixError("cannot write the output", errno).localizedDescription(), failed);
}

/// The others in the order in which the help lists them.
constexpr void (*commands[])(const Command&) = {
    addBackupCommand, addBadgeCommand,    addCalendarCommand,     addDayCommand,
    addDemoCommand,   addDoctorCommand,   addExportCommand,       addGraphCommand,
    addHealthCommand, addHistoryCommand,  addIconsCommand,        addImportCommand,
    addLogCommand,    addNextCommand,     addNotificationCommand, addPeriodCommand,
    addPlanCommand,   addRemindCommand,   addReminderCommand,     addReportCommand,
    addRingCommand,   addSettingsCommand, addSnoozeCommand,       addStatsCommand,
    addStatusCommand, addStoreCommand,    addTaskCommand,         addThemesCommand,
    addTimerCommand,  addTitleCommand,    addTypesCommand,        addWatchCommand};

int run(int argumentCount, char** arguments) {
  CommandLine line("velloro", "Reminders and records of habits", VELLORO_VERSION);
  const Command app = line.command();
  app.footer("\"velloro COMMAND --help\" describes a command.");
  GlobalOptions global;
  global.addTo(app);
  addAdviceCommand(app);
  addAgentCommand(app, global);
  for (const auto add : commands) add(app);

  SettingsStorage::setCloudContainer(DataManager::sharedCloudContainer);
  HealthManager::shared().setFile(
      [] { return DataManager::activeStoreUrl().parent_path() / "health.sqlite"; });
  // The environment stands before any command runs, and is never destroyed: background work may
  // read it until the very end.
  const auto installEnvironment = [&](const std::string& command) {
    Environment::install(new ProcessEnvironment(global.environment(usualProcess(command))));
  };
  try {
    const Ending ending;
    const bool hasRun = line.run(argumentCount, arguments, installEnvironment);
    if (hasRun) NotificationUpdates::shared().bringUpToDate();
    return closeOutput();
  } catch (const UsageError& error) {
    return complain(error.what(), badUsage);
  } catch (const ImpossibleTask& error) {
    return complain(error.what(), badUsage);
  } catch (const HelpfulError& error) {
    complain(error.localizedDescription(), failed);
    return advise(error.help());
  } catch (const Error& error) {
    return complain(error.localizedDescription(), failed);
  } catch (const std::exception& error) {
    return complain(error.what(), failed);
  }
}

}  // namespace
}  // namespace velloro

int main(int argumentCount, char** arguments) {
  velloro::endProcess(velloro::run(argumentCount, arguments));
}
