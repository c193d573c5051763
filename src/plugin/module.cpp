// Empty on purpose: CMake requires a source file for every library, but all code of the loadable
// module is in the core library. The class AutoReport defines the plug-in's two entry points.
