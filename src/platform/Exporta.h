#pragma once
// What of the library can be seen from outside.

/// Marks what the shared library shows to applications; everything else stays hidden inside it.
#define LUMBRA_API __attribute__((visibility("default")))
