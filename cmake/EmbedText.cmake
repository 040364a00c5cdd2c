# Writes a text file as a byte array into a C++ source, with the function that returns it:
# cmake -DINPUT=file.txt -DOUTPUT=file.cpp -DHEADER=room/Words.h -DNAMESPACE=ambrel::words -DFUNCTION=words -P EmbedText.cmake
file(READ "${INPUT}" bytes HEX)
string(REGEX REPLACE "(................................)" "\\1\n" bytes "${bytes}")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
file(WRITE "${OUTPUT}"
  "// Written by EmbedText.cmake.\n#include \"${HEADER}\"\n\n"
  "namespace ${NAMESPACE} {\nnamespace {\nconstexpr unsigned char text[] = {\n${bytes}};\n} // namespace\n"
  "std::string_view ${FUNCTION}() { return {reinterpret_cast<const char*>(text), sizeof text}; }\n"
  "} // namespace ${NAMESPACE}\n")
