# Writes a text file as a byte array into a C++ source: cmake -DINPUT=file.txt -DOUTPUT=file.cpp -P EmbedText.cmake
file(READ "${INPUT}" bytes HEX)
string(REGEX REPLACE "(................................)" "\\1\n" bytes "${bytes}")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
file(WRITE "${OUTPUT}"
  "// Written by EmbedText.cmake.\n#include \"suggest/WordLists.h\"\n\n"
  "namespace ambrel::suggest {\nnamespace {\nconstexpr unsigned char text[] = {\n${bytes}};\n} // namespace\n"
  "std::string_view builtInWordLists() { return {reinterpret_cast<const char*>(text), sizeof text}; }\n"
  "} // namespace ambrel::suggest\n")
