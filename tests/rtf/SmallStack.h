#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

namespace velmor::test {

// Runs the work on a stack of one megabyte.
inline void onSmallStack(void* (*work)(void*)) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, std::size_t{1} << 20);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, work, nullptr), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

}  // namespace velmor::test
