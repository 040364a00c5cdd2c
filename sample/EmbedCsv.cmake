# Writes the CSV files as byte arrays into a C++ source: cmake -DOUTPUT=file.cpp -DFOLDER=dir -DTABLES=A,B -P EmbedCsv.cmake
string(REPLACE "," ";" tables "${TABLES}")
set(arrays "")
set(entries "")
foreach(table IN LISTS tables)
  file(READ "${FOLDER}/${table}.csv" bytes HEX)
  string(REGEX REPLACE "(................................)" "\\1\n" bytes "${bytes}")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
  string(APPEND arrays "constexpr unsigned char ${table}_csv[] = {\n${bytes}};\n")
  string(APPEND entries "    SampleFile{\"${table}\", ${table}_csv},\n")
endforeach()
file(WRITE "${OUTPUT}"
  "// Written by EmbedCsv.cmake from the CSV files.\n#include \"sample/SampleData.h\"\n\n"
  "namespace ambrel {\nnamespace {\n${arrays}constexpr SampleFile files[] = {\n${entries}};\n} // namespace\n"
  "std::span<const SampleFile> sampleFiles() { return files; }\n} // namespace ambrel\n")
