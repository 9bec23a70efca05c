// Observable properties: when subscribers hear of what.
#include "support/Observable.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sonvara::test {
namespace {

using testing::ElementsAre;

struct Recorder {
    std::vector<int> heard;
    std::function<void(const int&)> callback()
    {
        return [this](const int& value) { heard.push_back(value); };
    }
};

TEST(ObservableTest, NewSubscriberFirstReceivesTheCurrentValue)
{
    Observable<int> property(7);
    Recorder recorder;
    const auto handle = property.subscribe(recorder.callback());
    EXPECT_THAT(recorder.heard, ElementsAre(7));
}

TEST(ObservableTest, EveryAssignmentIsPublishedAlsoOfAnUnchangedValue)
{
    Observable<int> property(1);
    Recorder recorder;
    const auto handle = property.subscribe(recorder.callback());
    property.set(1);
    property.set(2);
    property.set(2);
    EXPECT_THAT(recorder.heard, ElementsAre(1, 1, 2, 2));
}

TEST(ObservableTest, TheNewValueIsDeliveredBeforeThePropertyHoldsIt)
{
    Observable<int> property(1);
    std::vector<int> readBack;
    const auto handle = property.subscribe([&](const int&) { readBack.push_back(property.get()); });
    property.set(2);
    property.set(3);
    EXPECT_THAT(readBack, ElementsAre(1, 1, 2));
    EXPECT_EQ(property.get(), 3);
}

TEST(ObservableTest, SubscribersAreCalledInOrderOfSubscription)
{
    Observable<int> property(0);
    std::string order;
    const auto first = property.subscribe([&](const int&) { order += 'a'; });
    const auto second = property.subscribe([&](const int&) { order += 'b'; });
    order.clear();
    property.set(1);
    EXPECT_EQ(order, "ab");
}

TEST(ObservableTest, ADroppedHandleEndsTheSubscription)
{
    Observable<int> property(0);
    Recorder recorder;
    auto handle = property.subscribe(recorder.callback());
    handle.reset();
    property.set(1);
    EXPECT_THAT(recorder.heard, ElementsAre(0));
}

TEST(ObservableTest, AMovedHandleKeepsTheSubscriptionAndAReplacedOneEndsIt)
{
    Observable<int> property(0);
    Recorder recorder;
    auto handle = property.subscribe(recorder.callback());
    auto moved = std::move(handle);
    property.set(1);
    moved = Subscription();
    property.set(2);
    EXPECT_THAT(recorder.heard, ElementsAre(0, 1));
}

TEST(ObservableTest, AHandleDroppedDuringADeliveryEndsAlsoForThatDelivery)
{
    Observable<int> property(0);
    Recorder second;
    std::optional<Subscription> secondHandle;
    const auto firstHandle = property.subscribe([&](const int& value) {
        if (value == 1) secondHandle.reset();
    });
    secondHandle = property.subscribe(second.callback());
    property.set(1);
    property.set(2);
    EXPECT_THAT(second.heard, ElementsAre(0));
}

TEST(ObservableTest, ASubscriberMayDropItsOwnHandleDuringADelivery)
{
    Observable<int> property(0);
    std::vector<int> heard;
    std::optional<Subscription> handle;
    Recorder later;
    handle = property.subscribe([&heard, &handle](const int& value) {
        if (value == 1) handle.reset();
        heard.push_back(value);  // still valid: the callback lives until it returns
    });
    const auto laterHandle = property.subscribe(later.callback());
    property.set(1);
    property.set(2);
    EXPECT_THAT(heard, ElementsAre(0, 1));
    EXPECT_THAT(later.heard, ElementsAre(0, 1, 2));
}

TEST(ObservableTest, ASubscriberAddedDuringADeliveryReceivesTheOldAndThenTheNewValue)
{
    Observable<int> property(0);
    Recorder late;
    std::optional<Subscription> lateHandle;
    const auto handle = property.subscribe([&](const int& value) {
        if (value == 1) lateHandle = property.subscribe(late.callback());
    });
    property.set(1);
    EXPECT_THAT(late.heard, ElementsAre(0, 1));
}

TEST(ObservableTest, AnAssignmentDuringADeliveryIsPublishedAtOnceAndTheOuterOneIsStoredLast)
{
    Observable<int> property(0);
    Recorder recorder;
    const auto assigning = property.subscribe([&](const int& value) {
        if (value == 1) property.set(9);
    });
    const auto handle = property.subscribe(recorder.callback());
    property.set(1);
    EXPECT_THAT(recorder.heard, ElementsAre(0, 9, 1));
    EXPECT_EQ(property.get(), 1);
}

TEST(ObservableTest, AHandleMayOutliveItsProperty)
{
    auto property = std::make_unique<Observable<int>>(0);
    Recorder recorder;
    auto handle = property->subscribe(recorder.callback());
    property.reset();
    handle.reset();
    EXPECT_THAT(recorder.heard, ElementsAre(0));
}

// A subscriber that holds something: whether it is still kept.
std::pair<std::function<void(const int&)>, std::weak_ptr<int>> holder()
{
    auto held = std::make_shared<int>();
    std::weak_ptr<int> weak = held;
    return {[held = std::move(held)](const int&) {}, weak};
}

TEST(ObservableTest, LetsGoOfASubscriberWhoseHandleIsDropped)
{
    Observable<int> property(0);
    auto [subscriber, weak] = holder();
    auto handle = property.subscribe(std::move(subscriber));
    property.set(1);
    EXPECT_FALSE(weak.expired());
    handle.reset();
    EXPECT_TRUE(weak.expired());
}

TEST(ObservableTest, LetsGoOfASubscriberThatIsDroppedDuringADeliveryAfterIt)
{
    Observable<int> property(0);
    auto [subscriber, weak] = holder();
    std::optional<Subscription> dropped;
    const auto handle = property.subscribe([&](const int& value) {
        if (value == 1) dropped.reset();
    });
    dropped = property.subscribe(std::move(subscriber));
    property.set(1);
    EXPECT_TRUE(weak.expired());
}

TEST(ObservableTest, ModifyIsOneAssignment)
{
    Observable<int> property(5);
    Recorder recorder;
    const auto handle = property.subscribe(recorder.callback());
    property.modify([](int& value) { value += 2; });
    EXPECT_THAT(recorder.heard, ElementsAre(5, 7));
}

}  // namespace
}  // namespace sonvara::test
