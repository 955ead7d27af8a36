# Installation: headers, libraries, the program, and the packages of CMake and pkg-config.
