#pragma once

/// Marks what the shared library shows to applications; everything else stays hidden inside it.
#define LUMBRA_API __attribute__((visibility("default")))
