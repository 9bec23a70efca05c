// The dispatch queues: the main one on the run loop, 64 workers for the global ones, a thread for each serial one.
#include "StandIns.h"

#include <dispatch/dispatch.h>

#import <AppKit/AppKit.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace {

enum class QueueKind { main, global, serial };

using Work = std::function<void()>;

/// Threads that come when there is work and go when there is none.
class Workers {
public:
    explicit Workers(int most) : most_(most) {}

    void post(Work work)
    {
        const std::lock_guard lock(mutex_);
        waiting_.push_back(std::move(work));
        if (threads_ == most_) return;
        ++threads_;
        std::thread([this] { run(); }).detach();
    }
    void waitUntilIdle()
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return threads_ == 0; });
    }

private:
    void run()
    {
        GSRegisterCurrentThread();
        std::unique_lock lock(mutex_);
        while (!waiting_.empty()) {
            const auto work = std::move(waiting_.front());
            waiting_.pop_front();
            lock.unlock();
            work();
            lock.lock();
        }
        GSUnregisterCurrentThread();
        --threads_;
        changed_.notify_all();
    }

    const int most_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Work> waiting_;
    int threads_ = 0;
};

Workers& globalWorkers()
{
    static auto* workers =
        new Workers(sonvara::test::standins::mostWorkers);  // threads may outlive everything
    return *workers;
}

}  // namespace

struct dispatch_queue_s {
    QueueKind kind;
    Workers* workers = nullptr;
};

/// A piece of work on its way to the main run loop.
@interface SNVMainWork : NSObject {
    void* context_;
    dispatch_function_t work_;
}
- (instancetype)initWithContext:(void*)context work:(dispatch_function_t)work;
- (void)run;
@end

@implementation SNVMainWork

- (instancetype)initWithContext:(void*)context work:(dispatch_function_t)work
{
    self = [super init];
    if (self != nil) {
        context_ = context;
        work_ = work;
    }
    return self;
}

- (void)run
{
    work_(context_);
}

@end

namespace {

dispatch_queue_s mainQueue{QueueKind::main};
dispatch_queue_s globalQueue{QueueKind::global};

/// The main queue is served also while a menu or a control tracks the mouse and in modal loops.
void postToMain(void* context, dispatch_function_t work)
{
    @autoreleasepool {
        SNVMainWork* item = [[[SNVMainWork alloc] initWithContext:context work:work] autorelease];
        [item performSelectorOnMainThread:@selector(run)
                               withObject:nil
                            waitUntilDone:NO
                                    modes:@[
                                        NSDefaultRunLoopMode, NSEventTrackingRunLoopMode,
                                        NSModalPanelRunLoopMode
                                    ]];
    }
}

}  // namespace

dispatch_queue_t dispatch_get_main_queue()
{
    return &mainQueue;
}

dispatch_queue_t dispatch_get_global_queue(qos_class_t, std::uintptr_t)
{
    return &globalQueue;
}

void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work)
{
    switch (queue->kind) {
    case QueueKind::main: postToMain(context, work); break;
    case QueueKind::global: globalWorkers().post([=] { work(context); }); break;
    case QueueKind::serial: queue->workers->post([=] { work(context); }); break;
    }
}

dispatch_queue_t dispatch_queue_create(const char*, dispatch_queue_attr_t)
{
    return new dispatch_queue_s{QueueKind::serial, new Workers(1)};
}

void dispatch_release(dispatch_queue_t queue)
{
    queue->workers->waitUntilIdle();  // a queue lives until its work is done
    delete queue->workers;
    delete queue;
}

void dispatch_after_f(dispatch_time_t when, dispatch_queue_t, void* context, dispatch_function_t work)
{
    // The time is kept elsewhere, but what is due needs a worker like everything else.
    std::thread([=] {
        std::this_thread::sleep_for(std::chrono::nanoseconds(when));
        globalWorkers().post([=] { work(context); });
    }).detach();
}

dispatch_time_t dispatch_time(dispatch_time_t, std::int64_t nanoseconds)
{
    return static_cast<dispatch_time_t>(nanoseconds);  // only ever from now
}
