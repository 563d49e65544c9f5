#include "Host/StoreBackup.h"

#include "Backup/BackupExport.h"
#include "CoreData/Context/NSPersistentContainer.h"
#include "CoreData/Context/NSPersistentStoreCoordinator.h"
#include "DataManager/DataManager.h"
#include "DataManager/StoreUse.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Files/OutputFile.h"
#include "Foundation/Text/String.h"
#include "Host/HostStore.h"
#include "Host/NotificationUpdates.h"
#include "Tasks/Rows/VelloroModel.h"
#include "VelloroBackup/VelloroJSONBackup.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velloro {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view namePrefix = "velloro-";
constexpr std::string_view documentExtension = ".velloro";

template <typename Value>
Value orThrow(Result<Value> result) {
  if (!result) throw HostError(result.error()->localizedDescription());
  if constexpr (!std::is_void_v<Value>) return *std::move(result);
}

/// Both files of the store, the active one last.
std::array<fs::path, 2> storeFiles() {
  const auto urls = DataManager::StoreUrls::make();
  std::array files{urls.sharedGroupUrlModernLocal, urls.sharedGroupUrlModernCloud};
  if (files.front() == DataManager::activeStoreUrl()) std::ranges::swap(files[0], files[1]);
  return files;
}

fs::path folderOfBackups() {
  return DataManager::activeStoreUrl().parent_path() / "Backups";
}

std::string nameAt(Date now) {
  std::string name = std::string(namePrefix) + now.iso8601();
  std::erase(name, ':');
  return name;
}

fs::path copyOf(const fs::path& store, const fs::path& document) {
  return document.parent_path() / (document.stem().string() + "." + store.filename().string());
}

std::unique_ptr<NSPersistentContainer> opened(const fs::path& file, StoreAccess access) {
  auto description = NSPersistentStoreDescription::initWithURL(file);
  description.access = access;
  auto container = std::make_unique<NSPersistentContainer>(velloroModelName, velloroModel());
  container->setPersistentStoreDescriptions({std::move(description)});
  container->loadPersistentStores([](const auto&, const ErrorPtr& error) {
    if (error) throw HostError(error->localizedDescription());
  });
  return container;
}

void writeDocument(const fs::path& document, Date now) {
  const HostStore store;
  auto file = orThrow(OutputFile::open(document));
  orThrow(store.context().performTransaction([&]() -> Result<void> {
    const auto add = [&](std::string_view piece) { orThrow(file.write(piece)); };
    BackupExport(store.context(), {}).write(add, now);
    add("\n");
    return {};
  }));
  orThrow(file.finish());
}

void copyStore(const fs::path& store, const fs::path& copy) {
  const fs::path unfinished = copy.string() + ".part";
  if (NSFileManager::exists(unfinished)) orThrow(NSFileManager::removeItem(unfinished));
  orThrow(
      opened(store, StoreAccess::readOnly)->persistentStoreCoordinator()->copyStore(unfinished));
  orThrow(NSFileManager::replaceItem(copy, unfinished));
}

/// \throws HostError for a copy that is not sound.
void verifyCopy(const fs::path& copy) {
  const auto container = opened(copy, StoreAccess::atRest);
  const auto findings = orThrow(container->persistentStoreCoordinator()->check());
  if (findings.empty()) return;
  throw HostError(inQuotes(copy.string()) + " is not sound: " + findings.front());
}

VelloroJSONBackup documentAt(const fs::path& document) {
  const std::string bytes = orThrow(NSFileManager::contents(document));
  try {
    return VelloroJSONBackup::fromJSON(bytes);
  } catch (const DecodingError& error) {
    throw HostError(document.string() + ": " + error.localizedDescription());
  }
}

std::vector<fs::path> copiesOf(const fs::path& document) {
  std::vector<fs::path> copies;
  for (const fs::path& store : storeFiles()) {
    if (auto copy = copyOf(store, document); NSFileManager::exists(copy)) {
      copies.push_back(std::move(copy));
    }
  }
  return copies;
}

/// Every other process opens the new file as soon as it notices it.
void replaceStore(const fs::path& store, const fs::path& copy) {
  const fs::path incoming = store.string() + ".restored";
  if (NSFileManager::exists(incoming)) orThrow(NSFileManager::removeItem(incoming));
  orThrow(NSFileManager::copyItem(copy, incoming));
  orThrow(NSFileManager::replaceItem(store, incoming));
}

}  // namespace

fs::path writeStoreBackup(Date now) {
  static_cast<void>(HostStore());  // which makes the store, if this is the first that runs
  const auto access = orThrow(StoreUse::toMaintain());
  orThrow(NSFileManager::createDirectory(folderOfBackups()));
  const fs::path document = folderOfBackups() / (nameAt(now) + std::string(documentExtension));
  for (const fs::path& store : storeFiles()) {
    if (NSFileManager::exists(store)) copyStore(store, copyOf(store, document));
  }
  writeDocument(document, now);
  return document;
}

void verifyStoreBackup(const fs::path& document) {
  const std::string bytes = orThrow(NSFileManager::contents(document));
  if (documentAt(document).jsonData() + "\n" != bytes) {
    throw HostError(inQuotes(document.string()) + " does not read as what was written");
  }
  std::ranges::for_each(copiesOf(document), verifyCopy);
}

std::vector<fs::path> dropStoreBackups(std::size_t kept) {
  std::vector<fs::path> documents;
  for (const std::string& name : orThrow(NSFileManager::contentsOfDirectory(folderOfBackups()))) {
    if (name.starts_with(namePrefix) && name.ends_with(documentExtension)) {
      documents.push_back(folderOfBackups() / name);
    }
  }
  documents.resize(documents.size() - std::min(kept, documents.size()));
  for (const fs::path& document : documents) {
    orThrow(NSFileManager::removeItem(document));
    for (const fs::path& copy : copiesOf(document)) orThrow(NSFileManager::removeItem(copy));
  }
  return documents;
}

RestoredBackup restoreStoreBackup(const fs::path& document, Date now) {
  const VelloroJSONBackup backup = documentAt(document);
  const auto copies = copiesOf(document);
  if (copies.empty()) {
    using enum BackupImportOptions::DuplicateInBackupStrategy;
    return {.stores = {},
            .document = importBackup(HostStore(), backup, {.duplicateInBackupStrategy = overwrite},
                                     /*isRehearsal=*/false, now)};
  }
  std::ranges::for_each(copies, verifyCopy);
  const auto access = orThrow(StoreUse::toMaintain());
  RestoredBackup restored;
  for (const fs::path& store : storeFiles()) {
    const fs::path copy = copyOf(store, document);
    if (!NSFileManager::exists(copy)) continue;
    replaceStore(store, copy);
    restored.stores.push_back(store);
  }
  NotificationUpdates::shared().noteEverything();
  return restored;
}

}  // namespace velloro
