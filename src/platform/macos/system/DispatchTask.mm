#include "platform/macos/system/DispatchTask.h"

#import <Foundation/Foundation.h>
#include <dispatch/dispatch.h>

#include <memory>
#include <utility>

namespace sonvara {

void* makeDispatchTask(Task task)
{
    return new Task(std::move(task));
}

void runDispatchTask(void* task)
{
    @autoreleasepool {
        const std::unique_ptr<Task> owned(static_cast<Task*>(task));
        (*owned)();
    }
}

void postToMainThread(Task task)
{
    dispatch_async_f(dispatch_get_main_queue(), makeDispatchTask(std::move(task)), runDispatchTask);
}

}  // namespace sonvara
