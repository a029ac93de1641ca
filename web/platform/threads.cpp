#include <pthread.h>

// Replaces threads on the page: pthread_create runs the thread's function before it returns. Real threads need shared
// memory, which a browser allows only with certain HTTP headers, and a page from disk has no headers. The library's
// worker uses a copy of its input, so the result is the same as with a real thread.

int pthread_create(pthread_t* thread, const pthread_attr_t*, void* (*entry)(void*),
                   void* argument) {
    entry(argument);
    *thread = reinterpret_cast<pthread_t>(thread);  // any handle except null
    return 0;
}

int pthread_join(pthread_t, void**) {
    return 0;
}
