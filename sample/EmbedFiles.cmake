# Writes the files of a folder as byte arrays into a C++ source:
# cmake -DOUTPUT=file.cpp -DFOLDER=dir -DFILES=a|b/c -DFUNCTION=name -P EmbedFiles.cmake
string(REPLACE "|" ";" files "${FILES}")
set(arrays "")
set(entries "")
set(number 0)
foreach(file IN LISTS files)
  file(READ "${FOLDER}/${file}" bytes HEX)
  string(REGEX REPLACE "(................................)" "\\1\n" bytes "${bytes}")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
  string(APPEND arrays "constexpr unsigned char file_${number}[] = {\n${bytes}};\n")
  string(APPEND entries "    SampleFile{\"${file}\", file_${number}},\n")
  math(EXPR number "${number} + 1")
endforeach()
file(WRITE "${OUTPUT}"
  "// Written by EmbedFiles.cmake.\n#include \"sample/SampleData.h\"\n\n"
  "namespace ambrel {\nnamespace {\n${arrays}constexpr SampleFile files[] = {\n${entries}};\n} // namespace\n"
  "std::span<const SampleFile> ${FUNCTION}() { return files; }\n} // namespace ambrel\n")
