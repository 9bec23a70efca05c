#include "QueueContract.h"
#include "fakes/VirtualTime.h"
#include "helpers/EventLoop.h"

#include "platform/linux/system/QtMainQueue.h"
#include "platform/linux/system/WorkerPool.h"

#include <optional>

namespace sonvara::test {

namespace {

class QtHost {
public:
    ~QtHost() { shutDown(); }
    MainQueue& mainQueue() { return *mainQueue_; }
    GlobalQueue& globalQueue() { return *pool_; }

    template <typename Condition>
    bool eventually(Condition condition)
    {
        return test::eventually(condition);
    }

    void shutDown()
    {
        EXPECT_TRUE(!pool_ || pool_->shutDown(20s));
        pool_.reset();
        mainQueue_.reset();
    }

private:
    std::optional<QtMainQueue> mainQueue_{std::in_place};
    std::optional<WorkerPool> pool_{std::in_place};
};

// The queues of the core's tests, which must behave like the real ones.
class VirtualHost {
public:
    ~VirtualHost() { shutDown(); }
    MainQueue& mainQueue() { return *time_; }
    GlobalQueue& globalQueue() { return *time_; }

    template <typename Condition>
    bool eventually(Condition condition)
    {
        for (int step = 0; step < 20000 && !condition(); ++step) time_->advance(1ms);
        return condition();
    }

    void shutDown()
    {
        if (time_) time_->end();
        time_.reset();
    }

private:
    std::optional<test::VirtualTime> time_{std::in_place};
};

}  // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, QueueContract, QtHost);
INSTANTIATE_TYPED_TEST_SUITE_P(Virtual, QueueContract, VirtualHost);

}  // namespace sonvara::test
