// The loadable module holds the whole core, and its two plug-in entry points come with AutoReport's
// own meta-object. CMake wants a source for every library; this is it.
