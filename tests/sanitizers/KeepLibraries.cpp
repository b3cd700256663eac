// Part of each executable of a build with a sanitizer. Keeps closed libraries loaded: the Vulkan
// loader closes the driver, and a leak of the driver is then reported at addresses without a name,
// which no suppression matches.
extern "C" int dlclose(void*) {
    return 0;
}
