// A read of the settings' cloud tier beside a map under a mutex, which is the least that reading
// from any thread can cost, and beside a fetch of the row for each read.

#include "Containers/VelloroNSPersistentContainer.h"
#include "Settings/SettingsStorageCoreData.h"
#include "Settings/SettingsStorageLocal.h"
#include "Tasks/Rows/VelloroModel.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include <benchmark/benchmark.h>

namespace velloro {
namespace {

constexpr std::string_view readKey = "Settings_StartOfDay";

/// A store in memory with a row for each setting that can be told.
struct Stored {
  std::shared_ptr<VelloroNSPersistentCloudKitContainer> container =
      std::make_shared<VelloroNSPersistentCloudKitContainer>(velloroModelName, velloroModel());
  SettingsStorage settings{{.localStorage = std::make_shared<SettingsStorageLocal>()}, false};
  std::unique_ptr<SettingsStorageCoreData> cloud;

  Stored() {
    container->setPersistentStoreDescriptions({NSPersistentStoreDescription::inMemory()});
    container->loadPersistentStores([](const auto&, const ErrorPtr& error) {
      if (error) throw Error(*error);
    });
    cloud = std::make_unique<SettingsStorageCoreData>([this] { return container; }, settings);
    for (const Setting& setting : Setting::allCases()) cloud->setInteger(14400, setting.key());
  }
};

void velloroRead(benchmark::State& state) {
  const Stored stored;
  for (auto _ : state) benchmark::DoNotOptimize(stored.cloud->integerForKey(readKey));
}

void mapRead(benchmark::State& state) {
  std::mutex mutex;
  std::map<std::string, SettingsStorageCoreData::SettingValue, std::less<>> values;
  for (const Setting& setting : Setting::allCases()) values[setting.key()].intValue = 14400;
  for (auto _ : state) {
    const std::scoped_lock lock(mutex);
    benchmark::DoNotOptimize(values.find(readKey)->second.intValue);
  }
}

void fetchedRead(benchmark::State& state) {
  const Stored stored;
  NSManagedObjectContext& context = *stored.container->viewContext();
  const auto request = NSFetchRequest::of<SettingEntity>(SettingEntity::settingKey == readKey);
  for (auto _ : state) {
    const auto rows = context.fetch<SettingEntity>(request);
    benchmark::DoNotOptimize(rows->front()->value(SettingEntity::intValue));
  }
}

BENCHMARK(velloroRead)->Name("cloud_setting_read/velloro");
BENCHMARK(mapRead)->Name("cloud_setting_read/map_under_mutex");
BENCHMARK(fetchedRead)->Name("cloud_setting_read/fetch_per_read");

}  // namespace
}  // namespace velloro
