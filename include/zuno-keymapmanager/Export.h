//
// Export.h
//
// Symbol visibility of the library. The library is built with hidden
// visibility; every class and function a host may use is marked ZUNO_KM_API.
//

#ifndef ZUNO_KEYMAPMANAGER_EXPORT_H
#define ZUNO_KEYMAPMANAGER_EXPORT_H

#if defined(_WIN32)
#if defined(ZUNO_KM_BUILDING_LIBRARY)
#define ZUNO_KM_API __declspec(dllexport)
#else
#define ZUNO_KM_API __declspec(dllimport)
#endif
#else
#define ZUNO_KM_API __attribute__((visibility("default")))
#endif

#endif  // ZUNO_KEYMAPMANAGER_EXPORT_H
