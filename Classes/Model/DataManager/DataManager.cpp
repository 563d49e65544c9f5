#include "DataManager/DataManager.h"

#include "CloudKit/CKError.h"
#include "DataManager/PendingCleanUps.h"
#include "DataManager/StoreChoice.h"
#include "DataManager/StoreUse.h"
#include "DataManager/TaskDeduplicator.h"
#include "Foundation/Files/NSFileManager.h"
#include "OxLog/Log.h"
#include "SQLite/StoreError.h"
#include "Settings/AppGroup.h"
#include "Settings/SettingsStorageLocal.h"
#include "Tasks/Rows/VelloroModel.h"

#include <atomic>
#include <utility>

namespace velloro {
namespace {

// Never destroyed: background work may use them up to the last moment.
std::atomic<std::shared_ptr<DataManager>*> sharedManager = nullptr;
constinit std::mutex sharedMutex;

bool isRateLimit(const Error& error) {
  return error.domain() == CKErrorDomain &&
         error.code() == static_cast<int>(CKErrorCode::requestRateLimited);
}

std::string key(Setting::Case setting) {
  return Setting(setting).key();
}

/// As this process sees it, without the tiers of the settings: they stand on the store.
bool cloudSyncTasksEnabled() {
  if (const auto choice = StoreChoice::underWay()) return !choice->isCloud;
  const auto suite =
      isExtension() ? NSUserDefaults::initWithSuiteName(appGroupIdentifier) : std::nullopt;
  const auto& defaults = suite ? *suite : NSUserDefaults::standardUserDefaults();
  return defaults.boolForKey(key(Setting::cloudSyncTasksEnabled));
}

std::string description(const std::optional<Date>& date) {
  return date ? date->iso8601() : "nil";
}

std::string description(const DataManager::Event& event) {
  return "event.type=" + std::to_string(rawValue(event.type)) +
         " event.startDate=" + event.startDate.iso8601() +
         " event.endDate=" + description(event.endDate) +
         " event.error=" + (event.error ? event.error->localizedDescription() : "nil");
}

}  // namespace

DataManager::StoreUrls DataManager::StoreUrls::make() {
  const auto group =
      NSFileManager::containerURLForSecurityApplicationGroupIdentifier(appGroupIdentifier);
  const auto folder = group ? *group : NSFileManager::documentDirectory();
  return {.sharedGroupUrlLegacy =
              group ? std::optional(*group / "Velloro-Production.sqlite") : std::nullopt,
          .sharedGroupUrlModernCloud = folder / "Velloro-CloudKit.sqlite",
          .sharedGroupUrlModernLocal = folder / "Velloro-Local.sqlite"};
}

std::shared_ptr<DataManager> DataManager::sharedOrNull() {
  static const auto& made = *[] {
    auto* const manager = new std::shared_ptr<DataManager>(make());
    sharedManager = manager;
    return manager;
  }();
  const std::scoped_lock lock(sharedMutex);
  return made;
}

DataManager& DataManager::shared() {
  return *sharedOrNull();
}

std::shared_ptr<DataManager::Container> DataManager::sharedCloudContainer() {
  const auto manager = sharedOrNull();
  return manager ? manager->cloudPersistentContainer() : nullptr;
}

std::filesystem::path DataManager::activeStoreUrl() {
  const auto urls = StoreUrls::make();
  // The application's first run is yet to choose the cloud's.
  const bool isFirstRun = !isExtension() && !NSUserDefaults::standardUserDefaults().boolForKey(key(
                                                Setting::cloudSyncTasksAutoEnableWorkflowHasRun));
  return isFirstRun || cloudSyncTasksEnabled() ? urls.sharedGroupUrlModernCloud
                                               : urls.sharedGroupUrlModernLocal;
}

void DataManager::closeShared() {
  auto* const manager = sharedManager.load();
  if (manager == nullptr) return;
  std::shared_ptr<DataManager> closing;  // goes when nothing is locked
  const std::scoped_lock lock(sharedMutex);
  closing.swap(*manager);
}

std::shared_ptr<DataManager> DataManager::make(std::function<Settings&()> settings) {
  std::shared_ptr<DataManager> manager(new DataManager(std::move(settings)));
  manager->start();
  return manager;
}

DataManager::DataManager(std::function<Settings&()> settings)
    : settings_(std::move(settings)),
      target_(runTarget(Environment::current().bundle())),
      storeUrls_(StoreUrls::make()) {}

DataManager::~DataManager() = default;

void DataManager::start() {
  // Each process begins unmirrored; who may mirror does so once it knows of an account.
  constexpr auto unknown = CKAccountStatus::couldNotDetermine;
  localPersistentContainer_ = makeContainer(false, unknown, nullptr);
  cloudPersistentContainer_ = makeContainer(true, unknown, nullptr);
  runFirstRunWorkflow();
  startHistoryObserver();
  setupImportObserver();
  if (mayMirror(target_)) setupAccount();
}

std::shared_ptr<DataManager::Container> DataManager::makeContainer(
    bool isCloud, CKAccountStatus accountStatus, const std::shared_ptr<Container>& existing) const {
  const bool isMirrored =
      isCloud && mayMirror(target_) && accountStatus == CKAccountStatus::available;
  const Url url{
      isCloud ? storeUrls_.sharedGroupUrlModernCloud : storeUrls_.sharedGroupUrlModernLocal,
      isMirrored ? std::optional<std::string>(cloudContainerIdentifier) : std::nullopt};
  if (existing != nullptr) {
    const auto& open = existing->persistentStoreDescriptions().front();
    const auto& options = open.cloudKitContainerOptions;
    const auto identifier = options ? std::optional(options->containerIdentifier) : std::nullopt;
    if (open.url == url.file && identifier == url.cloudContainerIdentifier) return existing;
  }
  auto container = std::make_shared<Container>(velloroModelName, velloroModel());
  configureStoreDescription(*container, url, [](const auto&, const ErrorPtr&) {});
  NSManagedObjectContext& view = *container->viewContext();
  view.setMergePolicy(sharedMergePolicy);
  view.setName("viewContext");
  view.setTransactionAuthor(std::string(rawValue(author())));
  view.setAutomaticallyMergesChangesFromParent(true);
  return container;
}

void DataManager::configureStoreDescription(Container& container, const ContainerLocation& location,
                                            const NSPersistentContainer::LoadHandler& completion) {
  NSPersistentStoreDescription description = NSPersistentStoreDescription::inMemory();
  if (const auto* url = std::get_if<Url>(&location)) {
    description = NSPersistentStoreDescription::initWithURL(url->file);
    description.shouldInferMappingModelAutomatically = true;
    description.shouldMigrateStoreAutomatically = true;
    description.setOption(true, NSPersistentHistoryTrackingKey);
    description.setOption(true, NSPersistentStoreRemoteChangeNotificationPostOptionKey);
    const auto& identifier = url->cloudContainerIdentifier;
    if (identifier) description.cloudKitContainerOptions = {.containerIdentifier = *identifier};
    Log::dataManager.debug([&] {
      return "URL: " + url->file.string() + ", CloudKit: " + identifier.value_or("(none)");
    });
  } else {
    Log::dataManager.debug([] { return "In Memory Store"; });
  }
  container.setPersistentStoreDescriptions({std::move(description)});
  container.loadPersistentStores(completion);
}

// Who has not chosen yet keeps tasks in the file that the cloud mirrors. The mark that it was done
// comes last, or together with the rest: if the process is killed before that, the next one does it
// all again. Nobody chooses meanwhile, since choices are settings.
void DataManager::runFirstRunWorkflow() const {
  if (isExtension()) return;
  auto standard = NSUserDefaults::standardUserDefaults();
  const std::string hasRun = key(Setting::cloudSyncTasksAutoEnableWorkflowHasRun);
  const std::string isEnabled = key(Setting::cloudSyncTasksEnabled);
  if (standard.boolForKey(hasRun)) return;
  const auto settings = SettingsStorageLocalShared::open();
  const auto alone = settings ? settings->exclusiveAccess() : nullptr;
  if (standard.boolForKey(hasRun)) return;
  if (auto suite = NSUserDefaults::initWithSuiteName(appGroupIdentifier)) {
    suite->setObject(true, isEnabled);
  }
  standard.setObjects({{hasRun, true}, {isEnabled, true}});
}

void DataManager::startHistoryObserver() {
  observer_ = PersistentHistoryObserver::make(author(), activePersistentContainer(),
                                              NSUserDefaults::standardUserDefaults());
  observer_->startObserving();
}

void DataManager::setupAccount() {
  ckContainer_ = CKContainer::initWithIdentifier(cloudContainerIdentifier);
  askForAccountStatus();
  ckObserver_ = NSNotificationCenter::defaultCenter().addObserver(
      CKAccountChanged, [weak = weak_from_this()](const Notification&) {
        if (const auto self = weak.lock()) self->askForAccountStatus();
      });
}

void DataManager::askForAccountStatus() {
  ckContainer_->accountStatus([weak = weak_from_this()](CKAccountStatus status, const ErrorPtr&) {
    DispatchQueue::main().async([weak, status] {
      if (const auto self = weak.lock()) self->accountStatusChanged(status);
    });
  });
}

void DataManager::accountStatusChanged(CKAccountStatus status) {
  if (ckStatus() == status) return;
  ckQueue_.sync([&] { ckStatus_ = status; });
  const auto held = cloudPersistentContainer();
  auto container = makeContainer(true, status, held);
  if (container == held) return;
  {
    const std::scoped_lock lock(containerMutex_);
    cloudPersistentContainer_ = std::move(container);
  }
  replacedContainers_.push_back(held);
  if (status == CKAccountStatus::available && !PendingCleanUps::kept().isEmpty()) {
    cleanUpAfterImport(*cloudPersistentContainer(), UUID::random());
  }
  if (!cloudSyncTasksEnabled()) return;
  startHistoryObserver();
  NSNotificationCenter::defaultCenter().post({.name = databaseStorageLocationChanged});
}

void DataManager::setupImportObserver() {
  eventChangedObserver_ = NSNotificationCenter::defaultCenter().addObserver(
      NSPersistentCloudKitContainerEventChangedNotification, nullptr, DispatchQueue::main(),
      [weak = weak_from_this()](const Notification& notification) {
        if (const auto self = weak.lock()) self->eventChanged(notification);
      });
}

void DataManager::eventChanged(const Notification& notification) {
  if (notification.object == nullptr) return;
  const bool isActive = notification.object == activePersistentContainer().get();
  const auto* event = notification.value<Event>(NSPersistentCloudKitContainerEventUserInfoKey);
  if (event == nullptr) return;
  const auto container = containerAt(notification.object);
  if (container != nullptr && event->type == Event::Type::import_ && event->endDate) {
    // From a moment earlier: what is saved at the instant at which the import begins belongs to it.
    PendingCleanUps::add(event->identifier, event->startDate - 1);
    cleanUpAfterImport(*container, event->identifier);
  }
  if (event->error != nullptr) noteError(*event);
  Log::dataManager.debug([&] { return description(*event); });
  currentSyncErrorDate_ = Date::now();
  currentSyncError_ = event->error;
  maintenanceQueue_.sync([&] {
    if (event->endDate) {
      currentSyncEvents_.erase(event->identifier);
    } else {
      currentSyncEvents_.insert_or_assign(event->identifier, *event);
    }
  });
  if (isActive) NSNotificationCenter::defaultCenter().post({.name = syncEventsUpdated});
}

/// One of those that were ever made here.
std::shared_ptr<DataManager::Container> DataManager::containerAt(const void* address) const {
  auto containers = replacedContainers_;
  containers.push_back(cloudPersistentContainer());
  containers.push_back(localPersistentContainer_);
  for (const auto& container : containers) {
    if (container.get() == address) return container;
  }
  return nullptr;
}

/// After all imports whose clean-up is not done, those of other processes included.
void DataManager::cleanUpAfterImport(Container& container, const UUID& id) {
  maintenanceQueue_.sync([&] { currentImportDeduplicationEvents_.insert(id); });
  container.performBackgroundTask([weak = weak_from_this(), id](NSManagedObjectContext& context) {
    const auto pending = PendingCleanUps::kept();
    if (TaskDeduplicator{id}.run(context, pending.since)) pending.remove();
    const auto self = weak.lock();
    if (self == nullptr) return;
    self->maintenanceQueue_.sync([&] { self->currentImportDeduplicationEvents_.erase(id); });
  });
}

void DataManager::noteError(const Event& event) const {
  Log::dataManager.error(event.error);
  if (!isRateLimit(*event.error)) settings_().recordCloudKitError(*event.error);
}

std::shared_ptr<DataManager::Container> DataManager::cloudPersistentContainer() const {
  const std::scoped_lock lock(containerMutex_);
  return cloudPersistentContainer_;
}

std::shared_ptr<DataManager::Container> DataManager::activePersistentContainer() const {
  return cloudSyncTasksEnabled() ? cloudPersistentContainer() : localPersistentContainer_;
}

std::shared_ptr<NSManagedObjectContext> DataManager::viewContext() const {
  return activePersistentContainer()->viewContext();
}

void DataManager::performBackgroundTask(NSPersistentContainer::BackgroundTask task) const {
  activePersistentContainer()->performBackgroundTask(std::move(task));
}

bool DataManager::inMaintenanceMode() const {
  return maintenanceQueue_.sync([&] { return inMaintenanceMode_; }) || StoreUse::isMaintained();
}

void DataManager::setInMaintenanceMode(bool isIn) {
  maintenanceQueue_.sync([&] { inMaintenanceMode_ = isIn; });
}

std::map<UUID, DataManager::Event> DataManager::currentSyncEvents() const {
  return maintenanceQueue_.sync([&] { return currentSyncEvents_; });
}

CKAccountStatus DataManager::ckStatus() const {
  return ckQueue_.sync([&] { return ckStatus_; });
}

std::optional<int> DataManager::errorCode(const Error& error) {
  const bool isKnown = error.domain() == CKErrorDomain || error.domain() == StoreError::errorDomain;
  return isKnown ? std::optional(error.code()) : std::nullopt;
}

}  // namespace velloro
