#pragma once

/// Exports a symbol from the shared library. Symbols are hidden by default.
#define TSL_EXPORT [[gnu::visibility("default")]]

/// Hides a part of an exported class: a nested private record, or a template instance.
#define TSL_HIDDEN [[gnu::visibility("hidden")]]
