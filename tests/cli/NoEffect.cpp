// A shared object without an entry point.

extern "C" __attribute__((visibility("default"))) int notAnEffect() {
    return 1;
}
