#include <pthread.h>

// Threads for a page: shared memory asks for headers that a file opened from disk does not have.
// A worker's step runs when the worker is created. The library's step works from a copy of what it
// needs, so the bytes are those of a worker that runs beside the frame.

int pthread_create(pthread_t* thread, const pthread_attr_t*, void* (*entry)(void*),
                   void* argument) {
    entry(argument);
    *thread = reinterpret_cast<pthread_t>(thread);  // any handle but none
    return 0;
}

int pthread_join(pthread_t, void**) {
    return 0;
}
