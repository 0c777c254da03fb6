# Run as a script: writes a C++ source that holds a text file, and its SHA-256.
#
#   cmake -DINPUT=file -DOUTPUT=file.cpp -DFUNCTION=name -P EmbedText.cmake
#
# The source defines `EmbeddedText NAME()` of embedded_text.h.
file(READ "${INPUT}" text)
if(text MATCHES "</[sS][cCtT][rRyY]|<!--")
  message(FATAL_ERROR "${INPUT} holds a tag that would end the element it is written into")
endif()
file(SHA256 "${INPUT}" sha256)
file(READ "${INPUT}" bytes HEX)
string(REGEX REPLACE "(................................)" "\\1\n" bytes "${bytes}")
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
file(WRITE "${OUTPUT}" "// Made from a file by cmake/EmbedText.cmake.
#include \"velmorn/embedded_text.h\"

namespace velmorn::tool {
namespace {

constexpr unsigned char kBytes[] = {
${bytes}};

} // namespace

EmbeddedText ${FUNCTION}() {
  return {{reinterpret_cast<const char*>(kBytes), sizeof(kBytes)}, \"${sha256}\"};
}

} // namespace velmorn::tool
")
