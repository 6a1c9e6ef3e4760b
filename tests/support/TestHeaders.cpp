// Owns the shared headers' compiled form; see TestHeaders.h.
int main() {
    return 0;
}
