#pragma once

/// Marks what the shared library offers to its users; all else stays inside it.
#define TSL_EXPORT [[gnu::visibility("default")]]

/// Keeps in what would be offered along with a public class: a private record that the class nests, or a
/// template instance for it.
#define TSL_HIDDEN [[gnu::visibility("hidden")]]
