// Empty on purpose: the loadable module consists of the core library, whose AutoReport class brings
// the two plug-in entry points, but CMake requires a source file for every library.
