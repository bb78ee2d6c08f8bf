# SPDX-License-Identifier: MIT
# Writes the message catalogs CATALOGS (paths <catalog>_<language>.json, separated by commas) into the source OUTPUT.
cmake_minimum_required(VERSION 3.25)

set(arrays "")
set(entries "")
string(REPLACE "," ";" catalogs "${CATALOGS}")
foreach(catalog IN LISTS catalogs)
  get_filename_component(id ${catalog} NAME_WE)
  file(READ ${catalog} bytes HEX)
  string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
  string(APPEND arrays "constexpr unsigned char ${id}[] = {${bytes}};\n")
  string(REGEX MATCH "^(.+)_([a-z]+)$" ignored ${id})
  string(APPEND entries "    {\"${CMAKE_MATCH_1}\", \"${CMAKE_MATCH_2}\", ${id}, sizeof ${id}},\n")
endforeach()
file(WRITE ${OUTPUT} "#include \"catalog/compiled_catalogs.h\"

namespace {

${arrays}
constexpr zortav::CompiledCatalog catalogs[] = {
${entries}};

}  // namespace

const zortav::CompiledCatalog* zortav::compiled_catalogs(std::size_t* count) noexcept {
  *count = std::size(catalogs);
  return catalogs;
}
")
