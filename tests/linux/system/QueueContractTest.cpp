#include "QueueContract.h"
#include "EventLoop.h"

#include "platform/linux/system/QtMainQueue.h"
#include "platform/linux/system/WorkerPool.h"

#include <optional>

namespace sonvara {

namespace {

class QtHost {
public:
    ~QtHost() { shutDown(); }
    MainQueue& mainQueue() { return *mainQueue_; }
    GlobalQueue& globalQueue() { return *pool_; }

    template <typename Condition>
    bool runUntil(Condition condition)
    {
        return runEventLoopUntil(condition);
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

}  // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, QueueContract, QtHost);

}  // namespace sonvara
