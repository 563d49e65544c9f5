#include "velloro/Notifications/NotificationCommand.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "Notifications/NotificationCategory.h"
#include "OxKit/RuntimeError.h"
#include "Settings/AppGroup.h"
#include "Settings/SettingsStorage.h"
#include "Tasks/Rows/TaskEntity.h"
#include "Tasks/Rows/VelloroModel.h"
#include "Tasks/Status/TaskSnapshot.h"
#include "velloro/Notifications/CenterReport.h"
#include "velloro/Notifications/MadeNotification.h"
#include "velloro/Notifications/NotificationPlay.h"
#include "velloro/Notifications/NotificationReport.h"
#include "velloro/Notifications/NotificationSamples.h"
#include "velloro/Notifications/WordChoice.h"
#include "velloro/Options/Arguments.h"
#include "velloro/Options/CaseArgument.h"
#include "velloro/Options/Command.h"
#include "velloro/Options/NearMatches.h"
#include "velloro/Options/TaskArgument.h"
#include "velloro/Output/GrowingFile.h"
#include "velloro/Output/Output.h"

#include <memory>
#include <utility>

namespace velloro {
namespace {

struct NotificationOptions {
  std::string file;
  std::string action;
  std::string task;
  std::string kind = "reminder";
  std::optional<std::string> date, seed, sample, png, frames, width, scale;
  bool dark = false;
  bool delivered = false;
  bool json = false;
};

NotificationViewController::Screen screenOf(const NotificationOptions& options) {
  return {.width = options.width
                       ? numberBetween("--width", *options.width, 100, 2000, "100 to 2000")
                       : 320,
          .scale = options.scale ? numberBetween("--scale", *options.scale, 0.5, 4, "0.5 to 4") : 2,
          .userInterfaceStyle =
              options.dark ? UIUserInterfaceStyle::dark : UIUserInterfaceStyle::light};
}

/// Null where there is none yet.
std::shared_ptr<DataManager::Container> openCloudContainer() {
  const auto group = Environment::current().directories().groupContainers / appGroupIdentifier;
  if (!NSFileManager::exists(group)) return nullptr;  // to ask for its files would make it
  const auto file = DataManager::StoreUrls::make().sharedGroupUrlModernCloud;
  if (!NSFileManager::exists(file)) return nullptr;
  auto container = std::make_shared<DataManager::Container>(velloroModelName, velloroModel());
  auto description = NSPersistentStoreDescription::initWithURL(file);
  // No file is left beside a store at rest; one that another process has open is read with locks.
  const bool isInUse = NSFileManager::exists(file.string() + "-shm");
  description.access = isInUse ? StoreAccess::readOnly : StoreAccess::atRest;
  container->setPersistentStoreDescriptions({std::move(description)});
  container->loadPersistentStores([](const auto&, const ErrorPtr&) {});
  return container;
}

std::string textUnder(const PropertyList& content, const char* key) {
  const std::string* text = content[key].text();
  return text != nullptr ? *text : "";
}

/// Where the extension finds what only the cloud tier holds. Most reminders are shown without any
/// store, and showing one never makes one.
std::shared_ptr<DataManager::Container> existingCloudContainer() {
  static const auto& container = *new std::shared_ptr(openCloudContainer());
  return container;
}

/// A part of another kind than it should be reads as missing: what is left can still be shown.
UNNotification notificationIn(const std::string& file) {
  constexpr std::size_t largestNotification = std::size_t{16} << 20;
  const auto bytes =
      NSFileManager::contents(file == "-" ? "/dev/stdin" : file, largestNotification);
  if (!bytes) throw HostError(bytes.error()->localizedDescription());
  const auto unusable = [&](const std::string& reason) {
    return HostError(inQuotes(file) + " is no notification: " + reason);
  };
  PropertyList content;
  try {
    content = PropertyList::fromJSON(*bytes);
  } catch (const Error& error) {
    throw unusable(error.localizedDescription());
  }
  if (content.dictionary() == nullptr) throw unusable("it is no JSON object");
  return {.date = Date::now(),
          .request = {.identifier = file,
                      .content = {.categoryIdentifier = textUnder(content, "categoryIdentifier"),
                                  .title = textUnder(content, "title"),
                                  .subtitle = textUnder(content, "subtitle"),
                                  .body = textUnder(content, "body"),
                                  .userInfo = content["userInfo"]}}};
}

void write(const CGImage& image, const std::string& file, const char* option) {
  const auto bytes = image.pngData();
  if (!bytes) throw RuntimeError("the picture can't be made");
  writeFile(bytes->text(), file, option);
}

void show(const NotificationOptions& options) {
  if (options.json && options.png == "-") {
    throw UsageError("--png \"-\": the standard output is taken by --json");
  }
  SettingsStorage::setCloudContainer(existingCloudContainer);
  const auto controller = NotificationViewController::make(screenOf(options));
  controller->didReceive(notificationIn(options.file));
  if (options.png) write(*notificationPicture(*controller->view()), *options.png, "--png");
  if (options.json) print(notificationReport(*controller).json() + "\n");
  if (!options.json && !options.png) print(notificationText(*controller));
}

/// The identifier of an action by its name; any other text is one itself.
std::string actionIdentifier(const std::string& action) {
  constexpr auto names = caseNames<NotificationAction::sendMessage>();
  const auto named = names.fromRawValue(action);
  return named ? std::string(rawValue(*named)) : action;
}

void act(const NotificationOptions& options) {
  SettingsStorage::setCloudContainer(existingCloudContainer);
  const auto notification = notificationIn(options.file);
  const auto screen = screenOf(options);
  NotificationPlay::TakeFrame take;
  if (options.frames) {
    const auto folder = folderArgument("--frames", *options.frames);
    const auto made = NSFileManager::createDirectory(folder, NewItemAccess::byUmask);
    if (!made) throw Error(*made.error());
    take = [folder, number = std::size_t{0}](const CGImage& image) mutable {
      write(image, folder / stringWithFormat("frame-%04zu.png", number++), "--frames");
    };
  }
  const auto play =
      NotificationPlay::of(notification, actionIdentifier(options.action), screen, take);
  print(options.json ? play.report().json() + "\n" : play.text());
}

/// As `show` reads it.
void printContent(const UNNotificationContent& content) {
  print(JSONEncoder{.layout = JSONWriter::Layout::pretty}.encode(content) + "\n");
}

void sample(const NotificationOptions& options) {
  const auto names = NotificationSamples::names();
  if (!options.sample) {
    for (const std::string_view name : names) print(std::string(name) + "\n");
    return;
  }
  const auto content = NotificationSamples::named(*options.sample);
  if (!content) {
    const std::string hint = suggestion(*options.sample, names);
    throw UsageError("NAME", *options.sample,
                     "not a sample; " + (hint.empty() ? "without a name they are listed" : hint));
  }
  printContent(*content);
}

/// The content as `show` reads it, and beside it the identifier and the instant of the request.
/// With the image where it is: a copy is for the notification centre alone.
PropertyList requestReport(NotificationContent made) {
  const auto image = std::exchange(made.imageUrl, std::nullopt);
  UNNotificationContent content = made.request().content;
  if (image) content.attachments = {{.identifier = made.notificationId.str, .url = *image}};
  PropertyList report = PropertyList::fromJSON(JSONEncoder{}.encode(content));
  report.dictionary()->emplace("identifier", made.notificationId.str);
  if (made.trigger) report.dictionary()->emplace("trigger", made.trigger->date.iso8601());
  return report;
}

void make(const NotificationOptions& options) {
  const HostStore store;
  const Date now = Date::now();
  const auto task = currentTaskArgument(store, options.task, now);
  const YYYYMMDD day =
      options.date ? dayArgument("--date", *options.date) : logRules(*task, now).today();
  const auto kind = caseArgument<MadeKind>("--kind", options.kind, "kind of notification");
  const PropertyList report =
      requestReport(madeNotification(*task, kind, day, now, WordChoice::argument(options.seed)));
  const auto layout = options.json ? JSONWriter::Layout::compact : JSONWriter::Layout::pretty;
  print(JSONEncoder{.layout = layout}.encode(report) + "\n");
}

void list(const NotificationOptions& options) {
  const auto lines = options.delivered ? CenterReport::delivered() : CenterReport::pending();
  print(options.json ? JSONEncoder{.dateForm = DateForm::iso8601}.encode(lines) + "\n"
                     : table(lines));
}

/// A command that shows the notification of a file.
CommandWithOptions<NotificationOptions> addShowing(const Command& family, const char* name,
                                                   const char* help,
                                                   void (*work)(const NotificationOptions&)) {
  const auto added = family.subcommand(name, help, work);
  const auto& [command, options] = added;
  command.option("FILE", options.file, "TEXT", "A notification as JSON; - is the standard input")
      .required();
  command.option("--width", options.width, "POINTS", "The width in points (default: 320)");
  command.option("--scale", options.scale, "N", "Pixels per point (default: 2)");
  command.flag("--dark", options.dark, "Assumes a dark screen, which some themes follow");
  command.json(options.json, "Prints one JSON object");
  return added;
}

void addShow(const Command& family) {
  const auto [command, options] =
      addShowing(family, "show", "Shows an expanded notification", show);
  command.option("--png", options.png, "FILE",
                 "Draws the notification to a file; - is the standard output");
}

void addAct(const Command& family) {
  const auto [command, options] =
      addShowing(family, "act", "Plays the effect of an answer, in virtual time", act);
  command
      .option("ACTION", options.action, "TEXT",
              "markAsDone, markAsMissed, snooze, openExternalUrl, sendMessage, or any identifier")
      .required();
  command.option("--frames", options.frames, "DIR",
                 "The folder for the pictures of the animation, 30 per second");
}

void addSample(const Command& family) {
  const auto [command, options] =
      family.subcommand("sample", "Prints an example of a notification", sample);
  command.option("NAME", options.sample, "TEXT",
                 "The name of the example (default: lists the names)");
}

void addMake(const Command& family) {
  const auto [command, options] =
      family.subcommand("make", "Prints a notification of a task", make);
  addTaskArgument(command, options.task);
  command.option("--kind", options.kind, "KIND",
                 "reminder (default), completion, progress or badge");
  command.option("--date,--period", options.date, "YYYYMMDD",
                 "Day of the reminder (default: today)");
  WordChoice::addOption(command, options.seed);
  command.json(options.json, "Prints the JSON object on one line");
  command.footer(
      "Prints the content as \"notification show\" reads it, with the \"identifier\" of the "
      "request\n"
      "and its \"trigger\", the instant in UTC; without a trigger it is due at once.\n\n"
      "Examples:\n"
      "  velloro notification make Read --seed 7 > read.json\n"
      "  velloro notification make Read --date 20240309 --json");
}

void addList(const Command& family) {
  const auto [command, options] =
      family.subcommand("list", "Lists what the notification centre holds, by time", list);
  command.json(options.json);
  command.flag("--delivered", options.delivered, "What was delivered, instead of what is pending");
}

}  // namespace

void addNotificationCommand(const Command& app) {
  const Command family =
      app.subcommand("notification", "Makes, shows and lists notifications, and plays answers");
  addShow(family);
  addAct(family);
  addSample(family);
  addMake(family);
  addList(family);
  family.footer(
      "Examples:\n"
      "  velloro notification sample partial > partial.json\n"
      "  velloro notification show partial.json --png partial.png --width 390\n"
      "  velloro notification act partial.json markAsDone --frames frames\n"
      "  velloro notification list --json");
}

}  // namespace velloro
