#include "platform/macos/system/DispatchSerialQueue.h"

#include "platform/macos/system/DispatchTask.h"

#include <dispatch/dispatch.h>

#include <utility>

namespace sonvara {

DispatchSerialQueue::DispatchSerialQueue(const std::string& label)
    : queue_(dispatch_queue_create(label.c_str(), nullptr))
{}

DispatchSerialQueue::~DispatchSerialQueue()
{
    dispatch_release(queue_);
}

void DispatchSerialQueue::post(Task task)
{
    dispatch_async_f(queue_, makeDispatchTask(std::move(task)), runDispatchTask);
}

}  // namespace sonvara
