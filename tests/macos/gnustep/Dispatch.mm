// The dispatch queues: the main one on the run loop, a thread for each task of the others.
#include <dispatch/dispatch.h>

#import <AppKit/AppKit.h>

#include <chrono>
#include <thread>

struct dispatch_queue_s {
    bool isMain;
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

dispatch_queue_s mainQueue{true};
dispatch_queue_s globalQueue{false};

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

/// One thread for each piece of work: a worker that blocks holds up nobody.
void postToWorker(std::chrono::nanoseconds delay, void* context, dispatch_function_t work)
{
    std::thread([=] {
        std::this_thread::sleep_for(delay);
        GSRegisterCurrentThread();
        work(context);
        GSUnregisterCurrentThread();
    }).detach();
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
    if (queue->isMain) {
        postToMain(context, work);
    } else {
        postToWorker({}, context, work);
    }
}

void dispatch_after_f(dispatch_time_t when, dispatch_queue_t, void* context, dispatch_function_t work)
{
    postToWorker(std::chrono::nanoseconds(when), context, work);
}

dispatch_time_t dispatch_time(dispatch_time_t, std::int64_t nanoseconds)
{
    return static_cast<dispatch_time_t>(nanoseconds);  // only ever from now
}
