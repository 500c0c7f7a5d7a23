#include "RuntimeCore/Selectors/Policy/ContextData.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/Support/LogCapture.h"

namespace Zorvex::Generation {

struct Weather {
    int degrees;
};
struct Season {
    std::string name;
};
template <>
struct ContextDataName<Weather> {
    static constexpr const char* value = "Weather";
};
template <>
struct ContextDataName<Season> {
    static constexpr const char* value = "Season";
};

namespace {

TEST(GenericDataContainer, HoldsItsPayloadByValueAndNamesItsType) {
    Weather weather{7};
    GenericDataContainerImpl<Weather> container(weather);
    weather.degrees = 9;
    GenericDataContainer& generic = container;
    EXPECT_EQ(7, static_cast<Weather*>(generic.Get())->degrees);
    EXPECT_TRUE(generic.GetTypeId() == typeid(Weather));
}

TEST(ContextData, HasTwelveEmptySlots) {
    const ContextData contextData;
    EXPECT_EQ(12u, contextData.size());
    for (const auto& slot : contextData) EXPECT_EQ(nullptr, slot);
}

TEST(ContextData, DataOfTheSlotsTypeIsFoundAndCanBeChanged) {
    ContextData contextData;
    contextData[1] = std::make_unique<GenericDataContainerImpl<Weather>>(Weather{7});
    const Testing::LogCapture log;
    Weather* weather = GetSpecificContextData<Weather>(contextData, 1);
    ASSERT_NE(nullptr, weather);
    weather->degrees = 8;
    EXPECT_EQ(8, GetSpecificContextData<Weather>(contextData, 1)->degrees);
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
}

TEST(ContextData, DataOfAnotherTypeIsNullWithoutALine) {
    ContextData contextData;
    contextData[1] = std::make_unique<GenericDataContainerImpl<Season>>(Season{"spring"});
    const Testing::LogCapture log;
    EXPECT_EQ(nullptr, GetSpecificContextData<Weather>(contextData, 1));
    EXPECT_TRUE(log.Lines().empty()) << log.Text();
}

TEST(ContextData, AnEmptySlotIsNullWithAnErrorLineThatNamesTheType) {
    const ContextData contextData;
    const Testing::LogCapture log;
    EXPECT_EQ(nullptr, GetSpecificContextData<Season>(contextData, 11));
    ASSERT_EQ(1u, log.Lines().size()) << log.Text();
    EXPECT_EQ("E [GetSpecificContextData] SelectorPolicyContext::GetSpecificContextData(Season): the context data is NULL, "
              "SelectorNodeContext::InitialSetup has not been called",
              log.Lines()[0]);
}

}  // namespace
}  // namespace Zorvex::Generation
