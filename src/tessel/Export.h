#pragma once

// TSL_EXPORT exports a symbol from the shared library; other symbols are hidden. TSL_EXPORT_TEMPLATE does so for a
// template, and TSL_EXTERN_TEMPLATE declares that the library has an instance of one. TSL_HIDDEN hides a part of an
// exported class: a nested private record, or a template instance.

#ifdef _WIN32

// A symbol is exported by its definition and imported by its users. Instances of templates cannot be exported, so
// each module has its own; functions of them that hold the one object of a process are specialised.
#ifdef Tessel_EXPORTS
#define TSL_EXPORT [[gnu::dllexport]]
#else
#define TSL_EXPORT [[gnu::dllimport]]
#endif
#define TSL_EXPORT_TEMPLATE
#define TSL_EXTERN_TEMPLATE(...) static_assert(true)
#define TSL_HIDDEN

#else

#define TSL_EXPORT [[gnu::visibility("default")]]
#define TSL_EXPORT_TEMPLATE TSL_EXPORT
#define TSL_EXTERN_TEMPLATE(...) extern template __VA_ARGS__
#define TSL_HIDDEN [[gnu::visibility("hidden")]]

#endif
