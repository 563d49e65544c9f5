#include "OxHealthKit/OxHKSampleMetadata.h"
#include "Support/Fixtures.h"

namespace velloro {
namespace {

using MetadataValue = OxHKSampleMetadata::MetadataValue;

const char* const taskText = "1B4E28BA-2FA1-11D2-883F-0016D3CCA427";
const char* const entryText = "6BA7B810-9DAD-11D1-80B4-00C04FD430C8";

OxHKSampleMetadata ofLogEntry() {
  return OxHKSampleMetadata::from({.date = {.y = 2024, .m = 3, .d = 7},
                                   .taskID = UniqueID::fromString(taskText).value(),
                                   .entryID = UniqueID::fromString(entryText).value(),
                                   .syncVersion = 2,
                                   .wasUserEntered = true});
}

TEST(OxHKSampleMetadata, OfALogEntryNamesItsTaskAndItself) {
  const OxHKSampleMetadata metadata = ofLogEntry();
  expectFixture("OxHKSampleMetadata", metadata);
  EXPECT_EQ(metadata.taskID()->stringValue(), taskText);
  EXPECT_EQ(metadata.entryID()->stringValue(), entryText);
  EXPECT_EQ(metadata.hkMetadata(),
            (PropertyList::Dictionary{{"velloro_task_id", taskText},
                                      {"velloro_date", 20240307},
                                      {"velloro_entry_id", entryText},
                                      {"HKExternalUUID", entryText},
                                      {"HKMetadataKeySyncIdentifier", entryText},
                                      {"HKMetadataKeySyncVersion", 2},
                                      {"HKWasUserEntered", true}}));
}

TEST(OxHKSampleMetadata, IdentifiersThatDoNotParseAreAbsent) {
  EXPECT_EQ(OxHKSampleMetadata{}.entryID(), std::nullopt);
  EXPECT_EQ(OxHKSampleMetadata{}.taskID(), std::nullopt);
  for (const auto& value : {MetadataValue::string(""), MetadataValue::string("1B4E28BA"),
                            MetadataValue::int_(5), MetadataValue::bool_(true)}) {
    OxHKSampleMetadata metadata = ofLogEntry();
    metadata.entries.push_back({"velloro_task_id", value});
    EXPECT_EQ(metadata.taskID(), std::nullopt) << "the last entry with a key counts";
    EXPECT_EQ(metadata.entryID()->stringValue(), entryText);
  }
}

TEST(OxHKSampleMetadata, GoesIntoTheStoreAsADictionary) {
  const Date date = Date::sinceReferenceDate(0.5);
  const OxHKSampleMetadata metadata{.entries = {{"text", MetadataValue::string("a")},
                                                {"half", MetadataValue::double_(0.5)},
                                                {"flag", MetadataValue::bool_(false)},
                                                {"date", MetadataValue::date(date)},
                                                {"HKIndoorWorkout", MetadataValue::int_(7)}},
                                    .indoorWorkout = true};
  EXPECT_EQ(metadata.hkMetadata(), (PropertyList::Dictionary{{"text", "a"},
                                                             {"half", 0.5},
                                                             {"flag", false},
                                                             {"date", date},
                                                             {"HKIndoorWorkout", true}}));
  EXPECT_TRUE(OxHKSampleMetadata{}.hkMetadata().empty());
  expectFixture("OxHKMetadataValue", metadata.entries);
}

}  // namespace
}  // namespace velloro
