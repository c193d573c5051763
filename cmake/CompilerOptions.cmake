# The warnings and Qt's definitions. Every target of this project links this interface target.
add_library(autoreport_options INTERFACE)

target_compile_options(autoreport_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsuggest-override
  $<$<BOOL:${AUTOREPORT_WERROR}>:-Werror>)

target_compile_definitions(autoreport_options INTERFACE
  QT_NO_CAST_FROM_ASCII
  QT_NO_KEYWORDS
  QT_NO_FOREACH
  QT_NO_MESSAGELOGCONTEXT
  QT_DEPRECATED_WARNINGS)
