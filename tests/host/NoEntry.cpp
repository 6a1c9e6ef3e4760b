// A file that can be loaded and is no effect: it lacks the entry point.

#if defined(_WIN32)
#define EXPORTED __declspec(dllexport)
#else
#define EXPORTED __attribute__((visibility("default")))
#endif

extern "C" EXPORTED int anotherFunction() {
    return 1;
}
