# Writes a source that defines one string_view for each carried text:
# cmake -DOUT=file.cpp -DHEADER=... -DNAMESPACE=... "-DTEXTS=name=file;name=file" -P embed.cmake
set(body "#include \"${HEADER}\"\n\nnamespace ${NAMESPACE} {\n\n")
foreach(pair ${TEXTS})
  string(FIND "${pair}" "=" at)
  string(SUBSTRING "${pair}" 0 ${at} name)
  math(EXPR at "${at} + 1")
  string(SUBSTRING "${pair}" ${at} -1 file)
  file(READ "${file}" hex HEX)
  file(SIZE "${file}" size)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
  string(APPEND body "static constexpr unsigned char ${name}Bytes[] = {${bytes}0};\n"
    "const std::string_view ${name}(reinterpret_cast<const char*>(${name}Bytes), ${size});\n\n")
endforeach()
string(APPEND body "} // namespace ${NAMESPACE}\n")
file(WRITE "${OUT}" "${body}")
