# cmake -DOUT=file.cpp -DFUNCTION=Name -DFILES="a;b" -P embed_files.cmake
# Writes a source whose function answers the files' names and bytes.
set(body "")
foreach(path IN LISTS FILES)
  get_filename_component(name "${path}" NAME)
  file(READ "${path}" hex HEX)
  string(LENGTH "${hex}" hex_length)
  math(EXPR size "${hex_length} / 2")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "\\\\x\\1" escaped "${hex}")
  string(APPEND body "      {\"${name}\", std::string_view(\"${escaped}\", ${size})},\n")
endforeach()
file(WRITE "${OUT}.tmp"
"// Generated from the test data; do not edit.\n"
"#include \"support/embedded_files.h\"\n\n"
"namespace quillon {\n\n"
"const std::vector<EmbeddedFile>& ${FUNCTION}() {\n"
"  static const std::vector<EmbeddedFile> files = {\n${body}  };\n"
"  return files;\n"
"}\n\n"
"}  // namespace quillon\n")
file(COPY_FILE "${OUT}.tmp" "${OUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${OUT}.tmp")
