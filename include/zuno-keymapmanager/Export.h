//
// Export.h
//
// Symbol visibility of the library. The library is built with hidden
// visibility; every class and function a host may use is marked ZUNO_KM_API.
// A static build defines ZUNO_KM_STATIC for the library and for every target
// that links it (the CMake package and the pkg-config file pass it on), so
// Windows hosts neither import nor export its symbols.
//

#ifndef ZUNO_KEYMAPMANAGER_EXPORT_H
#define ZUNO_KEYMAPMANAGER_EXPORT_H

#if defined(_WIN32)
#if defined(ZUNO_KM_STATIC)
#define ZUNO_KM_API
#elif defined(ZUNO_KM_BUILDING_LIBRARY)
#define ZUNO_KM_API __declspec(dllexport)
#else
#define ZUNO_KM_API __declspec(dllimport)
#endif
#else
#define ZUNO_KM_API __attribute__((visibility("default")))
#endif

#endif  // ZUNO_KEYMAPMANAGER_EXPORT_H
