# frame/TextIds.def: numbers and names of the texts, without their wording, so that a change of wording
# compiles Texts.cpp and nothing else. Made from src/frame/Texts.def when configuring, and written only when
# a number or a name has changed.
set(texts ${PROJECT_SOURCE_DIR}/src/frame/Texts.def)

file(READ ${texts} rows)
string(REGEX MATCHALL "\nTEXT\\([0-9]+, [A-Za-z0-9_]+" ids "${rows}")
list(TRANSFORM ids APPEND ")")
list(JOIN ids "" ids)
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/generated/frame/TextIds.def
     CONTENT "// Made from src/frame/Texts.def by cmake/TextIds.cmake.\n@ids@\n" @ONLY)
