// x265 3.5 loses about a kilobyte a session, which the leak checker of the asan preset would
// report.

#ifdef __SANITIZE_ADDRESS__
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libx265\n";
}
#endif
