#include "Support/Fixtures.h"
#include "VelloroCore/CompletionStatus.h"

#include <gtest/gtest.h>

namespace velloro {
namespace {

using Status = CompletionStatus::Status;

TEST(CompletionStatus, KeepsTheTextsOfItsThirteenStatuses) {
  std::string texts;
  for (const Status status : Status::allCases()) {
    texts += status.stringValue() + ' ';
    EXPECT_EQ(Status::fromStringValue(status.stringValue()), status) << status.stringValue();
    EXPECT_EQ(JSONDecoder{}.decode<Status>(JSONEncoder{}.encode(status)), status);
  }
  EXPECT_EQ(texts, "c m s nm a i_mwi i_mwoi i_swi i_swoi nc_mwi nc_mwoi nc_swi nc_swoi ");
  for (const char* text : {"", "i", "i_", "i_x", "i_mwi_", "c_mwi", "nc", "C", "mwi"}) {
    EXPECT_FALSE(Status::fromStringValue(text)) << text;
  }
  EXPECT_EQ(decodingFailure<Status>(R"("i_x")"), "Unable to decode enum with value i_x");
}

}  // namespace
}  // namespace velloro
