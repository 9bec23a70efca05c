#include "platform/linux/players/PlayerNotificationCenter.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace sonvara::test {
namespace {

TEST(PlayerNotificationCenterTest, CallsTheObserversOfTheNameInOrder)
{
    PlayerNotificationCenter center;
    std::string calls;
    const auto first = center.addObserver("a", [&](const Notification&) { calls += '1'; });
    const auto other = center.addObserver("b", [&](const Notification&) { calls += 'b'; });
    const auto second = center.addObserver("a", [&](const Notification&) { calls += '2'; });
    center.post({"a", UserInfo{}});
    center.post({"b", UserInfo{}});
    EXPECT_EQ(calls, "12b");
}

TEST(PlayerNotificationCenterTest, ADroppedObserverIsNotCalledByTheDeliveryUnderWay)
{
    PlayerNotificationCenter center;
    int calls = 0;
    Subscription second;
    const auto first = center.addObserver("a", [&](const Notification&) { second.reset(); });
    second = center.addObserver("a", [&](const Notification&) { ++calls; });
    center.post({"a", UserInfo{}});
    EXPECT_EQ(calls, 0);
}

TEST(PlayerNotificationCenterTest, WhatADroppedObserverHeldIsFreeAfterTheNextDelivery)
{
    PlayerNotificationCenter center;
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> seen = held;
    auto observer = center.addObserver("a", [held = std::move(held)](const Notification&) {});
    observer.reset();
    center.post({"b", UserInfo{}});
    EXPECT_TRUE(seen.expired());
}

TEST(PlayerNotificationCenterTest, AnObserverMayAddAnotherAndDropItself)
{
    PlayerNotificationCenter center;
    int calls = 0;
    Subscription added;
    Subscription own;
    own = center.addObserver("a", [&](const Notification&) {
        added = center.addObserver("a", [&](const Notification&) { ++calls; });
        own.reset();
    });
    center.post({"a", UserInfo{}});
    center.post({"a", UserInfo{}});
    EXPECT_EQ(calls, 1);
}

TEST(PlayerNotificationCenterTest, AHandleMayBeDroppedOnAnotherThreadAndAfterTheCenter)
{
    auto center = std::make_unique<PlayerNotificationCenter>();
    int calls = 0;
    auto first = center->addObserver("a", [&](const Notification&) { ++calls; });
    auto second = center->addObserver("a", [&](const Notification&) { ++calls; });
    std::thread([&] { first.reset(); }).join();
    center->post({"a", UserInfo{}});
    EXPECT_EQ(calls, 1);
    center.reset();
    second.reset();
}

}  // namespace
}  // namespace sonvara::test
