#include <dlfcn.h>

#include <cstring>

// Qt switches FreeType's stem darkening on for fonts with PostScript outlines, which Inter is, and blends their text
// with a gamma to match: text of 11 had 1.4 times the ink of its outlines, the looks of the next weight (measured).
// There is no setting for it. A function of the program's own comes before the library's of the same name when Qt calls
// it.

// NOLINTNEXTLINE(readability-identifier-naming): FreeType's name
extern "C" __attribute__((visibility("default"))) int FT_Property_Set(void *library, const char *module,
                                                                      const char *property, const void *value)
{
    if (std::strcmp(property, "no-stem-darkening") == 0)
        return 0; // FreeType's own default is no darkening
    using Original = int (*)(void *, const char *, const char *, const void *);
    static const auto original = reinterpret_cast<Original>(dlsym(RTLD_NEXT, "FT_Property_Set"));
    constexpr int kUnimplementedFeature = 7; // FT_Err_Unimplemented_Feature
    return original != nullptr ? original(library, module, property, value) : kUnimplementedFeature;
}
