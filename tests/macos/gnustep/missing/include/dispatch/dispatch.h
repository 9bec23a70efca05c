// Stand-in: the part of the dispatch queues that the adapters use.
#pragma once

#include <cstdint>

struct dispatch_queue_s;
using dispatch_queue_t = dispatch_queue_s*;
using dispatch_queue_attr_t = void*;
using dispatch_time_t = std::uint64_t;
using dispatch_function_t = void (*)(void*);

enum qos_class_t : unsigned {
    QOS_CLASS_USER_INITIATED = 0x19,
    QOS_CLASS_DEFAULT = 0x15,
    QOS_CLASS_UTILITY = 0x11,
};

constexpr dispatch_time_t DISPATCH_TIME_NOW = 0;

dispatch_queue_t dispatch_get_main_queue();
dispatch_queue_t dispatch_get_global_queue(qos_class_t quality, std::uintptr_t flags);
dispatch_queue_t dispatch_queue_create(const char* label, dispatch_queue_attr_t attributes);
void dispatch_release(dispatch_queue_t queue);
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work);
void dispatch_after_f(dispatch_time_t when, dispatch_queue_t queue, void* context, dispatch_function_t work);
dispatch_time_t dispatch_time(dispatch_time_t base, std::int64_t nanoseconds);
