// The shared library is the sum of the folders beneath; it has no code of its own.
